# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a camera is: the facts that a simulated camera is made from too, and how its pictures get to the machine."""

from __future__ import annotations

import sys
import tomllib
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "host/sim"))

from simlib.catalogue import METADATA, Camera, VideoFunction, load_camera  # noqa: E402

from usbcamera.formats import Format, read_formats  # noqa: E402

__all__ = ["METADATA", "Camera", "Fault", "Wiring", "described", "functions_of", "VideoPart"]

ACTIONS = ("vanish", "hang", "stall")
MOMENTS = ("description", "text", "configuration", "probe", "commit", "picture")


@dataclass(frozen=True)
class Fault:
    """What the camera does when it is asked for something: the first time, or a later one."""

    action: str
    moment: str
    time: int = 1

    @classmethod
    def read(cls, text: str) -> Fault:
        """Reads ACTION:MOMENT or ACTION:MOMENT:TIME."""
        action, moment, *time = text.split(":")
        if action not in ACTIONS or moment not in MOMENTS or len(time) > 1:
            raise ValueError(f"'{text}' is not ACTION:MOMENT[:TIME] with {', '.join(ACTIONS)} and {', '.join(MOMENTS)}")
        return cls(action, moment, int(*time) if time else 1)


@dataclass(frozen=True)
class Wiring:
    """The tag is in every picture. The burst, of isochronous packets, is 1 to 3 packets in each (micro)frame that has some."""

    tag: int = 0
    isochronous: bool = False
    burst: int = 1
    every_microframe: bool = False
    fault: Fault | None = None


@dataclass(frozen=True)
class VideoPart:
    """A video function: its interfaces are one for control, then one for each list of formats."""

    first_interface: int
    text: str | None
    formats: list[list[Format]]


def described(name: str, changes: list[str]) -> Camera:
    """Returns a camera of the catalogue; each change is a line of its camera.toml."""
    camera = load_camera(name)
    camera.describe(**tomllib.loads("\n".join(changes)))
    return camera


def functions_of(camera: Camera) -> list[VideoPart]:
    return [_part(camera, function) for function in camera.functions]


def _part(camera: Camera, function: VideoFunction) -> VideoPart:
    """The kernel makes the nodes for metadata by itself."""
    listings = [camera.listing(node).decode() for node in function.nodes if node != METADATA]
    return VideoPart(function.first_interface, function.interface, [read_formats(it) for it in listings])
