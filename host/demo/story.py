"""The demo's story: what is done at each step, and what must have happened then.

Runs inside the sandbox. Ends with status 1 as soon as something is not as it should be.
"""

from __future__ import annotations

import argparse
import tempfile
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import painting
from host_view import Channel, Manager, channels, log_texts, run


@dataclass
class Step:
    title: str
    commands: list[str]
    # Per channel, the fields that must have these values now; the other fields may be anything.
    channels: dict[int, dict[str, Any]]
    # The datagrams that must have come: (event, profile), profile -1 for none.
    datagrams: list[tuple[int, int]] = field(default_factory=list)
    # Pieces of the log lines that must have been added, in order.
    log: list[str] = field(default_factory=list)


REMOVED, STREAMS = painting.REMOVED, painting.STREAMS
PLUGGED = {"state": "plugged", "parked_behind": None}

STORY = [
    Step(
        "A camera is plugged in behind a hub and becomes channel 0",
        ["sim plug hd-usb-camera 3-1.1"],
        {0: {**PLUGGED, "slot": "3-1.1", "profile": None}},
    ),
    Step(
        "Profile 0 is bound to it: it gets a live-view link",
        ["usbdevctl assign 3-1.1 0"],
        {0: {**PLUGGED, "profile": 0}},
        log=["Modified Channel 1 USB device name: USB 2.0 Camera: HD USB Camera (3-1.1)"],
    ),
    Step(
        "A second camera of the same model at the same root port must wait: channel 1 is parked behind channel 0",
        ["sim plug hd-usb-camera 3-1.2"],
        {0: PLUGGED, 1: {"state": "plugged", "slot": "3-1.2", "parked_behind": 0}},
    ),
    Step(
        "Two more cameras on other controllers: nobody is in their way; one is faster than 60 frames per second",
        ["sim plug hd-pro-webcam 1-2", "sim plug stereo-camera 5-1", "usbdevctl assign 1-2 1"],
        {2: {**PLUGGED, "slot": "1-2", "profile": 1}, 3: {**PLUGGED, "slot": "5-1"}},
        log=["has image size over 60 fps", "Modified Channel 2 USB device name"],
    ),
    Step(
        "The first camera is pulled out: the manager is told, and channel 1 waits no longer",
        ["sim unplug 3-1.1"],
        {0: {"state": "unplugged", "profile": 0}, 1: PLUGGED},
        datagrams=[(REMOVED, 0)],
    ),
    Step(
        "Another camera goes into its port: channel 0 waits for its own, the newcomer becomes channel 4",
        ["sim plug usb2-camera 3-1.1"],
        {0: {"state": "unplugged", "profile": 0}, 4: {**PLUGGED, "slot": "3-1.1", "profile": None}},
        log=["has image size over 60 fps"],
    ),
    Step(
        "The first camera comes back: channel 0 knows it, profile 0 streams again, and channel 1 waits once more",
        ["sim unplug 3-1.1", "sim plug hd-usb-camera 3-1.1"],
        {0: {**PLUGGED, "profile": 0}, 1: {"state": "plugged", "parked_behind": 0}, 4: {"state": "unplugged"}},
        datagrams=[(REMOVED, -1), (STREAMS, 0)],
    ),
]


def mismatches(step: Step, now: list[Channel], datagrams: list[dict[str, Any]], log: list[str]) -> list[str]:
    """What is not as the step says, one sentence each."""
    wrong = [
        f"channel {number}: {name} is {now[number][name]!r}, not {value!r}"
        for number, fields in step.channels.items()
        for name, value in fields.items()
        if now[number][name] != value
    ]
    came = [(datagram["event"], datagram["profile"]) for datagram in datagrams]
    if came != step.datagrams:
        wrong.append(f"datagrams {came}, not {step.datagrams}")
    if len(log) != len(step.log) or any(piece not in text for piece, text in zip(step.log, log)):
        wrong.append(f"log {log}, not {step.log}")
    return wrong


def main() -> None:
    arguments = argparse.ArgumentParser(description="The demo's story; run inside the sandbox.")
    arguments.add_argument("--colour", action="store_true")
    paint = painting.Painter(arguments.parse_args().colour)
    logged = len(log_texts())
    with tempfile.TemporaryDirectory() as folder, Manager(Path(folder)) as manager:
        for number, step in enumerate(STORY, 1):
            before = channels()
            paint.title(f"{number}. {step.title}")
            for command in step.commands:
                paint.command(command)
                run(*command.split())
            now = channels()
            datagrams = manager.fresh(len(step.datagrams))
            log = log_texts()[logged:]
            logged += len(log)
            paint.channels(before, now)
            paint.datagrams(datagrams)
            paint.log(log)
            wrong = mismatches(step, now, datagrams, log)
            if wrong:
                raise SystemExit("demo: not as it should be: " + "; ".join(wrong))
    paint.title("Everything is as it should be.")


if __name__ == "__main__":
    main()
