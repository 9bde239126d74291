# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What has happened, newest first: the lines of the event log, with the camera that each is about, the cameras that came
and went, and what the users of the pages did."""

from __future__ import annotations

import heapq
import re
import sqlite3
from bisect import bisect_left, bisect_right
from dataclasses import dataclass
from datetime import datetime
from typing import Any

from statelib import event_log

from ownerlib import log_lines
from ownerlib.history import REFUSED, History, Known, Past, Stream, name_of
from ownerlib.log_lines import Line
from ownerlib.texts import texts

Value = dict[str, Any]
NEVER = "9999"
NOBODY: tuple[str, Value | None] = (NEVER, None)
# What the settings of a stream are called.
SETTINGS = {"width": "size", "height": "size", "sound": "sound.on", "sound_codec": "sound.codec"}


@dataclass(frozen=True)
class Wish:
    """What is asked for. The number is that of the oldest line of the log that is known already."""

    limit: int
    before: int | None = None
    known: Known = Known()
    search: str = ""
    severity: str | None = None
    language: str = "en"


class Cameras:
    """The cameras as they are called at present, since when each has its profile and its port, and which streamed before."""

    def __init__(self, state: Value | None, past: Past) -> None:
        channels = [it for it in state["channels"] if it["port"]] if state else []
        self._of_profiles = {it["profile"]: (_given(it["created"]), it) for it in channels if it["profile"] is not None}
        self._of_ports = {it["port"]: (past.last_changes.get(it["port"], ""), it) for it in channels}
        self._streams: dict[int, list[Stream]] = {}
        for stream in past.streams:
            self._streams.setdefault(stream.profile, []).append(stream)

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
        if line.device:
            return {"name": line.device, "port": line.port}
        return self._streamed(line.profile, time) if line.profile is not None else None

    def _streamed(self, profile: int, time: str) -> Value | None:
        """Returns the camera that streamed with the profile before and after the time, or at it."""
        streams = self._streams.get(profile, [])
        before = bisect_right(streams, time, key=lambda one: one.begin) - 1
        after = bisect_left(streams, time, key=lambda one: one.end)
        if before < 0 or after == len(streams):
            return None
        return streams[before].camera if streams[before].camera == streams[after].camera else None


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
        self._logged = re.compile(rf"\b{re.escape(self._wanted)}" if self._wanted[:1].isalnum() else re.escape(self._wanted))

    def fits(self, told: Value) -> bool:
        """Checks for the text that is searched for, in what is shown, and as the begin of a word in the log's line, which is not."""
        camera = told["camera"] or {"name": "", "port": ""}
        shown = (told["text"], told["user"] or "", camera["name"], camera["port"])
        return self._wanted in "\n".join(shown).casefold() or bool(self._logged.search((told["line"] or "").casefold()))

    def log(self, text: str, time: str, cameras: Cameras) -> Value:
        line = log_lines.parse(text)
        camera = cameras.of(line, time)
        words = (line and line.words(self._texts)) or text
        if line and line.profile is not None and camera is None:
            words = self._texts.text("log.of_profile", profile=str(line.profile), words=words)
        return {"kind": "log", "text": words, "line": text, "user": None, "camera": camera}

    def kept(self, one: Value) -> Value:
        """Puts what the history has into words."""
        if one["kind"] == "act":
            return self._act(**one)
        return {**one, "severity": "information", "text": self._texts.text(f"events.{one['kind']}"), "line": None, "user": None}

    def _act(self, name: str, values: dict[str, str], **rest: Any) -> Value:
        settings = dict.fromkeys(SETTINGS.get(one, one) for one in values.get("settings", "").split())
        shown = {**values, "settings": ", ".join(self._texts.text(one) for one in settings)}
        severity = "warning" if name == REFUSED else "information"
        return {**rest, "severity": severity, "text": self._texts.text(f"act.{name}", **shown), "line": None}


def newest(history: History, state: Value | None, wish: Wish) -> list[Value]:
    """Each kind stays in its own order, also if the clock was set meanwhile."""
    teller = Teller(wish)
    past = _past(history, wish, teller)
    cameras = Cameras(state, past)

    def fits(text: str, time: str) -> bool:
        return teller.fits(teller.log(text, time, cameras))

    lines = event_log.newest(wish.limit, wish.before, wish.severity, fits if wish.search else None)
    logged = [{**line, **teller.log(line["text"], line["time"], cameras)} for line in lines]
    kinds = (logged, map(teller.kept, past.plugs), map(teller.kept, past.acts))
    return list(heapq.merge(*kinds, key=lambda one: str(one["time"]), reverse=True))[: wish.limit]


def _past(history: History, wish: Wish, teller: Teller) -> Past:
    def fits(one: Value) -> bool:
        told = teller.kept(one)
        return wish.severity in (None, told["severity"]) and teller.fits(told)

    try:
        return history.past(wish.limit, wish.known, fits)
    except sqlite3.Error:  # the page does without it
        return Past()
