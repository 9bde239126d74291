# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The host that the tests run on: its hardware, what the library made of it, and the links on its disk."""

from __future__ import annotations

import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass
from pathlib import Path

import usbdevlib
from boxlib.reboot import hardware_change
from simlib.host import SimulatedHost
from simlib.machine import PluggedCamera
from usbdev.records import CHANNELS

CONFIGURATION = Path("/etc/config/usbdev.conf")
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")


@dataclass(frozen=True)
class Channel:
    """A channel as it is in the file, with the values that a reader takes for missing keys."""

    number: int
    exists: int
    profile: int
    slot: str
    device: str
    parked_behind: int
    vnode: int
    link: str
    created: str

    @property
    def attached(self) -> bool:
        return self.exists == 1


class Host:
    """A command changes the hardware and calls the library, as the device manager and the application do."""

    def __init__(self) -> None:
        self.hardware = SimulatedHost()

    def empty(self) -> None:
        """Makes it a host on which nothing ever was."""
        machine = self.hardware.machine()
        ports = [slot for slot in [*machine.hubs, *machine.cameras] if "." not in slot]
        self.change_hardware(*(f"unplug {port}" for port in ports))
        CONFIGURATION.write_text("<velmora/>\n")
        self.empty_links()

    @staticmethod
    def empty_links() -> None:
        for link in APPLICATION.iterdir():
            if link.is_symlink():
                link.unlink()

    def plug(self, camera: str, port: str) -> int:
        """Returns the channel of its first picture."""
        return self._tell(self.hardware.plug(camera, port), 1)

    def unplug(self, port: str) -> list[int]:
        """Returns the channels of what went, first pictures only."""
        return [self._tell(plugged, 0) for plugged in self.hardware.unplug(port)]

    def reboot(self, *changes: str) -> None:
        self.change_hardware(*changes)
        usbdevlib.start_up()

    def change_hardware(self, *changes: str) -> None:
        """While the host is off; a change is written as the sandbox's option, without the dashes: "move 3-1 3-2"."""
        self.hardware.reboot([hardware_change(*f"--{change}".split()) for change in changes])

    def node(self, port: str) -> int:
        """The node that carries the picture of the camera in the port."""
        return self.hardware.machine().cameras[port].nodes[0]

    def channels(self) -> list[Channel]:
        root = ElementTree.parse(CONFIGURATION).getroot()
        return [_channel(root, number) for number in range(CHANNELS)]

    def links(self) -> dict[str, str]:
        """The links of the live views, and where each leads."""
        return {path.name: str(path.readlink()) for path in APPLICATION.iterdir() if path.is_symlink()}

    @staticmethod
    def _tell(plugged: PluggedCamera, state: int) -> int:
        channels = [
            (it.kind, usbdevlib.hotplug(int(it.kind == "camera"), it.number, plugged.port.slot, state, it.name))
            for it in plugged.events()
        ]
        return next(channel for kind, channel in channels if kind == "camera")


def stream_folder(profile: int) -> str:
    return f"{APPLICATION}/hls/channel{profile + 1}"


def _channel(root: ElementTree.Element, number: int) -> Channel:
    def text(path: str) -> str:
        return root.findtext(f"ch{number}/{path}") or ""

    def integer(path: str, otherwise: int) -> int:
        return int(text(path) or otherwise)

    return Channel(
        number=number,
        exists=integer("exists", 0),
        profile=integer("profile", -1),
        slot=text("usbslot"),
        device=text("devname"),
        parked_behind=integer("conflictch", -1),
        vnode=integer("video/vnode", -1),
        link=text("hlspath"),
        created=text("createtime"),
    )
