# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The streams of the four profiles, as the library's settings describe them."""

from __future__ import annotations

import asyncio
import time

from servicelib.lifecycle import watched

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
        """Notes a change. Several changes are handled together, because the settings show all of them."""
        self._changed = True
        self._wake.set()

    def cameras_changed(self) -> None:
        """Lets each stream look whether it is its camera that has come or gone."""
        self._wake.set()

    def end(self) -> None:
        self._ended = True
        self._wake.set()

    async def follow(self) -> None:
        """Updates the streams now, at each change and when an encoder fails, until the end;
        then ends all streams."""
        try:
            while not self._ended:
                self._wake.clear()
                with watched():
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
        replaced = [await stream.want(await self._library.stream(stream.profile)) for stream in self._streams]
        # Less may be taken of the USB bus now. The changed stream starts first, the others a moment later.
        if any(replaced):
            for stream in self._streams:
                stream.try_soon()

    async def _sleep(self) -> None:
        """Waits until something happens or is due."""
        due = min(stream.due for stream in self._streams)
        try:
            async with asyncio.timeout(due - time.monotonic()):
                await self._wake.wait()
        except TimeoutError:
            pass
