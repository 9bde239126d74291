# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The demo's story: what each step does, and what must have happened after it."""

from __future__ import annotations

from collections.abc import Callable
from dataclasses import dataclass, field
from typing import Any

from viewer import Viewer


@dataclass
class Step:
    title: str
    commands: list[str]
    # Per channel, the fields that must have these values now; the other fields may be anything.
    channels: dict[int, dict[str, Any]] = field(default_factory=dict)
    # The beginnings of the configuration's changes, in the order of their keys; if none are given, they are not checked.
    stored: list[str] = field(default_factory=list)
    # The beginnings of the lines that the manager must have printed, in order.
    manager: list[str] = field(default_factory=list)
    # Parts of the events that must have been logged, in order.
    log: list[str] = field(default_factory=list)
    # What a viewer of the streams then checks.
    looks: list[Callable[[Viewer], list[str]]] = field(default_factory=list)
    # Whether to show what the commands print.
    answers: bool = False


PLUGGED = {"state": "plugged", "parked_behind": None}

STORY = [
    Step(
        "A camera is plugged in behind a hub and becomes channel 0",
        ["sim plug hd-usb-camera 3-1.1"],
        {0: {**PLUGGED, "slot": "3-1.1", "profile": None}},
    ),
    Step(
        "Profile 0 is assigned to it: it has a live link now, and its stream begins",
        ["usbdevctl assign 3-1.1 0"],
        {0: {**PLUGGED, "profile": 0}},
        manager=["event 0 (changed)  profile 0", "profile 0 streams 1280x720 at 30.00 from camera 0"],
        log=["Modified Channel 1 USB device name: USB 2.0 Camera: HD USB Camera (3-1.1)"],
    ),
    Step(
        "A second camera of the same model at the same root port must wait: channel 1 waits for channel 0",
        ["sim plug hd-usb-camera 3-1.2"],
        {0: PLUGGED, 1: {"state": "plugged", "slot": "3-1.2", "parked_behind": 0}},
    ),
    Step(
        "Two more cameras on other controllers: they conflict with no other; one is faster than 60 frames per second",
        ["sim plug hd-pro-webcam 1-2", "sim plug stereo-camera 5-1", "usbdevctl assign 1-2 1"],
        {2: {**PLUGGED, "slot": "1-2", "profile": 1}, 3: {**PLUGGED, "slot": "5-1"}},
        manager=["event 0 (changed)  profile 1", "profile 1 streams 1280x720 at 30.00 from camera 4"],
        log=["has image size over 60 fps", "Modified Channel 2 USB device name"],
        looks=[lambda viewer: viewer.watches(0, 1)],
    ),
    Step(
        "A user asks for 22 frames per second: the camera's next lower rate is taken, logged, notified and streamed",
        ["usbdevctl stream show 1", "usbdevctl stream set 1 --fps 22"],
        stored=["ch2/video/framerate: 30.00 -> 20.00", "ch2/vtag: "],
        manager=["event 0 (changed)  profile 1", "profile 1 streams no more", "profile 1 streams 1280x720 at 20.00 from camera 4"],
        log=["Modified Channel 2 FPS: 20.00"],
        looks=[lambda viewer: viewer.watches(1)],
        answers=True,
    ),
    Step(
        "The first camera is unplugged: the manager is notified, and channel 1 does not wait any more",
        ["sim unplug 3-1.1"],
        {0: {"state": "unplugged", "profile": 0}, 1: PLUGGED},
        manager=["event 7 (removed)  profile 0", "profile 0 streams no more"],
    ),
    Step(
        "Another camera is plugged into its port: channel 0 is kept for its own camera, the new one becomes channel 4",
        ["sim plug usb2-camera 3-1.1"],
        {0: {"state": "unplugged", "profile": 0}, 4: {**PLUGGED, "slot": "3-1.1", "profile": None}},
        log=["has image size over 60 fps"],
    ),
    Step(
        "The first camera is plugged in again: channel 0 knows it, profile 0 streams again, and channel 1 waits again",
        ["sim unplug 3-1.1", "sim plug hd-usb-camera 3-1.1"],
        {0: {**PLUGGED, "profile": 0}, 1: {"state": "plugged", "parked_behind": 0}, 4: {"state": "unplugged"}},
        manager=[
            "event 7 (removed)  profile none",
            "event 6 (plugged)  profile 0",
            "profile 0 streams 1280x720 at 30.00 from camera 0",
        ],
    ),
    Step(
        "The host is rebooted, and a camera is moved meanwhile: the nodes have other numbers, the streams have their old links",
        ["sandbox reboot --move 5-1 1-1"],
        {0: {**PLUGGED, "profile": 0}, 2: {**PLUGGED, "profile": 1}, 3: {**PLUGGED, "slot": "1-1"}},
        manager=[
            "profile 0 streams no more",
            "profile 1 streams no more",
            "profile 0 streams 1280x720 at 30.00 from camera 3",
            "profile 1 streams 1280x720 at 20.00 from camera 1",
        ],
        log=["has image size over 60 fps"],
        looks=[lambda viewer: viewer.watches(0, 1)],
    ),
    Step(
        "Profile 1 is shared: everybody who has the link can watch it",
        ["usbdevctl share on 1"],
        looks=[lambda viewer: viewer.opens_the_newest_share_link(1)],
    ),
    Step(
        "The link is renewed: the old one does not work any more, the new one opens",
        ["usbdevctl share renew 1"],
        looks=[lambda viewer: viewer.opens_the_newest_share_link(1), lambda viewer: viewer.tries_the_link_before()],
    ),
]
