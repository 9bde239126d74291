# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a service reports to the service manager that has started it."""

from __future__ import annotations

import socket
from collections.abc import Iterator
from pathlib import Path

import pytest
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
