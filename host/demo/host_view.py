"""What a step of the demo looks at: the channels, the profiles, the event log, and what the manager does."""

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
# A stream's first segment takes a second to make, longer on a busy machine.
PATIENCE_SECONDS = 15


def run(*command: str) -> str:
    """Runs a command of the host; a failure ends the demo with what the command said."""
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
    """The channel configuration: the text of each key, by its path."""

    def walk(element: ElementTree.Element, path: str) -> Iterator[tuple[str, str]]:
        for child in element:
            yield from walk(child, f"{path}{child.tag}/")
        if len(element) == 0:
            yield path.rstrip("/"), element.text or ""

    return dict(walk(ElementTree.parse(CONFIGURATION).getroot(), ""))


def live_link(profile: int) -> Path:
    """The link through which the application's pages read a profile's stream."""
    return Path(json.loads(run("usbdevctl", "profiles", "--json"))["profiles"][profile]["link"]["path"])


def is_live(profile: int) -> bool:
    """Is there a stream at the end of a profile's live-view link?"""
    return wait_for((live_link(profile) / PLAYLIST).exists)


class EventLog:
    """The host's event log, from what is new in it."""

    def __init__(self) -> None:
        self._seen = 0

    def fresh(self) -> list[str]:
        """The texts since the last call, oldest first; before the first event there is no log."""
        done = subprocess.run(["usbdevctl", "log", "--lines", "1000", "--json"], capture_output=True, text=True, check=False)
        texts = [event["text"] for event in json.loads(done.stdout)["events"]] if done.returncode == 0 else []
        fresh, self._seen = texts[self._seen :], len(texts)
        return fresh


class Manager:
    """The manager daemon: the datagrams that reach it and what it makes of them, a line each."""

    def __init__(self) -> None:
        self._seen = len(self._lines())

    def fresh(self, expected: int) -> list[str]:
        """The lines since the last call; waits for as many as are expected."""
        wait_for(lambda: len(self._lines()) >= self._seen + expected)
        lines = self._lines()
        fresh, self._seen = lines[self._seen :], len(lines)
        return fresh

    def _lines(self) -> list[str]:
        """Without the lines that begin with the daemon's name: these are about itself."""
        return [line for line in MANAGER_LOG.read_text().splitlines() if not line.startswith("manager-service:")]
