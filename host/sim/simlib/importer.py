# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The commands "sim import" and "sim capture": a simulated camera made from what tools print about a real one."""

from __future__ import annotations

import json
import re
import shutil
import subprocess
from itertools import groupby
from pathlib import Path
from tempfile import TemporaryDirectory

from simlib.capture import Capture, CapturedNode
from simlib.catalogue import DATA, METADATA, Camera, VideoFunction
from simlib.errors import SimError
from simlib.gathering import gather
from simlib.hardware import SOUND_INTERFACES, VIDEO_INTERFACES
from simlib.topology import HIGH_SPEED, SPEED_NAMES, SUPERSPEED

Facts = dict[str, object]
TRANSLATOR = DATA / "bin/v4l2-old-layout"
MOST_FUNCTIONS = 2
SHORTEST_SERIAL = 4  # a shorter one may be part of any text


def import_camera(folder: Path, name: str) -> Path:
    """Makes the camera's folder among the others, or makes nothing if the capture does not fit."""
    if re.fullmatch(r"[a-z0-9][a-z0-9-]{0,63}", name) is None:
        raise SimError(f"'{name}' cannot be a camera's name: lower-case letters, digits and dashes, at most 64")
    if (DATA / "cameras" / name).exists():
        raise SimError(f"there is a camera '{name}' already")
    return _make(DATA / "cameras" / name, folder, "; run this outside the sandbox")


def capture_camera(node: str, target: Path | None) -> Path:
    """Asks the tools about the camera of a node; makes its folder, which without a target is named after the camera."""
    with TemporaryDirectory(prefix="usbdev-capture-") as name:
        folder = Path(name)
        gather(node, folder)
        target = Path.cwd() / (_own_name(folder) if target is None else target)
        if target.exists():
            raise SimError(f"{target} is there already")
        return _make(target, folder, "")


def _make(target: Path, folder: Path, advice: str) -> Path:
    listings: dict[str, bytes] = {}
    try:
        facts = _camera(Capture(folder), listings)
    except ValueError as problem:
        raise SimError(f"the walk contains something else instead of a number: {problem}") from problem
    try:
        target.mkdir()
        _fill(target, facts, listings)
    except OSError as problem:
        raise SimError(f"{target} cannot be made ({problem.strerror}){advice}") from problem
    return target


def _own_name(folder: Path) -> str:
    first = Capture(folder).nodes[0]
    name = str(_without(first.camera.get("serial", ""), first.name))
    return re.sub(r"[^a-z0-9]+", "-", name.lower()).strip("-") or "camera"


def _fill(target: Path, facts: Facts, listings: dict[str, bytes]) -> None:
    try:
        for file, listing in listings.items():
            (target / file).write_bytes(listing)
        (target / "camera.toml").write_text(_toml(facts), encoding="utf-8")
    except OSError:
        shutil.rmtree(target, ignore_errors=True)
        raise


def _camera(capture: Capture, listings: dict[str, bytes]) -> Facts:
    """Reads the camera without its serial number, which is private. Collects the listings by the names of their files."""
    functions = [list(nodes) for _, nodes in groupby(capture.nodes, key=lambda node: node.place[0])]
    if len(functions) > MOST_FUNCTIONS:
        raise SimError(f"it has {len(functions)} video functions; at most {MOST_FUNCTIONS} are simulated")
    first, *others = [_function(nodes, listings) for nodes in functions]
    facts = _device(capture.nodes[0]) | {
        "interface": first["interface"],
        "first_video_interface": first["first_interface"],
        "nodes": first["nodes"],
    }
    facts |= _name(facts, others, functions)
    if others:
        facts["second_function"] = others[0]
    if sound := capture.sound_facts():
        facts["sound"] = sound
    elif capture.sound_cards():
        facts["sound"] = _sound(capture)
    serial = capture.nodes[0].camera.get("serial", "")
    return {key: _without(serial, value) for key, value in facts.items()}


def _without(serial: str, value: object) -> object:
    """Leaves the serial number out of whatever text contains it, such as a product's name."""
    if isinstance(value, dict):
        return {key: _without(serial, part) for key, part in value.items()}
    return value.replace(serial, "").strip() if isinstance(value, str) and len(serial) >= SHORTEST_SERIAL else value


def _device(node: CapturedNode) -> Facts:
    camera = node.camera
    return {
        "vendor_id": camera["idVendor"],
        "product_id": camera["idProduct"],
        "manufacturer": camera.get("manufacturer"),
        "product": camera.get("product"),
        "speed": _speed(node),
        "usb_version": camera["version"].strip(),
        "max_power": camera["bMaxPower"].strip(),
        "max_packet": None if _speed(node) == SUPERSPEED else int(camera["bMaxPacketSize0"]),
        "release": camera["bcdDevice"],
        "quirks": camera["quirks"],
        "interface_count": int(camera["bNumInterfaces"]),
    }


def _speed(node: CapturedNode) -> int:
    speed = node.camera["speed"]
    if speed not in map(str, SPEED_NAMES):
        raise SimError(f"it runs at {speed} Mbit/s; the simulated speeds are {', '.join(map(str, SPEED_NAMES))}")
    hubs = [block for block in node.blocks[3:] if re.fullmatch(r"\d+-[\d.]+", block["KERNEL"])]
    if int(speed) < HIGH_SPEED and any(hub["speed"] == speed for hub in hubs):
        raise SimError("it is on a hub that may slow it down; plug it into the computer itself for the capture")
    return int(speed)


def _function(nodes: list[CapturedNode], listings: dict[str, bytes]) -> Facts:
    interface = nodes[0].interface
    if int(interface["iad_bInterfaceCount"]) != VIDEO_INTERFACES:
        raise SimError(f"{interface['KERNEL']} begins a function of {interface['iad_bInterfaceCount']} interfaces; "
                       f"{VIDEO_INTERFACES} are simulated")  # fmt: skip
    files = [_note_listing(node, listings) for node in nodes]
    if files[0] == METADATA:
        raise SimError(f"video{nodes[0].number}, the first node of {interface['KERNEL']}, lists no format")
    return {"interface": interface.get("interface"), "first_interface": nodes[0].place[0], "nodes": files}


def _note_listing(node: CapturedNode, listings: dict[str, bytes]) -> str:
    listing = subprocess.run([TRANSLATOR], input=node.listing, capture_output=True, check=True).stdout
    if b"Pixel Format" not in listing:
        return METADATA
    file = f"formats-{len(listings) + 1}.txt" if listings else "formats.txt"
    listings[file] = listing
    return file


def _name(facts: Facts, others: list[Facts], functions: list[list[CapturedNode]]) -> Facts:
    """Returns the name of the nodes, if the driver would not make it from the texts."""
    known = {key: value for key, value in facts.items() if value is not None}
    second = VideoFunction(**others[0]) if others else None  # type: ignore[arg-type]
    camera = Camera(name="", second_function=second, **known)  # type: ignore[arg-type]
    made = [camera.name_of(function) for function in camera.functions]
    found = [nodes[0].name for nodes in functions]
    if made == found:
        return {}
    if others:
        raise SimError(f"the names of its functions ({', '.join(found)}) differ from those that the driver makes of its texts")
    return {"video_name": found[0]}


def _sound(capture: Capture) -> Facts:
    """Returns a usual microphone, because no capture contains what the audio library would report."""
    cards, interfaces = capture.sound_cards(), capture.sound_interfaces()
    if len(cards) != 1 or len(interfaces) != SOUND_INTERFACES:
        raise SimError(f"it has {len(cards)} sound cards with {len(interfaces)} interfaces; "
                       f"one with {SOUND_INTERFACES} is simulated")  # fmt: skip
    usual = {"entry_count": 1, "channel_mode": 1, "channel_count": 1}
    return {"name": cards[0], "first_interface": min(interfaces), **usual}


def _toml(facts: Facts) -> str:
    tables = {key: value for key, value in facts.items() if isinstance(value, dict)}
    text = "# Imported from a capture.\n" + _pairs({key: value for key, value in facts.items() if key not in tables})
    return text + "".join(f"\n[{name}]\n{_pairs(table)}" for name, table in tables.items())


def _pairs(facts: Facts) -> str:
    """Writes the pairs as TOML. Texts, numbers and lists look as in JSON, except one control character."""
    values = {key: json.dumps(value, ensure_ascii=False) for key, value in facts.items() if value is not None}
    return "".join(f"{key} = {value}\n" for key, value in values.items()).replace("\x7f", "\\u007f")
