# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The stream of one profile: it runs as long as the settings want it, and starts again when its encoder fails."""

from __future__ import annotations

import asyncio
import math
import time
from collections.abc import Callable

from servicelib import reasons
from servicelib.counts import counts
from servicelib.lifecycle import say

from managerlib import camera, encoder, failure
from managerlib.library import Library, Stream
from managerlib.pauses import SHORTEST_SECONDS, Pauses
from managerlib.stream_process import StreamProcess, folder

# A busy machine needs several times as long for a segment, and a slow one needs long to load the encoder.
PATIENCE_SECONDS = 10 * encoder.SEGMENT_SECONDS
START_SECONDS = 20
# A segment of a slow camera has one picture, and ends when the next one comes.
PICTURES_WAITED_FOR = 3
SLOWEST_RATE = 0.1
NEVER = math.inf


class KeptStream:
    def __init__(self, profile: int, library: Library, wake: Callable[[], None]) -> None:
        """`wake` is called when something happens before `due`."""
        self.profile = profile
        self.due = NEVER  # the next time to check, if nothing happens before
        self._library = library
        self._wake = wake
        self._wanted: Stream | None = None
        self._process: StreamProcess | None = None
        self._logging: asyncio.Task[None] | None = None  # of why it fails

    async def want(self, stream: Stream | None) -> bool:
        """Sets what has to be streamed; returns whether it replaces something. If it is unchanged, the stream, or the pause
        before its start, continues."""
        if stream == self._wanted:
            return False
        replaces = self._wanted is not None
        await self.stop()
        self._wanted = stream
        self._camera: camera.Identity | None = None  # with which the encoder was started
        self._has_failed = False
        self._pauses = Pauses()
        self.due = NEVER
        return replaces

    def try_soon(self) -> None:
        """Shortens a pause: what the start lacked may be free now."""
        if self._process is None and self.due < NEVER:
            self._pauses = Pauses()
            self.due = min(self.due, time.monotonic() + SHORTEST_SECONDS)

    async def look(self) -> None:
        """Does what is due: starts the encoder, or checks that it still works."""
        if self._wanted is None:
            return
        is_due = time.monotonic() >= self.due
        camera_now = camera.identity(self._wanted.node)
        if self._process is None:
            await self._start_if(is_due, self._wanted, camera_now)
        elif self._process.status is not None:
            await self._start_after_end(self._process)
        elif self._process.reads_camera and camera_now != self._camera:
            await self._start_later("camera_gone", f"the camera of profile {self.profile} has gone")
        elif is_due:
            await self._check(self._process)

    async def stop(self) -> None:
        failure.remove(folder(self.profile))
        self._end_logging()
        if self._process is not None:
            await self._process.stop()
            await self._tell_stopped()

    async def _start_if(self, is_due: bool, stream: Stream, camera_now: camera.Identity | None) -> None:
        """A camera that is back does not wait for the end of a pause, and without it there is nothing to try."""
        if camera_now is None:
            self._camera, self.due = None, NEVER
        elif camera_now != self._camera:
            self._pauses = Pauses()
            self._camera = camera_now
            await self._start(stream)
        elif is_due:
            await self._start(stream)

    async def _start(self, stream: Stream) -> None:
        if stream.sound:
            await self._library.apply_volume(self.profile)
        process = StreamProcess(self.profile, stream)
        self._started = time.monotonic()
        try:
            await process.start(self._wake)
        except OSError as problem:
            await self._start_later("not_started", f"the encoder of profile {self.profile} cannot be started: {problem}")
            return
        self._process = process
        if self._has_failed:
            self._has_failed = False
            counts.add("stream_restarts", str(self.profile))
        self._patience = PATIENCE_SECONDS + round(PICTURES_WAITED_FOR / max(stream.rate, SLOWEST_RATE))
        self._patient_until = self._started + START_SECONDS + self._patience
        self.due = self._started + encoder.SEGMENT_SECONDS
        await self._library.tell_available(self.profile, True)
        print(f"profile {self.profile} streams {stream}", flush=True)

    async def _check(self, process: StreamProcess) -> None:
        now = time.monotonic()
        if process.has_grown():
            failure.remove(folder(self.profile))
            self._patient_until = self.due = now + self._patience
        elif now < self._patient_until:
            self.due = now + encoder.SEGMENT_SECONDS
        else:
            await self._start_later("stuck", f"the playlist of profile {self.profile} has not grown for {self._patience} s")

    async def _start_after_end(self, process: StreamProcess) -> None:
        """An encoder also ends with status 0, when its camera has vanished."""
        said = failure.reason(process.said)
        ended = f"the encoder of profile {self.profile} has ended with {process.status}"
        await self._start_later("ended", f"{ended}: {said}" if said else ended, said)

    async def _start_later(self, kind: str, reason: str, cause: str | None = None) -> None:
        counts.add("stream_failures", str(self.profile), kind)
        self._has_failed = True
        if self._process:
            await self._process.kill()
            await self._tell_stopped()
        is_new = failure.write(folder(self.profile), cause or reason)
        now = time.monotonic()
        if self._wanted and camera.identity(self._wanted.node) != self._camera:
            self.due = now
            say(f"{reason}; the next start is when its camera is back")
            return
        if is_new:
            self._end_logging()
            self._logging = asyncio.create_task(reasons.log(f"pf{self.profile}"))
        pause = self._pauses.after(now - self._started)
        self.due = now + pause
        say(f"{reason}; the next start is in {pause} s")

    def _end_logging(self) -> None:
        if self._logging is not None:
            self._logging.cancel()

    async def _tell_stopped(self) -> None:
        self._process = None
        await self._library.tell_available(self.profile, False)
        print(f"profile {self.profile} streams no more", flush=True)
