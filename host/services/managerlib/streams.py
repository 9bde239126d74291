"""The streams of the four profiles, kept as the library's settings want them."""

from __future__ import annotations

import asyncio

from servicelib.lifecycle import say

from managerlib.library import Library, Stream
from managerlib.stream_process import StreamProcess

PROFILES = range(4)


class Streams:
    def __init__(self, library: Library) -> None:
        self._library = library
        self._running: dict[int, StreamProcess] = {}
        self._change = asyncio.Event()
        self._ended = False

    def look_again(self) -> None:
        """Something has changed. What, is in the settings: several changes at once take one look."""
        self._change.set()

    def end(self) -> None:
        self._ended = True
        self._change.set()

    async def follow(self) -> None:
        """Brings the streams into line at once and at each change, until the end, which is that of all streams."""
        try:
            while not self._ended:
                self._change.clear()
                for profile in PROFILES:
                    await self._bring_into_line(profile, self._library.stream(profile))
                await self._change.wait()
        finally:
            for profile in tuple(self._running):
                await self._stop(profile)

    async def _bring_into_line(self, profile: int, wanted: Stream | None) -> None:
        running = self._running.get(profile)
        if running and (running.stream != wanted or not running.runs):
            await self._stop(profile)
        if wanted and profile not in self._running:
            await self._start(profile, wanted)

    async def _start(self, profile: int, stream: Stream) -> None:
        process = StreamProcess(profile, stream)
        try:
            await process.start()
        except OSError as problem:
            say(f"cannot start the stream of profile {profile}: {problem}")
            return
        self._running[profile] = process
        self._library.tell_available(profile, True)
        asyncio.get_running_loop().create_task(self._tell_of_end(profile, process))
        print(f"profile {profile} streams {stream}", flush=True)

    async def _stop(self, profile: int) -> None:
        await self._running.pop(profile).stop()
        self._library.tell_available(profile, False)
        print(f"profile {profile} streams no more", flush=True)

    async def _tell_of_end(self, profile: int, process: StreamProcess) -> None:
        """A process that ends by itself is started again with the next change, not at once and for ever."""
        status = await process.end()
        if self._running.get(profile) is process:
            say(f"the stream of profile {profile} has ended with {status}")
