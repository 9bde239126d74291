# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hosts that live a recorded life, see live.py: what they publish, and how, is that of the fleet service."""

from __future__ import annotations

import asyncio
import json
import subprocess
import sys
import time
from pathlib import Path
from typing import Any

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "host/fleet"), str(ROOT / "host/services")]

from fleetlib.backlog import Backlog
from fleetlib.connection import Connection
from fleetlib.publisher import Publisher
from fleetlib.settings import Settings

VERSIONS = {"usbdevctl": "7.8.9", "library": "7.8.9", "kernel": "6.1.0"}
LIVES = 20  # different ones
PLUGS, AFTERWARDS = 10, 24  # changes of each
Value = dict[str, Any]


def record(build: Path, lives: range, changes: int, folder: Path) -> None:
    """Lets hosts live in a sandbox, and writes a file for each life."""
    sandbox = [ROOT / "host/sandbox/sandbox", "run", "--build", build, "--", Path(__file__).with_name("live.py")]
    numbers = map(str, (lives.start, len(lives), changes))
    done = subprocess.run([*sandbox, *numbers], check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    for life in lives:
        lines = [line for line in done.stdout.splitlines(keepends=True) if line.startswith(b'{"life":%d,' % life)]
        (folder / f"{life}.jsonl").write_bytes(b"".join(lines))


def recorded(build: Path, count: int) -> list[Path]:
    """Returns the files of so many hosts' lives, or of all different ones; records them if that was not done before."""
    folder = build / "fleet"
    folder.mkdir(exist_ok=True)
    files = [folder / f"{life}.jsonl" for life in range(min(count, LIVES))]
    if not all(file.exists() for file in files):
        record(build, range(len(files)), PLUGS + AFTERWARDS, folder)
    return files


class Log(Backlog):
    """The events of a life up to now, in the place of the host's own log."""

    def __init__(self) -> None:
        self.dropped = 0
        self._waiting: list[Value] = []

    def add(self, events: list[Value]) -> None:
        self._waiting += events

    def next(self, most: int) -> list[Value]:
        return self._waiting[:most]

    def taken(self, number: int) -> None:
        self._waiting = [event for event in self._waiting if event["id"] > number]


class PlayedHost(Publisher):
    """Publishes one state of its life after the other, each when it is told to."""

    def __init__(self, given: Settings, life: Path) -> None:
        self._log = Log()
        super().__init__(given, VERSIONS, self._log)
        self._lines = life.open("rb")
        self.taken = asyncio.Event()  # the broker has the newest state
        self.go_on()

    def go_on(self) -> float:
        """Notes the next state; returns when."""
        self.line = json.loads(self._lines.readline())
        self._log.add(self.line["events"])
        self.taken.clear()
        noted = time.monotonic()
        self.note(self.line["state"])
        self.logged()
        return noted

    def connection(self) -> Connection:
        made = super().connection()
        publish = made.publish

        async def noticed(topic: str, text: bytes, retain: bool = False) -> None:
            await publish(topic, text, retain)
            if topic == self._topics.state:
                self.taken.set()

        setattr(made, "publish", noticed)
        return made

    def truth(self) -> Value:
        """Returns what a subscriber has to see now, if that is what the machine is like."""
        document = self._document()
        assert document and not (wrong := contradiction(self.line["machine"], document)), wrong
        return document


def contradiction(machine: dict[str, dict[str, str]], seen: Value) -> str:
    """Returns in what a state, or a document of it, differs from the machine: which camera is in which port. One for which no
    channel was left may have got one later."""
    plugged = {channel["port"]: channel["device"] for channel in seen["channels"] if channel["state"] == "plugged"}
    expected = machine["channels"] | {port: name for port, name in machine["refused"].items() if port in plugged}
    return "" if plugged == expected else f"{plugged} instead of {expected}"
