# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What pages show at the moment: read once after a change, however many pages there are."""

from __future__ import annotations

import asyncio
import time
from collections.abc import Callable
from typing import Any

from servicelib.lifecycle import say

from statelib import event_log
from statelib.problems import Problem
from statelib.state import EVENTS, Reader

Value = dict[str, Any]
Tell = Callable[[str, Any], None]
AWAY = "host_away"
SECONDS_TO_NEXT_TRY = 2
SECTIONS = ("channels", "profiles", "usb")


class Picture:
    def __init__(self, tell: Tell, note: Callable[[Value | None], None]) -> None:
        """`tell` is called with the name and the value of each section that has changed, `note` with each state."""
        self._reader = Reader()
        self._tell = tell
        self._note = note
        self._turn = asyncio.Lock()
        self._changed = asyncio.Event()
        self._everything = False
        self._state: Value | None = None
        self._began = 0.0  # when the state was read

    @property
    def known(self) -> Value | None:
        """The state as it was read last; None if it could not be read."""
        return self._state

    def change(self) -> None:
        """Notes that something has changed. Several changes are read together."""
        self._everything = True
        self._changed.set()

    def log(self) -> None:
        """Notes that there are new events, for which nothing else has to be read."""
        self._changed.set()

    async def state(self) -> Value:
        """Returns the state as it is now, or was read after this was called. Raises Problem if it cannot be read."""
        asked = time.monotonic()
        async with self._turn:
            if self._state is None or self._began < asked:
                self._began = time.monotonic()
                await self._read()
        assert self._state is not None
        return self._state

    async def follow(self) -> None:
        """Reads the state now and after each change, until cancelled."""
        self.change()
        while True:
            await self._changed.wait()
            self._changed.clear()
            everything, self._everything = self._everything, False
            try:
                await (self.state() if everything else self._look_at_events())
            except Problem:
                asyncio.get_running_loop().call_later(SECONDS_TO_NEXT_TRY, self.change)

    async def _look_at_events(self) -> None:
        async with self._turn:
            if self._state is not None:
                before = self._state["events"]
                self._state = {**self._state, "events": await self._reader.events()}
                await self._tell_events(before)

    async def _read(self) -> None:
        before = self._state
        try:
            now = await self._reader.state()
        except Problem as problem:
            self._state = None
            self._note(None)
            if before is not None:
                say(problem.answer["text"])
                self._tell(AWAY, None)
            raise
        self._state = now
        self._note(now)
        if before is None:
            self._tell("state", now)
            return
        for section in SECTIONS:
            if now[section] != before[section]:
                self._tell(section, now[section])
        await self._tell_events(before["events"])

    async def _tell_events(self, before: list[Value]) -> None:
        """Tells the events that came since, also if they are more than a state has."""
        assert self._state is not None
        last = before[0]["id"] if before else 0
        new = [event for event in self._state["events"] if event["id"] > last]
        if len(new) == EVENTS:
            new = await asyncio.to_thread(event_log.after, last)
        if new:
            self._tell("events", new)
