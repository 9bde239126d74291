"""The streams of the four profiles, kept as the library's settings want them."""

from __future__ import annotations

import asyncio
import time

from managerlib.kept_stream import KeptStream
from managerlib.library import Library

PROFILES = range(4)


class Streams:
    def __init__(self, library: Library) -> None:
        self._library = library
        self._wake = asyncio.Event()
        self._streams = [KeptStream(profile, library, self._wake.set) for profile in PROFILES]
        self._changed = True
        self._ended = False

    def look_again(self) -> None:
        """Something has changed. What, is in the settings: several changes at once take one look."""
        self._changed = True
        self._wake.set()

    def end(self) -> None:
        self._ended = True
        self._wake.set()

    async def follow(self) -> None:
        """Brings the streams into line at once, at each change and when an encoder fails, until the end, which is that
        of all streams."""
        try:
            while not self._ended:
                self._wake.clear()
                if self._changed:
                    await self._ask_what_is_wanted()
                for stream in self._streams:
                    await stream.look()
                await self._sleep()
        finally:
            for stream in self._streams:
                await stream.stop()

    async def _ask_what_is_wanted(self) -> None:
        self._changed = False
        for stream in self._streams:
            await stream.want(self._library.stream(stream.profile))

    async def _sleep(self) -> None:
        """Until something happens or is due."""
        due = min(stream.due for stream in self._streams)
        try:
            await asyncio.wait_for(self._wake.wait(), due - time.monotonic())
        except asyncio.TimeoutError:
            pass
