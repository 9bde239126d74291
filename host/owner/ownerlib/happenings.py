# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What has happened, newest first: the lines of the event log, with the camera that each is about, and the cameras that
came and went."""

from __future__ import annotations

import heapq
import sqlite3
from dataclasses import dataclass
from datetime import datetime
from typing import Any

from statelib import event_log

from ownerlib import log_lines
from ownerlib.history import History, Past, name_of
from ownerlib.log_lines import Line
from ownerlib.texts import texts

Value = dict[str, Any]
NEVER = "9999"
NOBODY: tuple[str, Value | None] = (NEVER, None)
PLUG_SEVERITY = "information"


@dataclass(frozen=True)
class Wish:
    """What is asked for. The numbers are those of the oldest ones that are known already."""

    limit: int
    before: int | None = None
    before_plug: int | None = None
    search: str = ""
    severity: str | None = None
    language: str = "en"


class Cameras:
    """The cameras as they are called at present, and since when each has its profile and its port."""

    def __init__(self, state: Value | None, last_changes: dict[str, str]) -> None:
        channels = [it for it in state["channels"] if it["port"]] if state else []
        self._of_profiles = {it["profile"]: (_given(it["created"]), it) for it in channels if it["profile"] is not None}
        self._of_ports = {it["port"]: (last_changes.get(it["port"], ""), it) for it in channels}

    def of(self, line: Line | None, time: str) -> Value | None:
        """Returns the camera that a line of the log is about; None if that is not sure: it may be of an earlier one."""
        if line is None:
            return None
        if line.profile is not None:
            since, channel = self._of_profiles.get(line.profile, NOBODY)
        else:
            since, channel = self._of_ports.get(line.port or "", NOBODY)
        if channel and since <= time:
            return {"name": name_of(channel), "port": channel["port"]}
        return {"name": line.device, "port": line.port} if line.device else None


def _given(created: str | None) -> str:
    """When the camera got its profile, which the library writes in the time of the host."""
    try:
        return event_log.time_text(int(datetime.strptime(created or "", "%Y-%m-%d %H:%M:%S").timestamp()))
    except ValueError:
        return NEVER


class Teller:
    """Puts what happened into words, and finds it by them."""

    def __init__(self, wish: Wish) -> None:
        self._texts = texts(wish.language)
        self._wanted = wish.search.casefold()

    def fits(self, told: Value) -> bool:
        """Checks for the text that is searched for, in the words that are shown and in those of the log."""
        camera = told["camera"] or {"name": "", "port": ""}
        return self._wanted in "\n".join((told["text"], told["line"] or "", camera["name"], camera["port"])).casefold()

    def log(self, text: str, time: str, cameras: Cameras) -> Value:
        line = log_lines.parse(text)
        camera = cameras.of(line, time)
        words = line.words(self._texts) if line else text
        if line and line.profile is not None and camera is None:
            words = self._texts.text("log.of_profile", profile=str(line.profile), words=words)
        return {"kind": "log", "text": words, "line": text, "camera": camera}

    def plug(self, plug: Value) -> Value:
        return {**plug, "severity": PLUG_SEVERITY, "text": self._texts.text(f"events.{plug['kind']}"), "line": None}


def newest(history: History, state: Value | None, wish: Wish) -> list[Value]:
    """Each kind stays in its own order, also if the clock was set meanwhile."""
    teller = Teller(wish)
    past = _past(history, wish, teller)
    cameras = Cameras(state, past.last_changes)

    def fits(text: str, time: str) -> bool:
        return teller.fits(teller.log(text, time, cameras))

    lines = event_log.newest(wish.limit, wish.before, wish.severity, fits if wish.search else None)
    logged = [{**line, **teller.log(line["text"], line["time"], cameras)} for line in lines]
    plugs = [teller.plug(one) for one in past.plugs]
    return list(heapq.merge(logged, plugs, key=lambda one: str(one["time"]), reverse=True))[: wish.limit]


def _past(history: History, wish: Wish, teller: Teller) -> Past:
    def fits(plug: Value) -> bool:
        return wish.severity in (None, PLUG_SEVERITY) and teller.fits(teller.plug(plug))

    try:
        return history.past(wish.limit, wish.before_plug, fits)
    except sqlite3.Error:  # the page does without it
        return Past({}, [])
