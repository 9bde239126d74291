# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is plugged in, as the device manager sees it at one moment, and which camera of a USB device counts."""

from __future__ import annotations

from collections.abc import Mapping
from dataclasses import dataclass


@dataclass(frozen=True)
class Node:
    """A video node of a USB device."""

    number: int
    interface: int
    name: str
    born: int  # when udev had finished with it; of two nodes with the same number only this differs
    captures: bool = True  # others have metadata


@dataclass(frozen=True)
class Card:
    """A sound card of a USB device."""

    number: int
    name: str
    born: int


@dataclass(frozen=True)
class UsbDevice:
    """What the USB device in a port has. `is_settled` is false as long as it has nodes with which udev is not ready."""

    nodes: tuple[Node, ...] = ()
    cards: tuple[Card, ...] = ()
    is_settled: bool = True
    has_video: bool = True  # also while no driver serves it
    born: int = 0  # when udev had finished with it

    def camera(self) -> Node | None:
        """Returns the node that stands for the camera: of two functions the first counts."""
        pictures = self._pictures()
        return min(pictures, key=lambda it: (it.interface, it.number)) if pictures else None

    def is_scanned_right(self) -> bool:
        """Checks that the library's scan finds the camera's node. It lists the nodes of each interface, takes the last
        digit of the first name, and overwrites what an earlier interface gave."""
        camera = self.camera()
        if camera is None or any(it.interface != camera.interface for it in self._pictures()):
            return False
        listed = min(f"video{it.number}" for it in self.nodes if it.interface == camera.interface)
        return int(listed[-1]) == camera.number

    def _pictures(self) -> list[Node]:
        return [it for it in self.nodes if it.captures]


# The USB devices that are cameras or have a sound card, by their ports.
World = Mapping[str, UsbDevice]
