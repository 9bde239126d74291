# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show of the last weeks and the event log does not have: when cameras came, went and waited, what the pages'
users did, when each camera streamed, how much of each USB bus was reserved, and how many time-outs there were. It is kept in a
file beside the event log, which has a largest size."""

from __future__ import annotations

import json
import sqlite3
import time
from collections.abc import Callable, Iterator
from contextlib import closing, contextmanager, suppress
from dataclasses import dataclass, field
from functools import partial
from itertools import islice
from pathlib import Path
from typing import Any

from statelib import event_log
from statelib.event_log import time_text

from ownerlib.cameras import Camera, Value, Wait, identity, name_of, waits

FILE = event_log.FILE.parent / "history.db"
MOST_DAYS = 30
MOST_ROWS = 10_000  # of each table
REFUSED = "sign_in_refused"
MOST_REFUSALS = 1000  # of these; strangers cause them
BUSY_SECONDS = 5
DAY = 24 * 60 * 60
LARGEST_ROW = (1 << 63) - 1
VERSION = 2  # of the tables; a file of another one begins anew
# A camera is known by what it calls itself and by its port, whatever its owner calls it.
TABLES = {
    "camera": "time INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, name TEXT NOT NULL, plugged INTEGER NOT NULL,"
    " PRIMARY KEY(device, port)",
    "waiting": "time INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, other TEXT NOT NULL, PRIMARY KEY(device, port)",
    "turn": "time INTEGER NOT NULL, kind TEXT NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, given TEXT NOT NULL",
    "act": "time INTEGER NOT NULL, name TEXT NOT NULL, user TEXT, given TEXT NOT NULL, device TEXT, port TEXT",
    # Which lines the library logged while it did what a user asked for; each stands once, also if two did so together.
    "logged": "time INTEGER NOT NULL, act INTEGER NOT NULL, line INTEGER NOT NULL, at TEXT NOT NULL, text TEXT NOT NULL, UNIQUE(line, at)",
    "stream": "time INTEGER NOT NULL, profile INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, ended INTEGER NOT NULL",
    "bandwidth": "time INTEGER NOT NULL, bus INTEGER NOT NULL, reserved INTEGER NOT NULL, speed INTEGER NOT NULL,"
    " ended INTEGER NOT NULL",
    "missed": "time INTEGER NOT NULL, profile INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, count INTEGER NOT NULL",
}
SPANS = ("stream", "bandwidth")  # the tables of what lasts

Span = tuple[int | str, ...]  # the columns between its begin and its end
NO_CAMERA: Camera = ("", "")
PLUGS = ("plugged", "unplugged")


@dataclass(frozen=True)
class Act:
    """What a user did. Values are shown: nothing of a session, a password or a link may be one."""

    name: str
    user: str | None
    camera: Camera | None = None
    values: Value = field(default_factory=dict)
    lines: list[Value] = field(default_factory=list)  # of the event log, which belong to it


@dataclass(frozen=True)
class Known:
    """The numbers of the oldest of each kind that are known already."""

    turn: int | None = None
    act: int | None = None


@dataclass(frozen=True)
class Stream:
    profile: int
    begin: str
    end: str
    camera: Value | None


@dataclass(frozen=True)
class Past:
    """When a camera last came or went at each port, the cameras that came, went or waited, what users did, which lines of the
    log belong to that, when each profile streamed, and what each camera is called."""

    last_changes: dict[str, str] = field(default_factory=dict)
    turns: list[Value] = field(default_factory=list)
    acts: list[Value] = field(default_factory=list)
    lines_of_acts: set[tuple[int, str]] = field(default_factory=set)  # with their times: a new log numbers its lines anew
    streams: list[Stream] = field(default_factory=list)
    names: dict[Camera, str] = field(default_factory=dict)


class History:
    def __init__(self, file: Path = FILE, clock: Callable[[], float] = time.time) -> None:
        self._file = file
        self._clock = clock
        self._running: dict[str, dict[Span, int]] = {table: {} for table in SPANS}  # the rows of what lasts still
        self._counters: tuple[int, ...] | None = None

    def note(self, state: Value | None, counters: tuple[int, ...] | None) -> None:
        """Stores what is different from the last time. Without a state nothing streams."""
        cameras = _cameras_of_profiles(state)
        streaming = [(it["profile"], *cameras.get(it["profile"], NO_CAMERA)) for it in state["profiles"] if it["streams"]] if state else []
        reserved = [(it["bus"], it["reserved"], it["speed"]) for it in state["usb"]["buses"] if it["reserved"]] if state else []
        with self._database() as database:
            if state:
                self._note_cameras(database, state["channels"])
                self._note_waits(database, state["channels"])
            self._note_spans(database, "stream", set(streaming))
            self._note_spans(database, "bandwidth", set(reserved))
            if counters:
                self._note_timeouts(database, counters, cameras)
            self._limit(database)

    def since(self, days: int) -> Value:
        """Returns what happened in the last days. Cameras have the names that they had last."""
        begin = self._now() - days * DAY
        with self._database() as database:
            cameras = self._cameras(database)
            plugs = database.execute(
                f"SELECT time, kind, device, port FROM turn WHERE kind IN {PLUGS} AND time >= ? ORDER BY rowid", (begin,)).fetchall()
            streams, reserved = (self._spans(database, table, begin) for table in SPANS)
            timeouts = database.execute(
                "SELECT time, profile, device, port, count FROM missed WHERE time >= ? ORDER BY rowid", (begin,)).fetchall()
        return {
            "plugs": [
                {"time": time_text(moment), "kind": kind, "camera": cameras.get((device, port))}
                for moment, kind, device, port in plugs
            ],
            "up": [{"profile": profile, "camera": cameras.get((device, port)), **span} for (profile, device, port), span in streams],
            "bandwidth": [{"bus": bus, "reserved": mbits, "speed": speed, **span} for (bus, mbits, speed), span in reserved],
            "timeouts": [
                {"time": time_text(moment), "profile": profile, "camera": cameras.get((device, port)), "count": count}
                for moment, profile, device, port, count in timeouts
            ],
        }

    def add(self, moment: int, act: Act) -> None:
        row = (moment, act.name, act.user, json.dumps(act.values), *(act.camera or (None, None)))
        with self._database() as database:
            number = database.execute("INSERT INTO act VALUES(?, ?, ?, ?, ?, ?)", row).lastrowid
            lines = [(moment, number, line["id"], line["time"], line["text"]) for line in act.lines]
            database.executemany("INSERT OR IGNORE INTO logged VALUES(?, ?, ?, ?, ?)", lines)
            self._limit(database)

    def happened(self) -> int:
        """Returns a number that is another one after a camera has come, gone or waited, or a user has done something."""
        with self._database() as database:
            question = "SELECT (SELECT ifnull(max(rowid), 0) FROM turn) + (SELECT ifnull(max(rowid), 0) FROM act)"
            return int(database.execute(question).fetchone()[0])

    def past(self, limit: int, known: Known, fits: Callable[[Value], bool]) -> Past:
        """Returns what the list of events needs. Of what happened it has what is before a number and fits, newest first."""
        with self._database() as database:
            changes = database.execute(f"SELECT port, max(time) FROM turn WHERE kind IN {PLUGS} GROUP BY port").fetchall()
            names = self._names(database)
            lines = database.execute("SELECT act, line, at, text FROM logged ORDER BY line").fetchall()
            of_acts: dict[int, list[str]] = {}
            for number, _, _, text in lines:
                of_acts.setdefault(number, []).append(text)

            def newest(table: str, before: int | None, value: Callable[..., Value]) -> list[Value]:
                found = database.execute(f"SELECT rowid, * FROM {table} WHERE rowid < ? ORDER BY rowid DESC", (before or LARGEST_ROW,))
                return list(islice(filter(fits, (value(*row) for row in found)), limit))

            return Past(
                {port: time_text(moment) for port, moment in changes},
                newest("turn", known.turn, partial(_turn, names)),
                newest("act", known.act, partial(_act, names, of_acts)),
                {(line, at) for _, line, at, _ in lines},
                self._streams(database),
                names,
            )

    def _streams(self, database: sqlite3.Connection) -> list[Stream]:
        cameras = self._cameras(database)
        found = database.execute("SELECT time, profile, device, port, ended FROM stream ORDER BY rowid")
        return [
            Stream(profile, time_text(begin), time_text(end), cameras.get((device, port)))
            for begin, profile, device, port, end in found
        ]

    def _note_cameras(self, database: sqlite3.Connection, channels: list[Value]) -> None:
        """What came or went while the server did not run has the time of its start."""
        known = sorted((it for it in channels if it["port"]), key=lambda it: bool(it["state"] == "plugged"))
        names = {identity(it): name_of(it) for it in known}
        plugged = {identity(it) for it in known if it["state"] == "plugged"}
        found = database.execute("SELECT device, port, name FROM camera WHERE plugged")
        before = {(device, port): name for device, port, name in found}
        went = [("unplugged", one) for one in sorted(set(before) - plugged)]
        came = [("plugged", one) for one in sorted(plugged - set(before))]
        for kind, camera in went + came:
            self._add_turn(database, kind, camera)
        for camera, name in (before | names).items():
            row = (self._now(), *camera, name, camera in plugged)
            database.execute("INSERT OR REPLACE INTO camera VALUES(?, ?, ?, ?, ?)", row)

    def _note_waits(self, database: sqlite3.Connection, channels: list[Value]) -> None:
        """A camera that waits for another one than before only begins to, and one that was unplugged did not get its turn."""
        waiting = waits(channels)
        plugged = {identity(it) for it in channels if it["state"] == "plugged"}
        found = database.execute("SELECT device, port, other FROM waiting").fetchall()
        before = {(device, port): Wait.of(other) for device, port, other in found}
        for camera in sorted((set(before) - set(waiting)) & plugged):
            self._add_turn(database, "waits_no_more", camera, before[camera].text())
        for camera, wait in sorted(waiting.items()):
            if camera not in before or before[camera].other != wait.other:
                self._add_turn(database, "waits", camera, wait.text())
        database.execute("DELETE FROM waiting")
        rows = [(self._now(), *camera, wait.text()) for camera, wait in waiting.items()]
        database.executemany("INSERT INTO waiting VALUES(?, ?, ?, ?)", rows)

    def _add_turn(self, database: sqlite3.Connection, kind: str, camera: Camera, given: str = "null") -> None:
        database.execute("INSERT INTO turn VALUES(?, ?, ?, ?, ?)", (self._now(), kind, *camera, given))

    def _names(self, database: sqlite3.Connection) -> dict[Camera, str]:
        found = database.execute("SELECT device, port, name FROM camera")
        return {(device, port): name for device, port, name in found}

    def _cameras(self, database: sqlite3.Connection) -> dict[Camera, Value]:
        return {camera: {"name": name, "port": camera[1]} for camera, name in self._names(database).items()}

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

    def _spans(self, database: sqlite3.Connection, table: str, begin: int) -> list[tuple[tuple[Any, ...], Value]]:
        """Returns what lasted until the moment or begun since, and from when to when."""
        found = database.execute(f"SELECT rowid, * FROM {table} WHERE ended >= ? ORDER BY time", (begin,)).fetchall()
        running = self._running[table]
        spans = ((row, began, tuple(span), ended) for row, began, *span, ended in found)
        return [
            (span, {"from": time_text(max(began, begin)), "to": None if running.get(span) == row else time_text(ended)})
            for row, began, span, ended in spans
        ]

    def _note_timeouts(self, database: sqlite3.Connection, counters: tuple[int, ...], cameras: dict[int, Camera]) -> None:
        before = counters if self._counters is None else self._counters
        for profile, (earlier, now) in enumerate(zip(before, counters)):
            if now > earlier:  # otherwise they were reset
                row = (self._now(), profile, *cameras.get(profile, NO_CAMERA), now - earlier)
                database.execute("INSERT INTO missed VALUES(?, ?, ?, ?, ?)", row)
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
        """Commits at the end. The file may be removed at any time. Who has signed in is not for every user of the host."""
        if not self._file.exists():
            with suppress(OSError):  # the database fails then, too, and says why
                self._file.touch(0o600)
        with closing(sqlite3.connect(self._file, timeout=BUSY_SECONDS)) as database, database:
            self._make_tables(database)
            yield database

    def _make_tables(self, database: sqlite3.Connection) -> None:
        if database.execute("PRAGMA user_version").fetchone()[0] != VERSION:
            for (table,) in database.execute("SELECT name FROM sqlite_master WHERE type = 'table'").fetchall():
                database.execute(f'DROP TABLE "{table}"')
            database.execute(f"PRAGMA user_version = {VERSION}")
        for table, columns in TABLES.items():
            database.execute(f"CREATE TABLE IF NOT EXISTS {table}({columns})")


def _cameras_of_profiles(state: Value | None) -> dict[int, Camera]:
    with_port = [it for it in state["channels"] if it["port"]] if state else []
    return {it["profile"]: identity(it) for it in with_port if it["profile"] is not None}


def _turn(names: dict[Camera, str], number: int, moment: int, kind: str, device: str, port: str, given: str) -> Value:
    wait = None if kind in PLUGS else Wait.of(given)
    told = wait and {**_about(names, wait.other), "collision": wait.collision}
    return {"id": number, "time": time_text(moment), "kind": kind, "camera": _about(names, (device, port)), "wait": told}


def _act(names: dict[Camera, str], lines: dict[int, list[str]], number: int, moment: int, name: str, user: str | None, given: str,
         device: str | None, port: str | None) -> Value:  # fmt: skip
    about = _about(names, (device, port)) if device is not None and port is not None else None
    told = {"name": name, "user": user, "values": json.loads(given), "camera": about, "lines": lines.get(number, [])}
    return {"id": number, "time": time_text(moment), "kind": "act", **told}


def _about(names: dict[Camera, str], camera: Camera) -> Value:
    """Returns what a camera is called at present, whatever it was called then."""
    return {"name": names.get(camera, camera[0]), "port": camera[1]}
