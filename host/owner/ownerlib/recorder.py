# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Keeps the history: after each change, and every ten minutes for the library's counters, which announce nothing."""

from __future__ import annotations

import asyncio
import sqlite3
from collections.abc import Callable
from typing import Any

from servicelib.lifecycle import say
from usbdev import UsbdevError, hostinfo

from ownerlib.history import History

SECONDS = 600


class Recorder:
    def __init__(self, plugged: Callable[[int], None]) -> None:
        """`plugged` is called with a number, which is another one each time, when a camera has come or gone."""
        self._tell_plugged = plugged
        self.plugs = 0
        self.history = History()
        self._state: dict[str, Any] | None = None
        self._changed = asyncio.Event()

    def note(self, state: dict[str, Any] | None) -> None:
        self._state = state
        self._changed.set()

    async def follow(self) -> None:
        """Stores what was noted, until cancelled; then the streams' ends."""
        try:
            while True:
                self._changed.clear()
                self._tell(await asyncio.to_thread(self._store, self._state))
                try:
                    async with asyncio.timeout(SECONDS):
                        await self._changed.wait()
                except TimeoutError:
                    pass
        finally:
            self._store(None)

    def _tell(self, plugs: int) -> None:
        if plugs != self.plugs:
            self.plugs = plugs
            self._tell_plugged(plugs)

    def _store(self, state: dict[str, Any] | None) -> int:
        """Returns the number of the camera that came or went last. The pages do without the history where it cannot be stored."""
        try:
            self.history.note(state, counters())
            return self.history.newest_plug()
        except sqlite3.Error as problem:
            say(f"the history is not stored: {problem}")
            return self.plugs


def counters() -> tuple[int, ...] | None:
    try:
        with hostinfo.attach_counters(hostinfo.create_counters()) as attached:
            return attached.values()
    except UsbdevError:
        return None
