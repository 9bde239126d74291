# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The stream of one profile: it runs as long as the settings want it, and starts again when its encoder fails."""

from __future__ import annotations

import math
import time
from collections.abc import Callable

from servicelib.lifecycle import say

from managerlib import encoder
from managerlib.library import Library, Stream
from managerlib.pauses import Pauses
from managerlib.stream_process import StreamProcess

# A busy machine needs several times as long for a segment, and a start needs longer.
PATIENCE_SECONDS = 10 * encoder.SEGMENT_SECONDS
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

    async def want(self, stream: Stream | None) -> None:
        """Sets what has to be streamed. If that is unchanged, the stream, or the pause before its start, continues."""
        if stream == self._wanted:
            return
        await self.stop()
        self._wanted = stream
        self._pauses = Pauses()
        self.due = NEVER if stream is None else time.monotonic()

    async def look(self) -> None:
        """Does what is due: starts the encoder, or checks that it still works."""
        is_due = time.monotonic() >= self.due
        if self._process is None:
            if self._wanted and is_due:
                await self._start(self._wanted)
        elif self._process.status is not None:
            await self._start_later(f"the encoder of profile {self.profile} has ended with {self._process.status}")
        elif is_due:
            await self._check(self._process)

    async def stop(self) -> None:
        if self._process is None:
            return
        await self._process.stop()
        self._tell_stopped()

    async def _start(self, stream: Stream) -> None:
        process = StreamProcess(self.profile, stream)
        self._started = time.monotonic()
        try:
            await process.start(self._wake)
        except OSError as problem:
            await self._start_later(f"the encoder of profile {self.profile} cannot be started: {problem}")
            return
        self._process = process
        self.due = self._started + PATIENCE_SECONDS
        self._library.tell_available(self.profile, True)
        print(f"profile {self.profile} streams {stream}", flush=True)

    async def _check(self, process: StreamProcess) -> None:
        if process.has_grown():
            self.due = time.monotonic() + PATIENCE_SECONDS
        else:
            await self._start_later(f"the playlist of profile {self.profile} has not grown for {PATIENCE_SECONDS} s")

    async def _start_later(self, reason: str) -> None:
        if self._process:
            await self._process.kill()
            self._tell_stopped()
        now = time.monotonic()
        pause = self._pauses.after(now - self._started)
        self.due = now + pause
        say(f"{reason}; the next start is in {pause} s")

    def _tell_stopped(self) -> None:
        self._process = None
        self._library.tell_available(self.profile, False)
        print(f"profile {self.profile} streams no more", flush=True)
