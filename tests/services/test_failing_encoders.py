# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Encoders that end or hang: what the manager prints, and when it starts them again."""

from __future__ import annotations

import asyncio
from pathlib import Path

import pytest
from conftest import RunOnHost
from managerlib import camera, encoder, stream_process
from managerlib.kept_stream import NEVER, KeptStream
from managerlib.library import Stream
from managerlib.pauses import WELL_SECONDS, Pauses
from managerlib.streams import Streams
from streaming_camera import AVAILABLE, LOG, SHELL, SMALL

FAILURES = f"grep -o 'the encoder of profile 1 .*\\|the playlist of profile 1 .*' {LOG}\n"
# An encoder that cannot make a stream takes the place of the one that can.
BREAK_ENCODER = "ln -sf /usr/host-bin/false /usr/bin/ffmpeg; kill -9 $(encoder)\n"


@pytest.fixture
def on_host(on_new_host: RunOnHost) -> RunOnHost:
    """The programs that these scripts put in place of the encoder go only with their host."""
    return on_new_host


def test_an_encoder_that_is_killed_is_started_again(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + "live; kill -9 $(encoder); said 'streams 160' 2; live; available; encoder | wc -l\n" + FAILURES
    )
    assert (done.stdout.splitlines(), done.stderr) == (
        [AVAILABLE(1), "1", "the encoder of profile 1 has ended with -9; the next start is in 1 s"],
        "",
    )


def test_an_encoder_that_hangs_is_replaced(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + "live; old=$(encoder); kill -STOP $old; said 'streams 160' 2; live; available\n"
        "[ -d /proc/$old ] || echo gone\n" + FAILURES
    )  # fmt: skip
    assert (done.stdout.splitlines(), done.stderr) == (
        [AVAILABLE(1), "gone", "the playlist of profile 1 has not grown for 10 s; the next start is in 1 s"],
        "",
    )


def pauses_said(log: str) -> list[int]:
    return [int(line.split()[-2]) for line in log.splitlines() if "next start" in line]


def test_an_encoder_that_always_fails_is_tried_less_and_less(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + "said 'streams 160' 1\n" + BREAK_ENCODER + "said 'next start is in 4 s' 1; available\n" + FAILURES
    )
    available, log = done.stdout.split("\n", 1)
    assert (available, pauses_said(log), done.stderr) == (AVAILABLE(0), [1, 2, 4], "")


def test_other_settings_end_the_pause_and_begin_with_a_short_one_again(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + "said 'streams 160' 1\n" + BREAK_ENCODER + "said 'next start is in 4 s' 1\n"
        f"store framerate=10; said 'at 10.00' 1; said 'next start is in 1 s' 2; sed 1,/at.10.00/d {LOG}\n"
    )  # fmt: skip
    assert (pauses_said(done.stdout)[0], done.stderr) == (1, "")


def test_settings_stored_as_they_are_do_not_shorten_the_pause(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + "said 'streams 160' 1\n" + BREAK_ENCODER + "said 'next start is in 2 s' 1\n"
        "store; said '^event' 2; said 'next start is in 4 s' 1\n" + FAILURES
    )  # fmt: skip
    assert (pauses_said(done.stdout), done.stderr) == ([1, 2, 4], "")


def test_a_missing_encoder_is_reported_and_started_when_it_is_there(with_manager: RunOnHost) -> None:
    done = with_manager(
        "rm /usr/bin/ffmpeg\n" + SHELL + SMALL + "said 'cannot be started' 1\n"
        "ln -s /usr/host-bin/ffmpeg /usr/bin/ffmpeg; said 'streams 160' 1; live; available"
    )  # fmt: skip
    assert (done.stdout.splitlines(), done.stderr) == ([AVAILABLE(1)], "")


class Library:
    """The part of the library that a kept stream uses."""

    async def tell_available(self, profile: int, available: bool) -> None: ...


def test_a_stream_that_is_not_wanted_any_more_is_not_tried_again(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr(encoder, "PROGRAM", str(tmp_path / "no-such-encoder"))
    monkeypatch.setattr(stream_process, "DIRECTORY", str(tmp_path / "channel{}"))
    monkeypatch.setattr(camera, "NODE", str(tmp_path / "video{}"))
    (tmp_path / "video0").touch()

    async def fail_and_be_given_up() -> tuple[float, float]:
        stream = KeptStream(0, Library(), lambda: None)
        await stream.want(Stream(0, True, 160, 120, 15))
        await stream.look()
        tried_again = stream.due
        await stream.want(None)
        return tried_again, stream.due

    tried_again, given_up = asyncio.run(fail_and_be_given_up())
    assert tried_again < given_up == NEVER


def test_a_stream_that_lacked_bandwidth_does_not_wait_when_another_one_ends(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    program = tmp_path / "encoder"
    program.write_text(f"#!/bin/sh\ncase $* in *channel1/*) exec sleep 60; esac\n[ -e {tmp_path}/room ] && exec sleep 60\n")
    program.chmod(0o755)
    monkeypatch.setattr(encoder, "PROGRAM", str(program))
    monkeypatch.setattr(stream_process, "DIRECTORY", str(tmp_path / "channel{}"))
    monkeypatch.setattr(camera, "NODE", str(tmp_path / "video{}"))
    monkeypatch.setattr(Pauses, "after", lambda *_: 50)
    library = TwoStreams(tmp_path)

    async def end_the_first() -> None:
        streams = Streams(library)
        following = asyncio.create_task(streams.follow())
        await asyncio.wait_for(library.second_failed.wait(), 20)
        (tmp_path / "room").touch()
        library.has_first = False
        streams.look_again()
        await asyncio.wait_for(library.second_runs.wait(), 20)
        streams.end()
        await following

    asyncio.run(end_the_first())


class TwoStreams(Library):
    """Two profiles that stream, of which the first one can end."""

    def __init__(self, folder: Path) -> None:
        self.second_failed, self.second_runs = asyncio.Event(), asyncio.Event()
        self.has_first = True
        self._room = folder / "room"
        for node in range(2):
            (folder / f"video{node}").touch()

    async def stream(self, profile: int) -> Stream | None:
        return Stream(profile, True, 160, 120, 15) if profile == 1 or (profile == 0 and self.has_first) else None

    async def tell_available(self, profile: int, available: bool) -> None:
        if profile == 1 and not available:
            self.second_failed.set()
        elif profile == 1 and self._room.exists():
            self.second_runs.set()


# Notes that it was asked to end; the last of its arguments has the path of the small picture.
WAITING = """#!/bin/sh
trap 'touch {folder}/asked; exit' TERM
for last; do :; done
{written}
touch {folder}/runs
while :; do sleep 0.1; done
"""


@pytest.mark.parametrize(("written", "is_asked"), {":": False, "touch ${last%/*}/playlist.m3u8": True}.items())
def test_only_an_encoder_with_pictures_is_asked_to_end_before_it_is_killed(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch, written: str, is_asked: bool
) -> None:
    program = tmp_path / "encoder"
    program.write_text(WAITING.format(folder=tmp_path, written=written))
    program.chmod(0o755)
    monkeypatch.setattr(encoder, "PROGRAM", str(program))
    monkeypatch.setattr(stream_process, "DIRECTORY", str(tmp_path / "channel{}"))
    monkeypatch.setattr(camera, "NODE", str(tmp_path / "video{}"))
    (tmp_path / "video0").touch()

    async def start_and_stop() -> None:
        stream = KeptStream(0, Library(), lambda: None)
        await stream.want(Stream(0, True, 160, 120, 15))
        await stream.look()
        while not (tmp_path / "runs").exists():
            await asyncio.sleep(0.05)
        await stream.want(None)

    asyncio.run(asyncio.wait_for(start_and_stop(), 60))
    assert (tmp_path / "asked").exists() == is_asked


class TestThePauses:
    def test_double_up_to_a_minute(self) -> None:
        pauses = Pauses()
        assert [pauses.after(0) for _ in range(8)] == [1, 2, 4, 8, 16, 32, 60, 60]

    @pytest.mark.parametrize(("ran", "pause"), [(WELL_SECONDS - 1, 4), (WELL_SECONDS, 1), (WELL_SECONDS + 1, 1)])
    def test_begin_anew_after_an_encoder_that_ran_well(self, ran: float, pause: int) -> None:
        pauses = Pauses()
        pauses.after(0)
        pauses.after(0)
        assert pauses.after(ran) == pause
