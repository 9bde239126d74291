"""What a step of the demo looks at: the channels, the event log and the datagrams, as usbdevctl tells them."""

from __future__ import annotations

import json
import subprocess
import time
from pathlib import Path
from types import TracebackType
from typing import Any

Channel = dict[str, Any]


def run(*command: str) -> str:
    """Runs a command of the host; a failure ends the demo with what the command said."""
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise SystemExit(f"demo: {' '.join(command)} ended with {done.returncode}: {done.stderr.strip()}")
    return done.stdout


def channels() -> list[Channel]:
    return json.loads(run("usbdevctl", "channels", "--json"))["channels"]


def log_texts() -> list[str]:
    """The event log, oldest first; nothing is logged before the first event."""
    done = subprocess.run(["usbdevctl", "log", "--json"], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        return []
    return [event["text"] for event in json.loads(done.stdout)["events"]]


class Manager:
    """The manager daemon's ear: a `usbdevctl watch` in the background."""

    def __init__(self, folder: Path) -> None:
        self._received = folder / "datagrams"
        with self._received.open("w") as out:
            self._watch = subprocess.Popen(
                ["usbdevctl", "watch", "--json"], stdout=out, stderr=subprocess.PIPE, text=True
            )
        assert self._watch.stderr is not None
        self._watch.stderr.readline()  # it says when it listens
        self._seen = 0

    def __enter__(self) -> Manager:
        return self

    def __exit__(self, kind: type[BaseException] | None, value: BaseException | None, at: TracebackType | None) -> None:
        self._watch.terminate()
        self._watch.wait()

    def fresh(self, expected: int) -> list[dict[str, Any]]:
        """The datagrams since the last call; waits for as many as are expected, two seconds at the most."""
        deadline = time.monotonic() + 2
        lines = self._received.read_text().splitlines()
        while len(lines) < self._seen + expected and time.monotonic() < deadline:
            time.sleep(0.01)
            lines = self._received.read_text().splitlines()
        fresh = [json.loads(line) for line in lines[self._seen :]]
        self._seen = len(lines)
        return fresh
