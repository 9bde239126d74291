# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The services let usbdevctl log why a camera does not work: the manager once for each failure of a stream that begins, the
device manager for each camera that gets no channel or no node."""

from __future__ import annotations

import asyncio
from pathlib import Path

import pytest
from devicelib import missing, service
from devicelib.decision import Call
from devicelib.world import Node, UsbDevice, World
from managerlib import camera, encoder, stream_process
from managerlib.kept_stream import KeptStream
from managerlib.library import Stream
from servicelib import reasons


def program(path: Path, line: str) -> str:
    path.write_text(f"#!/bin/sh\n{line}\n")
    path.chmod(0o755)
    return str(path)


class Library:
    """The part of the library that a kept stream uses."""

    async def tell_available(self, profile: int, available: bool) -> None: ...


class Failing:
    """A stream whose encoder says something and ends, and the program that logs."""

    def __init__(self, folder: Path, monkeypatch: pytest.MonkeyPatch) -> None:
        self._calls = folder / "calls"
        self._said = folder / "said"
        monkeypatch.setattr(encoder, "PROGRAM", program(folder / "encoder", f"cat {self._said} >&2; exit 1"))
        monkeypatch.setattr(reasons, "PROGRAM", program(folder / "log", f'echo "$@" >>{self._calls}'))
        monkeypatch.setattr(stream_process, "DIRECTORY", str(folder / "channel{}"))
        monkeypatch.setattr(camera, "NODE", str(folder / "video{}"))
        (folder / "video0").touch()

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
    asyncio.run(reasons.log("pf1"))
    assert "why pf1 does not work was not logged: " in capsys.readouterr().err


def test_a_program_that_hangs_is_ended(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(reasons, "PROGRAM", program(tmp_path / "hanging", "exec sleep 1000"))
    monkeypatch.setattr(reasons, "SECONDS", 0.2)
    asyncio.run(asyncio.wait_for(reasons.log("pf1"), 60))


class Ports:
    """What is plugged in, and a library in which only port 3-1 has a channel."""

    def __init__(self, *slots: str) -> None:
        self.slots = slots

    def look(self) -> World:
        return {slot: UsbDevice((Node(number, 0, "Webcam", 1),)) for number, slot in enumerate(self.slots)}

    def synchronise(self) -> None: ...

    def notify_manager(self) -> None: ...

    def attached(self) -> dict[str, list[str]]:
        return {"3-1": ["Webcam"]}

    def has_free_channel(self) -> bool:
        return True

    def call(self, call: Call) -> bool:
        return call.slot == "3-1"


async def logged(ports: Ports, *events: tuple[str, ...]) -> None:
    """Starts the device manager, and changes what is plugged in."""
    manager = service.DeviceManager(ports, ports)
    manager.start()
    for ports.slots in events:
        while await manager._report_one():
            pass
        await asyncio.sleep(0.01)  # after which each timer of 0 s has run
    await asyncio.gather(*manager._logging)


@pytest.mark.parametrize("before, events, ports", [
    (("3-1", "3-2"), [], ["3-2"]),
    ((), [("3-1",), ("3-1", "3-3"), ("3-1",), ("3-1", "3-3")], ["3-3", "3-3"]),
], ids=["at its start", "later"])  # fmt: skip
def test_a_camera_that_gets_no_channel_is_logged(tmp_path: Path, monkeypatch: pytest.MonkeyPatch, before: tuple[str, ...],
                                                events: list[tuple[str, ...]], ports: list[str]) -> None:  # fmt: skip
    monkeypatch.setattr(reasons, "PROGRAM", program(tmp_path / "log", f'echo "$@" >>{tmp_path}/calls'))
    asyncio.run(logged(Ports(*before), *events))
    assert (tmp_path / "calls").read_text().splitlines() == [f"explain {port} --log" for port in ports]


class WithoutNodes(Ports):
    """Cameras that no driver serves. Each is named by its port, and by when it was plugged in."""

    def look(self) -> World:
        return {slot: UsbDevice(born=int(born)) for slot, _, born in (it.partition(" at ") for it in self.slots)}


def test_a_camera_that_gets_no_node_is_logged_once_for_each_plug(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(reasons, "PROGRAM", program(tmp_path / "log", f'echo "$@" >>{tmp_path}/calls'))
    monkeypatch.setattr(missing, "SECONDS", 0)
    events = [("3-1 at 1",), ("3-1 at 1", "3-2 at 2"), ("3-1 at 3", "3-2 at 2")]
    asyncio.run(logged(WithoutNodes(), *events))
    calls = sorted((tmp_path / "calls").read_text().splitlines())  # the programs run at the same time
    assert calls == [f"explain {port} --log" for port in ("3-1", "3-1", "3-2")]


def test_a_camera_whose_node_comes_in_time_is_not_logged() -> None:
    async def story() -> list[str]:
        reported: list[str] = []
        cameras = missing.MissingNodes(reported.append)
        cameras.follow({"3-1": UsbDevice(born=1)})
        timers = list(cameras._cameras.values())
        cameras.follow({"3-1": UsbDevice((Node(0, 0, "Webcam", 2),), born=1)})
        assert [timer.cancelled() for timer in timers] == [True]
        return reported

    assert asyncio.run(story()) == []
