# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What has happened, newest first: what the users of the pages did, with the lines that the library logged of it, the other
lines of the event log, with the camera that each is about, and the cameras that came, went and waited."""

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
from ownerlib.cameras import Value, name_of
from ownerlib.days import Days
from ownerlib.history import REFUSED, History, Known, Past, Stream
from ownerlib.log_lines import Line
from ownerlib.stream_words import stream_words
from ownerlib.texts import texts

NEVER = "9999"
NOBODY: tuple[str, Value | None] = (NEVER, None)


@dataclass(frozen=True)
class Wish:
    """What is asked for. The number is that of the oldest line of the log that is known already."""

    limit: int
    before: int | None = None
    known: Known = Known()
    search: str = ""
    severity: str | None = None
    language: str = "en"
    zone: str = "UTC"


class Cameras:
    """The cameras as they are called at present, since when each has its profile and its port, and which streamed before."""

    def __init__(self, state: Value | None, past: Past) -> None:
        channels = [it for it in state["channels"] if it["port"]] if state else []
        self._of_profiles = {it["profile"]: (_given(it["created"]), it) for it in channels if it["profile"] is not None}
        self._of_ports = {it["port"]: (past.last_changes.get(it["port"], ""), it) for it in channels}
        self._names = past.names
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
            return {"name": self._names.get((line.device, line.port or ""), line.device), "port": line.port}
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
        self._days = Days(self._texts, wish.zone)
        self._words = [(word, _beginning(word)) for word in wish.search.casefold().split()]

    def fits(self, told: Value) -> bool:
        """Checks for each word that is searched for: in what is shown, or as the begin of a word in the lines of the log or in the day."""
        camera = told["camera"] or {"name": "", "port": ""}
        shown = "\n".join((told["text"], told["user"] or "", camera["name"], camera["port"])).casefold()
        others = "\n".join((*told["lines"], self._days.words(told["time"]))).casefold()
        return all(word in shown or begin.search(others) for word, begin in self._words)

    def log(self, event: event_log.Event, cameras: Cameras) -> Value:
        text = event["text"]
        line = log_lines.parse(text)
        camera = cameras.of(line, event["time"])
        words = (line and line.words(self._texts)) or text
        if line and line.profile is not None and camera is None:
            words = self._texts.text("log.of_profile", profile=str(line.profile), words=words)
        return {**event, "kind": "log", "text": words, "lines": [text], "user": None, "camera": camera}

    def kept(self, one: Value) -> Value:
        """Puts what the history has into words."""
        if one["kind"] == "act":
            return self._act(**one)
        return self._turn(**one)

    def _turn(self, wait: Value | None, **rest: Any) -> Value:
        """A camera that waits does so for another one, and because of what they share."""
        key = f"events.{rest['kind']}" + (f".{wait['collision']}" if wait and wait["collision"] and rest["kind"] == "waits" else "")
        text = self._texts.text(key, **(wait or {}), root=rest["camera"]["port"].split(".")[0])
        return {**rest, "severity": "information", "text": text, "lines": [], "user": None}

    def _act(self, name: str, values: Value, **rest: Any) -> Value:
        if name == "changed":
            values = {"settings": stream_words(values["settings"], self._texts)}
        shown = {one: str(value) for one, value in values.items()}
        severity = "warning" if name == REFUSED else "information"
        text = self._texts.text(f"act.{name}", **shown, button=self._texts.text("do.instead"))
        return {**rest, "severity": severity, "text": text}


def _beginning(word: str) -> re.Pattern[str]:
    """Returns what finds the begin of a word; a number has to be a whole one."""
    return re.compile((r"\b" if word[:1].isalnum() else "") + re.escape(word) + (r"\b" if word.isdigit() else ""))


def newest(history: History, state: Value | None, wish: Wish) -> list[Value]:
    """Each kind stays in its own order, also if the clock was set meanwhile."""
    teller = Teller(wish)
    past = _past(history, wish, teller)
    cameras = Cameras(state, past)

    def fits(event: event_log.Event) -> bool:
        if (event["id"], event["time"]) in past.lines_of_acts:
            return False
        return not wish.search or teller.fits(teller.log(event, cameras))

    lines = event_log.newest(wish.limit, wish.before, wish.severity, fits)
    kinds = ([teller.log(line, cameras) for line in lines], map(teller.kept, past.turns), map(teller.kept, past.acts))
    return list(heapq.merge(*kinds, key=lambda one: str(one["time"]), reverse=True))[: wish.limit]


def _past(history: History, wish: Wish, teller: Teller) -> Past:
    def fits(one: Value) -> bool:
        told = teller.kept(one)
        return wish.severity in (None, told["severity"]) and teller.fits(told)

    try:
        return history.past(wish.limit, wish.known, fits)
    except sqlite3.Error:  # the page does without it
        return Past()
