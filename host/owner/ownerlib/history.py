# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show of the last weeks and the event log does not have: when cameras came and went, what the pages' users
did, when profiles streamed, how much of each USB bus was reserved, and how many time-outs there were. It is kept in a file
beside the event log, which has a largest size."""

from __future__ import annotations

import json
import sqlite3
import time
from collections.abc import Callable, Iterator
from contextlib import closing, contextmanager
from dataclasses import dataclass, field
from itertools import islice
from pathlib import Path
from typing import Any

from statelib import event_log
from statelib.event_log import time_text

FILE = event_log.FILE.parent / "history.db"
MOST_DAYS = 30
MOST_ROWS = 10_000  # of each table
REFUSED = "sign_in_refused"
MOST_REFUSALS = 1000  # of these; strangers cause them
BUSY_SECONDS = 5
DAY = 24 * 60 * 60
LARGEST_ROW = (1 << 63) - 1
TABLES = {
    "plug": "time INTEGER NOT NULL, channel INTEGER NOT NULL, kind TEXT NOT NULL, name TEXT NOT NULL, port TEXT NOT NULL",
    "act": "time INTEGER NOT NULL, name TEXT NOT NULL, user TEXT, given TEXT NOT NULL, camera TEXT, port TEXT",
    "up": "time INTEGER NOT NULL, profile INTEGER NOT NULL, ended INTEGER NOT NULL",
    "bandwidth": "time INTEGER NOT NULL, bus INTEGER NOT NULL, reserved INTEGER NOT NULL, speed INTEGER NOT NULL,"
    " ended INTEGER NOT NULL",
    "timeout": "time INTEGER NOT NULL, profile INTEGER NOT NULL, count INTEGER NOT NULL",
}
SPANS = ("up", "bandwidth")  # the tables of what lasts

Value = dict[str, Any]
Camera = tuple[str, str]  # its name and its port
Span = tuple[int, ...]  # the columns between its begin and its end


@dataclass(frozen=True)
class Act:
    """What a user did. Values are shown: nothing of a session, a password or a link may be one."""

    name: str
    user: str | None
    camera: Value | None = None
    values: dict[str, str] = field(default_factory=dict)


@dataclass(frozen=True)
class Known:
    """The numbers of the oldest of each kind that are known already."""

    plug: int | None = None
    act: int | None = None


@dataclass(frozen=True)
class Past:
    """When a camera last came or went at each port, the cameras that did, and what users did."""

    last_changes: dict[str, str]
    plugs: list[Value]
    acts: list[Value]


class History:
    def __init__(self, file: Path = FILE, clock: Callable[[], float] = time.time) -> None:
        self._file = file
        self._clock = clock
        self._plugged: dict[int, Camera] | None = None
        self._running: dict[str, dict[Span, int]] = {table: {} for table in SPANS}  # the rows of what lasts still
        self._counters: tuple[int, ...] | None = None

    def note(self, state: Value | None, counters: tuple[int, ...] | None) -> None:
        """Stores what is different from the last time. Without a state nothing streams."""
        streaming = [(it["profile"],) for it in state["profiles"] if it["streams"]] if state else []
        reserved = [(it["bus"], it["reserved"], it["speed"]) for it in state["usb"]["buses"] if it["reserved"]] if state else []
        with self._database() as database:
            if state:
                attached = [it for it in state["channels"] if it["state"] == "plugged"]
                self._note_plugs(database, {it["channel"]: (name_of(it), it["port"] or "") for it in attached})
            self._note_spans(database, "up", set(streaming))
            self._note_spans(database, "bandwidth", set(reserved))
            if counters:
                self._note_timeouts(database, counters)
            self._limit(database)

    def since(self, days: int) -> Value:
        """Returns what happened in the last days."""
        begin = self._now() - days * DAY
        with self._database() as database:
            plugs = database.execute(
                "SELECT time, channel, kind, name FROM plug WHERE time >= ? ORDER BY time", (begin,)).fetchall()
            streams, reserved = (self._spans(database, table, begin) for table in SPANS)
            timeouts = database.execute(
                "SELECT time, profile, count FROM timeout WHERE time >= ? ORDER BY time", (begin,)).fetchall()
        return {
            "plugs": [
                {"time": time_text(moment), "channel": channel, "kind": kind, "name": name}
                for moment, channel, kind, name in plugs
            ],
            "up": [{"profile": profile, **span} for (profile,), span in streams],
            "bandwidth": [{"bus": bus, "reserved": mbits, "speed": speed, **span} for (bus, mbits, speed), span in reserved],
            "timeouts": [
                {"time": time_text(moment), "profile": profile, "count": count} for moment, profile, count in timeouts
            ],
        }

    def add(self, moment: int, act: Act) -> None:
        camera = act.camera or {"name": None, "port": None}
        row = (moment, act.name, act.user, json.dumps(act.values), camera["name"], camera["port"])
        with self._database() as database:
            database.execute("INSERT INTO act VALUES(?, ?, ?, ?, ?, ?)", row)
            self._limit(database)

    def happened(self) -> int:
        """Returns a number that is another one after a camera has come or gone, or a user has done something."""
        with self._database() as database:
            question = "SELECT (SELECT ifnull(max(rowid), 0) FROM plug) + (SELECT ifnull(max(rowid), 0) FROM act)"
            return int(database.execute(question).fetchone()[0])

    def past(self, limit: int, known: Known, fits: Callable[[Value], bool]) -> Past:
        """Returns what the list of events needs. Of what happened it has what is before a number and fits, newest first."""
        with self._database() as database:
            changes = database.execute("SELECT port, max(time) FROM plug GROUP BY port").fetchall()

            def newest(table: str, before: int | None, value: Callable[..., Value]) -> list[Value]:
                found = database.execute(f"SELECT rowid, * FROM {table} WHERE rowid < ? ORDER BY rowid DESC", (before or LARGEST_ROW,))
                return list(islice(filter(fits, (value(*row) for row in found)), limit))

            return Past(
                {port: time_text(moment) for port, moment in changes},
                newest("plug", known.plug, _plug),
                newest("act", known.act, _act),
            )

    def _note_plugs(self, database: sqlite3.Connection, plugged: dict[int, Camera]) -> None:
        before = plugged if self._plugged is None else self._plugged
        came = [(channel, "plugged", *plugged[channel]) for channel in set(plugged) - set(before)]
        went = [(channel, "unplugged", *before[channel]) for channel in set(before) - set(plugged)]
        for change in sorted(came + went):
            database.execute("INSERT INTO plug VALUES(?, ?, ?, ?, ?)", (self._now(), *change))
        self._plugged = plugged

    def _note_spans(self, database: sqlite3.Connection, table: str, lasting: set[Span]) -> None:
        """The end of what lasts is stored again and again, in case that the server is killed."""
        running = self._running[table]
        for row in running.values():
            database.execute(f"UPDATE {table} SET ended = ? WHERE rowid = ?", (self._now(), row))
        self._running[table] = running = {span: row for span, row in running.items() if span in lasting}
        for span in sorted(lasting - set(running)):
            values = (self._now(), *span, self._now())
            begun = database.execute(f"INSERT INTO {table} VALUES({', '.join('?' * len(values))})", values)
            running[span] = begun.lastrowid or 0

    def _spans(self, database: sqlite3.Connection, table: str, begin: int) -> list[tuple[Span, Value]]:
        """Returns what lasted until the moment or begun since, and from when to when."""
        found = database.execute(f"SELECT rowid, * FROM {table} WHERE ended >= ? ORDER BY time", (begin,)).fetchall()
        running = self._running[table]
        spans = ((row, began, tuple(span), ended) for row, began, *span, ended in found)
        return [
            (span, {"from": time_text(max(began, begin)), "to": None if running.get(span) == row else time_text(ended)})
            for row, began, span, ended in spans
        ]

    def _note_timeouts(self, database: sqlite3.Connection, counters: tuple[int, ...]) -> None:
        before = counters if self._counters is None else self._counters
        for profile, (earlier, now) in enumerate(zip(before, counters)):
            if now > earlier:  # otherwise they were reset
                database.execute("INSERT INTO timeout VALUES(?, ?, ?)", (self._now(), profile, now - earlier))
        self._counters = counters

    def _limit(self, database: sqlite3.Connection) -> None:
        for table in TABLES:
            end = "ended" if table in SPANS else "time"
            database.execute(f"DELETE FROM {table} WHERE {end} < ?", (self._now() - MOST_DAYS * DAY,))
            self._keep(database, table, MOST_ROWS)
        self._keep(database, "act", MOST_REFUSALS, f"name = '{REFUSED}'")

    def _keep(self, database: sqlite3.Connection, table: str, most: int, which: str = "1") -> None:
        newest = f"SELECT rowid FROM {table} WHERE {which} ORDER BY rowid DESC LIMIT -1 OFFSET ?"
        database.execute(f"DELETE FROM {table} WHERE rowid IN ({newest})", (most,))

    def _now(self) -> int:
        return int(self._clock())

    @contextmanager
    def _database(self) -> Iterator[sqlite3.Connection]:
        """Commits at the end. The file may be removed at any time."""
        with closing(sqlite3.connect(self._file, timeout=BUSY_SECONDS)) as database, database:
            for table, columns in TABLES.items():
                database.execute(f"CREATE TABLE IF NOT EXISTS {table}({columns})")
            yield database


def name_of(channel: Value) -> str:
    """Returns what the pages call a camera."""
    return str(channel["profile_name"] or channel["device"] or f"Channel {channel['channel']}")


def camera_of(state: Value | None, **where: int) -> Value | None:
    """Returns what the camera of a channel or of a profile is called, and its port."""
    for channel in state["channels"] if state else []:
        if channel["port"] and all(channel[name] == number for name, number in where.items()):
            return {"name": name_of(channel), "port": channel["port"]}
    return None


def _plug(number: int, moment: int, _: int, kind: str, name: str, port: str) -> Value:
    return {"id": number, "time": time_text(moment), "kind": kind, "camera": {"name": name, "port": port}}


def _act(number: int, moment: int, name: str, user: str | None, given: str, camera: str | None, port: str | None) -> Value:
    about = {"name": camera, "port": port} if port is not None else None
    told = {"name": name, "user": user, "values": json.loads(given), "camera": about}
    return {"id": number, "time": time_text(moment), "kind": "act", **told}
