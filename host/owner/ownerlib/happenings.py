# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What has happened, newest first: the lines of the event log, with the camera that each is about, and the cameras that
came and went."""

from __future__ import annotations

import heapq
import re
import sqlite3
from dataclasses import dataclass
from typing import Any

from statelib import event_log

from ownerlib.history import History, name_of

Value = dict[str, Any]
# The library's log counts profiles from one, and calls them channels.
OF_PROFILE = re.compile(r"Modified Channel (\d) |(?:Enabled|Disabled) [a-z ]+ on Channel (\d)$")
OF_PORT = re.compile(r"USB slot \[([\d.-]+)\] has been ")
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
    """The cameras as they are called at present."""

    def __init__(self, state: Value | None) -> None:
        channels = [it for it in state["channels"] if it["port"]] if state else []
        self._by_profile = {it["profile"]: it for it in channels if it["profile"] is not None}
        self._by_port = {it["port"]: it for it in channels}

    def of(self, line: str) -> Value | None:
        """Returns the camera that a line of the log is about; None if that is not sure."""
        profile, port = OF_PROFILE.match(line), OF_PORT.match(line)
        if profile:
            channel = self._by_profile.get(int(profile[1] or profile[2]) - 1)
        else:
            channel = self._by_port.get(port[1]) if port else None
        return {"name": name_of(channel), "port": channel["port"]} if channel else None

    def words_of(self, line: str) -> str:
        camera = self.of(line)
        return f"{camera['name']} {camera['port']}" if camera else ""


def newest(history: History, state: Value | None, wish: Wish) -> list[Value]:
    """Each kind stays in its own order, also if the clock was set meanwhile."""
    cameras = Cameras(state)
    lines = event_log.newest(wish.limit, wish.before, wish.search, wish.severity, cameras.words_of)
    logged = [{**line, "kind": "log", "camera": cameras.of(line["text"])} for line in lines]
    plugs = [_plug(one) for one in _plugs(history, wish)] if wish.severity in (None, "information") else []
    return list(heapq.merge(logged, plugs, key=lambda one: str(one["time"]), reverse=True))[: wish.limit]


def _plugs(history: History, wish: Wish) -> list[Value]:
    try:
        return history.plugs(wish.limit, wish.before_plug, wish.search)
    except sqlite3.Error:  # the page does without them
        return []


def _plug(plug: Value) -> Value:
    camera = {"name": plug["name"], "port": plug["port"]}
    told = {"severity": "information", "text": PLUG_WORDS[plug["kind"]], "camera": camera}
    return {"id": plug["id"], "time": plug["time"], "kind": plug["kind"], **told}
