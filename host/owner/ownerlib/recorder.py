# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Keeps the history: after each change and whatever users do, and every ten minutes for the library's counters, which
announce nothing."""

from __future__ import annotations

import asyncio
import sqlite3
import time
from collections.abc import Callable
from typing import Any

from servicelib.lifecycle import say
from usbdev import UsbdevError, hostinfo

from ownerlib.history import Act, History

SECONDS = 600


class Recorder:
    def __init__(self, happened: Callable[[int], None]) -> None:
        """Calls `happened` with a new number whenever the history has something new."""
        self._tell_happened = happened
        self.happened = 0
        self.history = History()
        self._state: dict[str, Any] | None = None
        self._acts: list[tuple[int, Act]] = []
        self._changed = asyncio.Event()

    def note(self, state: dict[str, Any] | None) -> None:
        self._state = state
        self._changed.set()

    def did(self, act: Act) -> None:
        """Notes what a user has done just now."""
        self._acts.append((int(time.time()), act))
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

    def _tell(self, happened: int) -> None:
        if happened != self.happened:
            self.happened = happened
            self._tell_happened(happened)

    def _store(self, state: dict[str, Any] | None) -> int:
        """Returns the number of what happened last. The pages do without the history where it cannot be stored."""
        acts, self._acts = self._acts, []
        try:
            for act in acts:
                self.history.add(*act)
            self.history.note(state, counters())
            return self.history.happened()
        except sqlite3.Error as problem:
            say(f"the history is not stored: {problem}")
            return self.happened


def counters() -> tuple[int, ...] | None:
    try:
        with hostinfo.attach_counters(hostinfo.create_counters()) as attached:
            return attached.values()
    except UsbdevError:
        return None
