# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How many guests watch the stream of each profile at the moment. Who plays the playlist is not counted: nothing tells
when such a guest goes."""

from __future__ import annotations

import asyncio
from collections.abc import Callable

from servicelib.places import STREAMS
from sharelib.feed import Feeds
from usbdev.records import PROFILES

TOGETHER_SECONDS = 0.1  # those who come and go within this time are told together


class Guests:
    def __init__(self, changed: Callable[[list[int]], None]) -> None:
        """`changed` is called with the counts of all profiles, soon after one has changed."""
        self.feeds = Feeds(self._note)
        self._changed = changed
        self._told = self.counts()
        self._is_noted = False

    def counts(self) -> list[int]:
        return [self.feeds.viewers(STREAMS / f"channel{profile + 1}") for profile in range(PROFILES)]

    def _note(self) -> None:
        if not self._is_noted:
            self._is_noted = True
            asyncio.get_running_loop().call_later(TOGETHER_SECONDS, self._tell)

    def _tell(self) -> None:
        self._is_noted = False
        before, self._told = self._told, self.counts()
        if self._told != before:
            self._changed(self._told)
