# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What real tools printed about a camera, in a folder: the walks of its nodes, their listings, and the sound cards."""

from __future__ import annotations

import json
import re
from pathlib import Path
from typing import NamedTuple

from simlib.errors import SimError

LARGEST_FILE = 1 << 20


class Attributes(dict[str, str]):
    """One block of a walk: the keys in the singular and without ATTR{}: "KERNEL", "DRIVER", "idVendor"."""

    def __missing__(self, key: str) -> str:
        raise SimError(f"the walk has no {key}; the camera may have been unplugged during the capture")


class CapturedNode(NamedTuple):
    """A video node; its walk's first blocks are the node, its interface and the camera."""

    number: int
    blocks: list[Attributes]
    listing: bytes
    name: str

    @property
    def interface(self) -> Attributes:
        return self.blocks[1]

    @property
    def camera(self) -> Attributes:
        return self.blocks[2]

    @property
    def slot(self) -> str:
        return self.camera["KERNEL"]

    @property
    def place(self) -> tuple[int, int]:
        """Returns its interface, and its index among the interface's nodes, whose numbers may be in any order."""
        return int(self.interface["bInterfaceNumber"], 16), int(self.blocks[0]["index"])


class Capture:
    def __init__(self, folder: Path) -> None:
        if not folder.is_dir():
            raise SimError(f"there is no folder {folder}")
        self._folder = folder
        names = dict(re.findall(r"/video(\d+)/name: (.*)", self._text("video4linux-names.txt")))
        walks = sorted(folder.glob("udevadm-name-attribute-walk.video*.txt"))
        nodes = [self._node(path, names) for path in walks]
        if not nodes:
            raise SimError(f"{folder} contains no udevadm-name-attribute-walk.videoN.txt")
        slots = sorted({node.slot for node in nodes})
        if len(slots) > 1:
            raise SimError(f"it contains {len(slots)} cameras ({', '.join(slots)}); keep only the files of one")
        self.nodes = sorted(nodes, key=lambda node: node.place)

    def sound_facts(self) -> dict[str, object] | None:
        """Returns what the audio library reported of the camera's sound card, if it was asked."""
        text = self._text("sound-card.json")
        return json.loads(text) if text else None

    def sound_cards(self) -> list[str]:
        """Returns the names of the camera's own sound cards."""
        camera = self.nodes[0].camera
        controller = next((it["serial"] for it in self.nodes[0].blocks if it["KERNEL"].startswith("usb")), "")
        place = re.escape(f"usb-{controller}-{camera['devpath']},")
        return re.findall(rf"USB-Audio - (.*)\n.* at {place}", self._text("proc-asound-cards.txt"))

    def sound_interfaces(self) -> list[int]:
        slot = re.escape(self.nodes[0].slot)
        return [int(it) for it in re.findall(rf"^{slot}:1\.(\d+)$", self._text("ls-plain-snd-usb-audio.txt"), re.M)]

    def _node(self, path: Path, names: dict[str, str]) -> CapturedNode:
        number = path.name.split(".")[1].removeprefix("video")
        blocks = [_attributes(block) for block in self._text(path.name).split("  looking at ")[1:]]
        if len(blocks) < 3:
            raise SimError(f"{path.name} is not the walk of a USB camera's node")
        driver = blocks[1]["DRIVER"]
        if driver != "uvcvideo":
            raise SimError(f"video{number} has the driver {driver}; only cameras with uvcvideo are simulated")
        name = blocks[0].get("name") or names.get(number)
        if name is None:
            raise SimError(f"video4linux-names.txt has no name for video{number}")
        listing = self._bytes(f"v4l2-ctl-list-formats-ext.video{number}.txt")
        if not listing:
            raise SimError(f"v4l2-ctl-list-formats-ext.video{number}.txt is missing or empty")
        return CapturedNode(int(number), blocks, listing, name)

    def _text(self, name: str) -> str:
        try:
            return self._bytes(name).decode().replace("\r\n", "\n")
        except UnicodeDecodeError as problem:
            raise SimError(f"{name} is not text") from problem

    def _bytes(self, name: str) -> bytes:
        """Reads a file; returns an empty text if it is missing."""
        path = self._folder / name
        if not path.is_file():
            return b""
        with path.open("rb") as file:
            content = file.read(LARGEST_FILE + 1)
        if len(content) > LARGEST_FILE:
            raise SimError(f"{name} is larger than {LARGEST_FILE} bytes")
        return content


def _attributes(block: str) -> Attributes:
    """Reads the attributes of a block. Values are neither escaped nor trimmed, and may contain quotes."""
    pairs = re.findall(r'^    (?:ATTRS?\{([^}]+)\}|([A-Z]+?)S?)=="(.*)"$', block, re.M)
    return Attributes({attribute or key: value for attribute, key, value in pairs})
