# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What has happened, newest first: the lines of the event log, with the camera that each is about, and the cameras that
came and went."""

from __future__ import annotations

import heapq
import re
import sqlite3
from dataclasses import dataclass
from datetime import datetime
from typing import Any

from statelib import event_log

from ownerlib.history import History, name_of

Value = dict[str, Any]
# The library's log counts profiles from one, and calls them channels.
OF_PROFILE = re.compile(r"Modified Channel (\d) |(?:Enabled|Disabled) [a-z ]+ on Channel (\d)$")
OF_PORT = re.compile(r"USB slot \[([\d.-]+)\] has been ")
NEVER = "9999"
NOBODY: tuple[str, Value | None] = (NEVER, None)
PLUG_WORDS = {"plugged": "Plugged in", "unplugged": "Unplugged"}


@dataclass(frozen=True)
class Wish:
    """What is asked for. The numbers are those of the oldest ones that are known already."""

    limit: int
    before: int | None = None
    before_plug: int | None = None
    search: str = ""
    severity: str | None = None


class Cameras:
    """The cameras as they are called at present, and since when each has its profile and its port."""

    def __init__(self, state: Value | None, last_changes: dict[str, str]) -> None:
        channels = [it for it in state["channels"] if it["port"]] if state else []
        self._of_profiles = {it["profile"]: (_given(it["created"]), it) for it in channels if it["profile"] is not None}
        self._of_ports = {it["port"]: (last_changes.get(it["port"], ""), it) for it in channels}

    def of(self, line: str, time: str) -> Value | None:
        """Returns the camera that a line of the log is about; None if that is not sure: it may be of an earlier one."""
        profile, port = OF_PROFILE.match(line), OF_PORT.match(line)
        if profile:
            since, channel = self._of_profiles.get(int(profile[1] or profile[2]) - 1, NOBODY)
        else:
            since, channel = self._of_ports.get(port[1], NOBODY) if port else NOBODY
        return {"name": name_of(channel), "port": channel["port"]} if channel and since <= time else None

    def words_of(self, line: str, time: str) -> str:
        camera = self.of(line, time)
        return f"{camera['name']} {camera['port']}" if camera else ""


def _given(created: str | None) -> str:
    """When the camera got its profile, which the library writes in the time of the host."""
    try:
        return event_log.time_text(int(datetime.strptime(created or "", "%Y-%m-%d %H:%M:%S").timestamp()))
    except ValueError:
        return NEVER


def newest(history: History, state: Value | None, wish: Wish) -> list[Value]:
    """Each kind stays in its own order, also if the clock was set meanwhile."""
    cameras = Cameras(state, _last_changes(history))
    lines = event_log.newest(wish.limit, wish.before, wish.search, wish.severity, cameras.words_of)
    logged = [{**line, "kind": "log", "camera": cameras.of(line["text"], line["time"])} for line in lines]
    plugs = [_plug(one) for one in _plugs(history, wish)] if wish.severity in (None, "information") else []
    return list(heapq.merge(logged, plugs, key=lambda one: str(one["time"]), reverse=True))[: wish.limit]


def _last_changes(history: History) -> dict[str, str]:
    try:
        return history.last_changes()
    except sqlite3.Error:
        return {}


def _plugs(history: History, wish: Wish) -> list[Value]:
    try:
        return history.plugs(wish.limit, wish.before_plug, wish.search)
    except sqlite3.Error:  # the page does without them
        return []


def _plug(plug: Value) -> Value:
    camera = {"name": plug["name"], "port": plug["port"]}
    told = {"severity": "information", "text": PLUG_WORDS[plug["kind"]], "camera": camera}
    return {"id": plug["id"], "time": plug["time"], "kind": plug["kind"], **told}
