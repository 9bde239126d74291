# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a service reports to the service manager that has started it."""

from __future__ import annotations

import asyncio
import socket
from collections.abc import Iterator
from pathlib import Path

import pytest
from servicelib import lifecycle
from servicelib.lifecycle import watched


@pytest.fixture
def starter(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Iterator[socket.socket]:
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as it:
        it.bind(str(tmp_path / "notify"))
        it.settimeout(10)
        monkeypatch.setenv("NOTIFY_SOCKET", str(tmp_path / "notify"))
        yield it


def test_the_watchdog_watches_work_and_not_rest(starter: socket.socket, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("WATCHDOG_USEC", "120000000")
    with watched():
        assert starter.recv(100) == b"WATCHDOG_USEC=120000000"
    assert starter.recv(100) == b"WATCHDOG_USEC=0"


def test_the_watchdog_rests_after_work_that_failed(starter: socket.socket, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("WATCHDOG_USEC", "120000000")
    with pytest.raises(OSError), watched():
        raise OSError
    starter.recv(100)
    assert starter.recv(100) == b"WATCHDOG_USEC=0"


def test_a_service_without_a_watchdog_reports_nothing(starter: socket.socket, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.delenv("WATCHDOG_USEC", raising=False)
    with watched():
        pass
    starter.setblocking(False)
    with pytest.raises(BlockingIOError):
        starter.recv(100)


def reports_of_a_server(starter: socket.socket, count: int) -> list[bytes]:
    """What a server reports first."""

    async def serve() -> list[bytes]:
        serving = asyncio.create_task(lifecycle.serve_until_stopped("serving"))
        seen = [await asyncio.to_thread(starter.recv, 100) for _ in range(count)]
        serving.cancel()
        return seen

    return asyncio.run(serve())


def test_a_server_gives_signs_of_life_until_its_end(starter: socket.socket, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("WATCHDOG_USEC", "3000")
    assert sorted(reports_of_a_server(starter, 4)) == [b"READY=1", *[b"WATCHDOG=1"] * 3]


def test_a_server_without_a_watchdog_gives_no_signs_of_life(starter: socket.socket, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.delenv("WATCHDOG_USEC", raising=False)
    assert reports_of_a_server(starter, 1) == [b"READY=1"]
    starter.setblocking(False)
    with pytest.raises(BlockingIOError):
        starter.recv(100)
