# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the charts show of the last weeks and the event log does not have: when cameras came and went, when profiles
streamed, and how many time-outs they had. It is kept in a file beside the event log, which has a largest size."""

from __future__ import annotations

import sqlite3
import time
from collections.abc import Callable, Iterator
from contextlib import closing, contextmanager
from datetime import datetime, timezone
from pathlib import Path
from typing import Any

from ownerlib import event_log

FILE = event_log.FILE.parent / "history.db"
MOST_DAYS = 30
MOST_ROWS = 10_000  # of each table
BUSY_SECONDS = 5
DAY = 24 * 60 * 60
TABLES = {
    "plug": "time INTEGER NOT NULL, channel INTEGER NOT NULL, kind TEXT NOT NULL",
    "up": "time INTEGER NOT NULL, profile INTEGER NOT NULL, ended INTEGER NOT NULL",
    "timeout": "time INTEGER NOT NULL, profile INTEGER NOT NULL, count INTEGER NOT NULL",
}

Value = dict[str, Any]


class History:
    def __init__(self, file: Path = FILE, clock: Callable[[], float] = time.time) -> None:
        self._file = file
        self._clock = clock
        self._plugged: set[int] | None = None
        self._running: dict[int, int] = {}  # the row of each profile that streams
        self._counters: tuple[int, ...] | None = None

    def note(self, state: Value | None, counters: tuple[int, ...] | None) -> None:
        """Stores what is different from the last time. Without a state nothing streams."""
        channels, profiles = (state["channels"], state["profiles"]) if state else ([], [])
        with self._database() as database:
            if state:
                self._note_plugs(database, {it["channel"] for it in channels if it["state"] == "plugged"})
            self._note_streams(database, {it["profile"] for it in profiles if it["streams"]})
            if counters:
                self._note_timeouts(database, counters)
            self._limit(database)

    def since(self, days: int) -> Value:
        """Returns what happened in the last days."""
        begin = self._now() - days * DAY
        with self._database() as database:
            plugs = database.execute("SELECT time, channel, kind FROM plug WHERE time >= ? ORDER BY time", (begin,)).fetchall()
            spans = database.execute(
                "SELECT rowid, profile, max(time, ?), ended FROM up WHERE ended >= ? ORDER BY time", (begin, begin)).fetchall()
            timeouts = database.execute(
                "SELECT time, profile, count FROM timeout WHERE time >= ? ORDER BY time", (begin,)).fetchall()
        return {
            "plugs": [{"time": text(moment), "channel": channel, "kind": kind} for moment, channel, kind in plugs],
            "up": [
                {"profile": profile, "from": text(began), "to": None if self._running.get(profile) == row else text(ended)}
                for row, profile, began, ended in spans
            ],
            "timeouts": [{"time": text(moment), "profile": profile, "count": count} for moment, profile, count in timeouts],
        }

    def _note_plugs(self, database: sqlite3.Connection, plugged: set[int]) -> None:
        before = plugged if self._plugged is None else self._plugged
        kinds = [(channel, "plugged") for channel in plugged - before] + [(channel, "unplugged") for channel in before - plugged]
        for channel, kind in sorted(kinds):
            database.execute("INSERT INTO plug VALUES(?, ?, ?)", (self._now(), channel, kind))
        self._plugged = plugged

    def _note_streams(self, database: sqlite3.Connection, streaming: set[int]) -> None:
        """The end of a stream that goes on is stored again and again, in case that the server is killed."""
        for row in self._running.values():
            database.execute("UPDATE up SET ended = ? WHERE rowid = ?", (self._now(), row))
        self._running = {profile: row for profile, row in self._running.items() if profile in streaming}
        for profile in streaming - set(self._running):
            begun = database.execute("INSERT INTO up VALUES(?, ?, ?)", (self._now(), profile, self._now()))
            self._running[profile] = begun.lastrowid or 0

    def _note_timeouts(self, database: sqlite3.Connection, counters: tuple[int, ...]) -> None:
        before = counters if self._counters is None else self._counters
        for profile, (earlier, now) in enumerate(zip(before, counters)):
            if now > earlier:  # otherwise they were reset
                database.execute("INSERT INTO timeout VALUES(?, ?, ?)", (self._now(), profile, now - earlier))
        self._counters = counters

    def _limit(self, database: sqlite3.Connection) -> None:
        for table in TABLES:
            end = "ended" if table == "up" else "time"
            database.execute(f"DELETE FROM {table} WHERE {end} < ?", (self._now() - MOST_DAYS * DAY,))
            database.execute(f"DELETE FROM {table} WHERE rowid <= (SELECT max(rowid) FROM {table}) - ?", (MOST_ROWS,))

    def _now(self) -> int:
        return int(self._clock())

    @contextmanager
    def _database(self) -> Iterator[sqlite3.Connection]:
        """Commits at the end. The file may be removed at any time."""
        with closing(sqlite3.connect(self._file, timeout=BUSY_SECONDS)) as database, database:
            for table, columns in TABLES.items():
                database.execute(f"CREATE TABLE IF NOT EXISTS {table}({columns})")
            yield database


def text(moment: int) -> str:
    return datetime.fromtimestamp(moment, timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
