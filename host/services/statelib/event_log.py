# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The host's event log, as it was written; see host/lib/vllog."""

from __future__ import annotations

import sqlite3
from collections.abc import Callable, Iterator
from contextlib import closing, contextmanager
from datetime import datetime, timezone
from pathlib import Path
from typing import Any

FILE = Path("/var/log/vl/event.db")
SEVERITIES = ("information", "warning")
MOST_EVENTS = 200
LONGEST_TEXT = 1000  # bytes; the library writes less
TEXT = f"substr(CAST(text AS BLOB), 1, {LONGEST_TEXT})"
COLUMNS = f"SELECT id, time, level, {TEXT} FROM event"
BUSY_SECONDS = 5

Event = dict[str, Any]


@contextmanager
def _database() -> Iterator[sqlite3.Connection]:
    with closing(sqlite3.connect(f"file:{FILE}?mode=ro", uri=True, timeout=BUSY_SECONDS)) as database:
        yield database


def newest(
    limit: int,
    before: int | None = None,
    severity: str | None = None,
    fits: Callable[[Event], bool] | None = None,
) -> list[Event]:
    """Returns the newest events, newest first; only those before an id, of a severity, and that fit."""
    wanted, values = ["1"], list[Any]()
    if before is not None:
        wanted, values = [*wanted, "id < ?"], [*values, before]
    if severity is not None:
        wanted, values = [*wanted, "level = ?"], [*values, SEVERITIES.index(severity)]
    if fits:
        wanted = [*wanted, f"fits(id, time, level, {TEXT})"]
    return _select(f"{COLUMNS} WHERE {' AND '.join(wanted)} ORDER BY id DESC LIMIT ?", *values, limit, fits=fits)


def after(number: int) -> list[Event]:
    """Returns the events after the one with the id, newest first."""
    return _select(f"{COLUMNS} WHERE id > ? ORDER BY id DESC LIMIT ?", number, MOST_EVENTS)


def following(number: int, limit: int) -> list[Event]:
    """Returns the first events after the one with the id, oldest first."""
    return _select(f"{COLUMNS} WHERE id > ? ORDER BY id LIMIT ?", number, limit)


def newest_id() -> int | None:
    """Returns the id of the newest event, 0 without one, and None if that cannot be found out now."""
    if not FILE.exists():
        return 0
    try:
        with _database() as database:
            return int(database.execute("SELECT ifnull(max(id), 0) FROM event").fetchone()[0])
    except sqlite3.OperationalError:
        return None


def _select(question: str, *values: Any, fits: Callable[[Event], bool] | None = None) -> list[Event]:
    if not FILE.exists():  # nothing has happened yet
        return []
    try:
        with _database() as database:
            if fits:
                database.create_function("fits", 4, _for_rows(fits))
            return [_event(*row) for row in database.execute(question, values)]
    except sqlite3.OperationalError:  # it is being made
        return []


def _for_rows(fits: Callable[[Event], bool]) -> Callable[..., bool]:
    return lambda *row: fits(_event(*row))


def time_text(time: int) -> str:
    """Of two of them the later one is the greater text."""
    return datetime.fromtimestamp(time, timezone.utc).isoformat()[:19] + "Z"


def _event(number: int, time: int, level: int, text: bytes) -> Event:
    severity = SEVERITIES[level] if level in (0, 1) else "information"
    return {"id": number, "time": time_text(time), "severity": severity, "text": text.decode(errors="replace")}
