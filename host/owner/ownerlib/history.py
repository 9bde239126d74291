# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the pages show of the last weeks and the event log does not have: when cameras came and went, what the pages' users
did, when each camera streamed, how much of each USB bus was reserved, and how many time-outs there were. It is kept in a file
beside the event log, which has a largest size."""

from __future__ import annotations

import json
import sqlite3
import time
from collections.abc import Callable, Iterator
from contextlib import closing, contextmanager, suppress
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
# A camera is known by what it calls itself and by its port, whatever its owner calls it.
TABLES = {
    "camera": "time INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, name TEXT NOT NULL, plugged INTEGER NOT NULL,"
    " PRIMARY KEY(device, port)",
    "plugging": "time INTEGER NOT NULL, kind TEXT NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, name TEXT NOT NULL",
    "act": "time INTEGER NOT NULL, name TEXT NOT NULL, user TEXT, given TEXT NOT NULL, camera TEXT, port TEXT",
    "stream": "time INTEGER NOT NULL, profile INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, ended INTEGER NOT NULL",
    "bandwidth": "time INTEGER NOT NULL, bus INTEGER NOT NULL, reserved INTEGER NOT NULL, speed INTEGER NOT NULL,"
    " ended INTEGER NOT NULL",
    "missed": "time INTEGER NOT NULL, profile INTEGER NOT NULL, device TEXT NOT NULL, port TEXT NOT NULL, count INTEGER NOT NULL",
}
SPANS = ("stream", "bandwidth")  # the tables of what lasts

Value = dict[str, Any]
Camera = tuple[str, str]  # what it calls itself, and its port
Span = tuple[int | str, ...]  # the columns between its begin and its end
NO_CAMERA: Camera = ("", "")


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
class Stream:
    profile: int
    begin: str
    end: str
    camera: Value | None


@dataclass(frozen=True)
class Past:
    """When a camera last came or went at each port, the cameras that did, what users did, and when each profile streamed."""

    last_changes: dict[str, str] = field(default_factory=dict)
    plugs: list[Value] = field(default_factory=list)
    acts: list[Value] = field(default_factory=list)
    streams: list[Stream] = field(default_factory=list)


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
                "SELECT time, kind, device, port FROM plugging WHERE time >= ? ORDER BY rowid", (begin,)).fetchall()
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
        camera = act.camera or {"name": None, "port": None}
        row = (moment, act.name, act.user, json.dumps(act.values), camera["name"], camera["port"])
        with self._database() as database:
            database.execute("INSERT INTO act VALUES(?, ?, ?, ?, ?, ?)", row)
            self._limit(database)

    def happened(self) -> int:
        """Returns a number that is another one after a camera has come or gone, or a user has done something."""
        with self._database() as database:
            question = "SELECT (SELECT ifnull(max(rowid), 0) FROM plugging) + (SELECT ifnull(max(rowid), 0) FROM act)"
            return int(database.execute(question).fetchone()[0])

    def past(self, limit: int, known: Known, fits: Callable[[Value], bool]) -> Past:
        """Returns what the list of events needs. Of what happened it has what is before a number and fits, newest first."""
        with self._database() as database:
            changes = database.execute("SELECT port, max(time) FROM plugging GROUP BY port").fetchall()

            def newest(table: str, before: int | None, value: Callable[..., Value]) -> list[Value]:
                found = database.execute(f"SELECT rowid, * FROM {table} WHERE rowid < ? ORDER BY rowid DESC", (before or LARGEST_ROW,))
                return list(islice(filter(fits, (value(*row) for row in found)), limit))

            return Past(
                {port: time_text(moment) for port, moment in changes},
                newest("plugging", known.plug, _plug),
                newest("act", known.act, _act),
                self._streams(database),
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
        names = {_identity(it): name_of(it) for it in known}
        plugged = {_identity(it) for it in known if it["state"] == "plugged"}
        found = database.execute("SELECT device, port, name FROM camera WHERE plugged")
        before = {(device, port): name for device, port, name in found}
        went = [("unplugged", one) for one in sorted(set(before) - plugged)]
        came = [("plugged", one) for one in sorted(plugged - set(before))]
        for kind, camera in went + came:
            change = (self._now(), kind, *camera, names.get(camera) or before[camera])
            database.execute("INSERT INTO plugging VALUES(?, ?, ?, ?, ?)", change)
        for camera, name in (before | names).items():
            row = (self._now(), *camera, name, camera in plugged)
            database.execute("INSERT OR REPLACE INTO camera VALUES(?, ?, ?, ?, ?)", row)

    def _cameras(self, database: sqlite3.Connection) -> dict[Camera, Value]:
        found = database.execute("SELECT device, port, name FROM camera")
        return {(device, port): {"name": name, "port": port} for device, port, name in found}

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


def _identity(channel: Value) -> Camera:
    return (channel["device"] or "", channel["port"])


def _cameras_of_profiles(state: Value | None) -> dict[int, Camera]:
    with_port = [it for it in state["channels"] if it["port"]] if state else []
    return {it["profile"]: _identity(it) for it in with_port if it["profile"] is not None}


def _plug(number: int, moment: int, kind: str, _: str, port: str, name: str) -> Value:
    return {"id": number, "time": time_text(moment), "kind": kind, "camera": {"name": name, "port": port}}


def _act(number: int, moment: int, name: str, user: str | None, given: str, camera: str | None, port: str | None) -> Value:
    about = {"name": camera, "port": port} if port is not None else None
    told = {"name": name, "user": user, "values": json.loads(given), "camera": about}
    return {"id": number, "time": time_text(moment), "kind": "act", **told}
