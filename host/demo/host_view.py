# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Reads what a step of the demo shows: the channels, the profiles, the event log, and what the manager does."""

from __future__ import annotations

import json
import subprocess
import time
import xml.etree.ElementTree as ElementTree
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

Channel = dict[str, Any]

CONFIGURATION = Path("/etc/config/usbdev.conf")
MANAGER_LOG = Path("/var/log/vl/manager-service.log")
PLAYLIST = "playlist.m3u8"
# It takes a second to make a stream's first segment, longer on a busy machine.
PATIENCE_SECONDS = 15


def run(*command: str) -> str:
    """Runs a command of the host; if it fails, ends the demo and prints its error."""
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise SystemExit(f"demo: {' '.join(command)} ended with {done.returncode}: {done.stderr.strip()}")
    return done.stdout


def wait_for(condition: Callable[[], bool]) -> bool:
    deadline = time.monotonic() + PATIENCE_SECONDS
    while not condition():
        if time.monotonic() > deadline:
            return False
        time.sleep(0.02)
    return True


def channels() -> list[Channel]:
    return json.loads(run("usbdevctl", "channels", "--json"))["channels"]


def stored_keys() -> dict[str, str]:
    """Returns the channel configuration: the text of each key, by its path."""

    def walk(element: ElementTree.Element, path: str) -> Iterator[tuple[str, str]]:
        for child in element:
            yield from walk(child, f"{path}{child.tag}/")
        if len(element) == 0:
            yield path.rstrip("/"), element.text or ""

    return dict(walk(ElementTree.parse(CONFIGURATION).getroot(), ""))


def live_link(profile: int) -> Path:
    """Returns a profile's live link, through which the application's pages read its stream."""
    return Path(json.loads(run("usbdevctl", "profiles", "--json"))["profiles"][profile]["link"]["path"])


def is_live(profile: int) -> bool:
    """Is there a stream where a profile's live link leads?"""
    return wait_for((live_link(profile) / PLAYLIST).exists)


class EventLog:
    """The host's event log: its new events."""

    def __init__(self) -> None:
        self._seen = 0

    def fresh(self) -> list[str]:
        """Returns the texts since the last call, oldest first; before the first event there is no log."""
        done = subprocess.run(["usbdevctl", "log", "--lines", "1000", "--json"], capture_output=True, text=True, check=False)
        texts = [event["text"] for event in json.loads(done.stdout)["events"]] if done.returncode == 0 else []
        fresh, self._seen = texts[self._seen :], len(texts)
        return fresh


class Manager:
    """The manager: it prints a line for each datagram, and for what it does."""

    def __init__(self) -> None:
        self._seen = len(self._lines())

    def fresh(self, expected: int) -> list[str]:
        """Returns the lines since the last call; waits for the expected number of lines."""
        wait_for(lambda: len(self._lines()) >= self._seen + expected)
        lines = self._lines()
        fresh, self._seen = lines[self._seen :], len(lines)
        return fresh

    def _lines(self) -> list[str]:
        """Returns the lines except those that begin with the manager's name, which are about itself."""
        return [line for line in MANAGER_LOG.read_text().splitlines() if not line.startswith("manager-service:")]
