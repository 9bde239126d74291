# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The events that were not sent yet. They wait where the host keeps them anyway, in its event log; the service remembers which
was the last that the broker took."""

from __future__ import annotations

import sqlite3
from pathlib import Path

from servicelib.lifecycle import say
from statelib import event_log
from statelib.event_log import Event

from fleetlib import database

MOST_WAITING = 10_000  # of more the oldest are dropped


class Backlog:
    def __init__(self, file: Path = database.FILE) -> None:
        self._file = file
        self._sent: int | None = None
        self.dropped = 0
        self._load()

    def next(self, most: int) -> list[Event]:
        """Returns the oldest events that wait, oldest first."""
        newest = event_log.newest_id()
        if newest is None:
            return []
        if self._sent is None:
            self.taken(newest)  # what was logged before the first start is not sent
        assert self._sent is not None
        if newest < self._sent:  # somebody has removed the log, and it began again
            self._sent = 0
        if (too_many := newest - self._sent - MOST_WAITING) > 0:
            self.dropped += too_many
            self.taken(self._sent + too_many)
        return event_log.following(self._sent, most)

    def taken(self, number: int) -> None:
        """Notes that the broker has the events up to this one."""
        self._sent = number
        try:
            with database.opened(self._file) as rows:
                rows.execute("DELETE FROM backlog")
                rows.execute("INSERT INTO backlog VALUES(?, ?)", (self._sent, self.dropped))
        except sqlite3.Error as problem:
            say(f"which events were sent is not stored: {problem}")

    def _load(self) -> None:
        try:
            with database.opened(self._file) as rows:
                self._sent, self.dropped = rows.execute("SELECT sent, dropped FROM backlog").fetchone() or (None, 0)
        except sqlite3.Error as problem:
            say(f"which events were sent is not known: {problem}")
