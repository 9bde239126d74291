# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The USB controllers with the ports that have cameras, and the ports where one more camera can stream."""

from __future__ import annotations

import re
from collections.abc import Set
from dataclasses import dataclass
from pathlib import Path, PurePosixPath
from typing import Any

Row = dict[str, Any]  # of "usbdevctl explain --json"
DEVICES = Path("/sys/bus/usb/devices")
ROOT_HUB = re.compile(r"usb(\d+)")
DEVICE = re.compile(r"(\d+-\d+)(?:\.\d+)*")
PCI = re.compile(r"[0-9a-f]{4,}:[0-9a-f]{2}:[0-9a-f]{2}\.[0-7]")
NO_SOCKET = ("hardwired", "not used")  # as the kernel calls ports inside of the machine
MOST_RESERVED = 0.8  # of a bus; a camera that comes to more is refused by most controllers


@dataclass
class Bus:
    """A bus as sysfs shows it, with the ports of its hubs that have a socket and no device."""

    path: str | None  # of its controller
    empty_ports: list[str]

    @property
    def bridge(self) -> str | None:
        """The PCI device above the controller, which can only be a bridge."""
        above = PurePosixPath(self.path or "").parent
        return str(above) if PCI.fullmatch(above.name) else None


def buses(devices: Path = DEVICES) -> dict[int, Bus]:
    names = [path.name for path in devices.glob("*")]
    plugged = [found for name in names if (found := DEVICE.fullmatch(name))]
    taken = {port for found in plugged for port in (found[0], found[1])}
    numbers = sorted(int(found[1]) for name in names if (found := ROOT_HUB.fullmatch(name)))
    return {number: _bus(devices, number, taken) for number in numbers}


def full(reserved: list[dict[str, int]]) -> set[int]:
    """Returns the buses on which too much is reserved for one more camera, of those of "usbdevctl explain --json"."""
    return {bus["bus"] for bus in reserved if bus["reserved"] >= MOST_RESERVED * bus["speed"] > 0}


def tree(rows: list[Row], known: dict[int, Bus], is_limited: bool, full: Set[int] = frozenset()) -> dict[str, Any]:
    """Returns the controllers; `is_limited` says that only one camera of the whole host can stream."""
    found: dict[str | int, dict[str, Any]] = {}
    cameras = {row["slot"]: row for row in sorted(rows, key=lambda row: bool(row["state"] == "plugged")) if row["slot"]}
    active = {_root(row["slot"]) for row in rows if _is_active(row)}
    for number in sorted({*known, *map(_number, cameras)}):
        bus = known.get(number, Bus(None, []))
        controller = found.setdefault(
            bus.path or number, {"path": bus.path, "bridge": bus.bridge, "buses": [], "ports": [], "free_ports": []}
        )
        controller["buses"].append(number)
        controller["ports"] += _ports(f"{number}-", {port: row for port, row in cameras.items() if _number(port) == number})
        # The library lets one camera stream of those on a port of the host.
        free = [port for port in bus.empty_ports if port not in cameras and _root(port) not in active]
        controller["free_ports"] += free if number not in full else []
    for controller in found.values():
        # And one of those on a controller behind a bridge.
        if active and (is_limited or (controller["bridge"] and set(map(_number, active)) & set(controller["buses"]))):
            controller["free_ports"] = []
    return {"controllers": list(found.values()), "one_camera": is_limited}


def _bus(devices: Path, number: int, taken: set[str]) -> Bus:
    root_hub = devices / f"usb{number}"
    path = "/" + str(root_hub.resolve().parent).partition("/sys/")[2]
    hubs = sorted(port for port in taken if _number(port) == number)
    ports = _sockets(root_hub, f"{number}-0:1.0", f"{number}-")
    ports += [port for hub in hubs for port in _sockets(devices / hub, f"{hub}:1.0", f"{hub}.")]
    return Bus(path, [port for port in ports if port not in taken])


def _sockets(hub: Path, interface: str, begin: str) -> list[str]:
    """Returns the ports of a hub that have a socket; for other devices, none."""
    kinds = {port: hub / interface / f"{hub.name}-port{port}/connect_type" for port in range(1, int(_text(hub / "maxchild") or 0) + 1)}
    return [f"{begin}{port}" for port, kind in kinds.items() if _text(kind) not in NO_SOCKET]


def _text(file: Path) -> str:
    """Returns what a file of sysfs contains; nothing if there is none."""
    try:
        return file.read_text(encoding="ascii").strip()
    except OSError:
        return ""


def _is_active(row: Row) -> bool:
    """Whether others have to wait for this camera, also if its stream fails."""
    is_wanted = row["profile"] is not None and row["slot_switch"] is not False
    return bool(is_wanted and row["state"] == "plugged" and row["supported"] and row["parked_behind"] is None)


def _ports(begin: str, cameras: dict[str, Row]) -> list[dict[str, Any]]:
    """Returns the ports whose names continue the beginning by one number, with those on their hubs."""
    numbers = sorted({int(port[len(begin) :].partition(".")[0]) for port in cameras if port.startswith(begin)})
    return [_port(f"{begin}{number}", cameras) for number in numbers]


def _port(port: str, cameras: dict[str, Row]) -> dict[str, Any]:
    on_hub = _ports(f"{port}.", cameras)
    camera = cameras.get(port)
    return {
        "port": port,
        "hub": bool(on_hub),
        "switched_on": camera["slot_switch"] if camera else None,
        "channel": camera["channel"] if camera else None,
        "ports": on_hub,
    }


def _root(port: str) -> str:
    """Returns the port of the host that leads to the port."""
    return port.partition(".")[0]


def _number(port: str) -> int:
    """Returns the number of the port's bus."""
    return int(port.partition("-")[0])
