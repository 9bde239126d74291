# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The cameras and hubs that can be plugged in: a folder or file of data each."""

from __future__ import annotations

import tomllib
from pathlib import Path
from typing import Any, NamedTuple

from simlib.errors import SimError

DATA = Path(__file__).resolve().parent.parent
METADATA = "metadata"
LONGEST_NAME = 31


class SoundCard(NamedTuple):
    """entry_count, channel_mode and channel_count are what the audio library reports of the card."""

    name: str
    first_interface: int
    entry_count: int
    channel_mode: int
    channel_count: int


class VideoFunction(NamedTuple):
    """A function with a picture: its interface, the interface's text, and the listing of each of its nodes."""

    first_interface: int
    nodes: list[str]
    interface: str | None = None


class UsbDevice:
    """What every device reports about itself; a text that the device does not have is None."""

    name: str
    vendor_id: str
    product_id: str
    manufacturer: str | None = None
    product: str | None = None
    serial: str | None = None
    speed: int = 480
    usb_version: str = "2.00"
    max_power: str = "500mA"
    max_packet: int = 64
    release: str = "0100"

    def __init__(self, name: str, vendor_id: str, product_id: str, **others: Any) -> None:
        self.name, self.vendor_id, self.product_id = name, vendor_id, product_id
        self.describe(**others)

    def describe(self, **facts: Any) -> None:
        """Sets attributes that are not as usual."""
        for attribute, value in facts.items():
            if not hasattr(self, attribute):
                raise TypeError(f"a {type(self).__name__} has no {attribute}")
            setattr(self, attribute, value)


class Hub(UsbDevice):
    ports: int = 4


class Camera(UsbDevice):
    interface: str | None = None
    quirks: str = "0x0"
    interface_count: int = 2
    first_video_interface: int = 0
    nodes: list[str] = ["formats.txt", METADATA]
    second_function: VideoFunction | None = None
    sound: SoundCard | None = None
    video_name: str | None = None
    comment: str = ""

    @property
    def functions(self) -> list[VideoFunction]:
        first = VideoFunction(self.first_video_interface, self.nodes, self.interface)
        return [first] if self.second_function is None else [first, self.second_function]

    @property
    def node_name(self) -> str:
        return self.name_of(self.functions[0])

    def name_of(self, function: VideoFunction) -> str:
        """Returns the name of its nodes, as the camera driver makes and cuts it, or another driver."""
        if self.video_name is not None:
            return self.video_name
        name = self.product or f"UVC Camera ({self.vendor_id}:{self.product_id})"
        if function.interface:
            name += f": {function.interface}"
        return name.encode()[:LONGEST_NAME].decode(errors="ignore")

    def listing(self, node: str) -> bytes:
        """Returns the answer of v4l2-ctl for one of the nodes."""
        if node == METADATA:
            return b"ioctl: VIDIOC_ENUM_FMT\n"
        return (camera_folder(self.name) / node).read_bytes()


def camera_names() -> list[str]:
    return sorted(path.parent.name for path in (DATA / "cameras").glob("*/camera.toml"))


def camera_folder(name: str) -> Path:
    """Returns the folder of a camera; a name with a slash is the path of one that is elsewhere."""
    return Path(name).absolute() if "/" in name else DATA / "cameras" / name


def load_camera(name: str) -> Camera:
    folder = camera_folder(name)
    path = folder / "camera.toml"
    if not path.is_file():
        raise SimError(f"there is no camera '{name}'; 'sim list' shows them")
    text = path.read_text(encoding="utf-8")
    facts = tomllib.loads(text)
    sound, second = facts.pop("sound", None), facts.pop("second_function", None)
    comments = [line[2:] for line in text.splitlines() if line.startswith("# ")]
    comment = " ".join(line for line in comments if not line.startswith("SPDX-"))
    return Camera(
        name=str(folder) if "/" in name else name,
        second_function=VideoFunction(**second) if second else None,
        sound=SoundCard(**sound) if sound else None,
        comment=comment,
        **facts,
    )


def load_hub(name: str) -> Hub:
    path = DATA / "hubs" / f"{name}.toml"
    return Hub(name=name, **tomllib.loads(path.read_text(encoding="utf-8")))
