# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manager lets usbdevctl log why a stream fails: once for each failure that begins."""

from __future__ import annotations

import asyncio
from pathlib import Path

import pytest
from managerlib import camera, encoder, reasons, stream_process
from managerlib.kept_stream import KeptStream
from managerlib.library import Stream


class Library:
    """The part of the library that a kept stream uses."""

    async def tell_available(self, profile: int, available: bool) -> None: ...


class Failing:
    """A stream whose encoder says something and ends, and the program that logs."""

    def __init__(self, folder: Path, monkeypatch: pytest.MonkeyPatch) -> None:
        self._calls = folder / "calls"
        self._said = folder / "said"
        monkeypatch.setattr(encoder, "PROGRAM", self._program(folder / "encoder", f"cat {self._said} >&2; exit 1"))
        monkeypatch.setattr(reasons, "PROGRAM", self._program(folder / "log", f'echo "$@" >>{self._calls}'))
        monkeypatch.setattr(stream_process, "DIRECTORY", str(folder / "channel{}"))
        monkeypatch.setattr(camera, "NODE", str(folder / "video{}"))
        (folder / "video0").touch()

    @staticmethod
    def _program(path: Path, line: str) -> str:
        path.write_text(f"#!/bin/sh\n{line}\n")
        path.chmod(0o755)
        return str(path)

    async def fail(self, *said: str) -> list[str]:
        """Returns how the program was called when the encoder has said these lines, one at each start."""
        ended = asyncio.Event()
        stream = KeptStream(2, Library(), ended.set)
        await stream.want(Stream(0, True, 160, 120, 15))
        for line in said:
            self._said.write_text(f"{line}\n")
            ended.clear()
            stream.due = 0
            await stream.look()
            await ended.wait()
            await stream.look()
            if stream._logging:
                await stream._logging
        await stream.stop()
        return self._calls.read_text().splitlines()


@pytest.fixture
def failing(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Failing:
    return Failing(tmp_path, monkeypatch)


def test_a_failure_that_lasts_is_logged_once(failing: Failing) -> None:
    assert asyncio.run(failing.fail(*["No space left on device"] * 3)) == ["explain pf2 --log"]


def test_another_failure_is_logged_too(failing: Failing) -> None:
    calls = asyncio.run(failing.fail("No space left on device", "Device or resource busy", "Device or resource busy"))
    assert calls == ["explain pf2 --log"] * 2


def test_the_manager_runs_without_the_program(capsys: pytest.CaptureFixture[str], monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(reasons, "PROGRAM", "/nonexistent")
    asyncio.run(reasons.log(1))
    assert "the failure of profile 1 was not logged: " in capsys.readouterr().err


def test_a_program_that_hangs_is_ended(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    hanging = tmp_path / "hanging"
    hanging.write_text("#!/bin/sh\nexec sleep 1000\n")
    hanging.chmod(0o755)
    monkeypatch.setattr(reasons, "PROGRAM", str(hanging))
    monkeypatch.setattr(reasons, "SECONDS", 0.2)
    asyncio.run(asyncio.wait_for(reasons.log(1), 60))
