# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Streams that cannot work for days, by a clock of the test's own: what wakes them, and how often they are tried."""

from __future__ import annotations

import asyncio
from pathlib import Path

import pytest
from managerlib import camera, kept_stream, stream_process
from managerlib.kept_stream import NEVER, KeptStream
from managerlib.library import Stream
from managerlib.pauses import LONGEST_SECONDS, SHORTEST_SECONDS

HOUR = 3600
DAYS = 3


class Clock:
    now = 1000.0

    def monotonic(self) -> float:
        return self.now


class Encoder:
    """Is started, and ends when the test says so."""

    started: list[Encoder] = []
    reads_camera = True
    said = b""

    def __init__(self, *_: object) -> None:
        self.status: int | None = None

    async def start(self, _: object) -> None:
        self.started.append(self)

    async def stop(self) -> None: ...

    kill = stop


class Library:
    async def tell_available(self, profile: int, available: bool) -> None: ...


@pytest.fixture
def clock(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Clock:
    """A camera's node is the file video0; nothing is logged."""
    clock = Clock()
    monkeypatch.setattr(kept_stream, "time", clock)
    monkeypatch.setattr(kept_stream, "StreamProcess", Encoder)
    monkeypatch.setattr(kept_stream.reasons, "log", lambda _: asyncio.sleep(0))
    monkeypatch.setattr(stream_process, "DIRECTORY", str(tmp_path / "channel{}"))
    monkeypatch.setattr(camera, "NODE", str(tmp_path / "video{}"))
    monkeypatch.setattr(Encoder, "started", [])
    (tmp_path / "channel1").mkdir()
    (tmp_path / "video0").touch()
    return clock


async def streaming() -> KeptStream:
    stream = KeptStream(0, Library(), lambda: None)
    await stream.want(Stream(0, True, 160, 120, 15))
    await stream.look()
    return stream


def test_a_stream_whose_camera_is_away_for_days_waits_for_its_node_and_for_no_time(clock: Clock, tmp_path: Path) -> None:
    async def story() -> None:
        stream = await streaming()
        (tmp_path / "video0").rename(tmp_path / "taken out")
        Encoder.started[0].status = 0
        for _ in range(DAYS * 24):
            await stream.look()
            await stream.look()
            assert (stream.due, len(Encoder.started)) == (NEVER, 1)
            clock.now += HOUR
        (tmp_path / "video0").touch()  # the manager follows the folder, and looks
        await stream.look()
        assert len(Encoder.started) == 2

    asyncio.run(story())


def test_a_stream_that_fails_for_days_is_tried_every_minute_at_the_most_and_at_the_least(clock: Clock) -> None:
    async def story() -> list[float]:
        stream = await streaming()
        pauses = []
        while clock.now < DAYS * 24 * HOUR:
            Encoder.started[-1].status = 1
            await stream.look()
            pauses.append(stream.due - clock.now)
            clock.now = stream.due
            await stream.look()
            assert len(Encoder.started) == len(pauses) + 1
        return pauses

    pauses = asyncio.run(story())
    assert pauses == sorted(pauses)
    assert (pauses[0], pauses[6], pauses[-1]) == (SHORTEST_SECONDS, LONGEST_SECONDS, LONGEST_SECONDS)
