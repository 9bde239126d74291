# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The USB ports with cameras, under their hubs and controllers."""

from __future__ import annotations

from pathlib import PurePosixPath
from typing import Any

from usbdev import aio, devices

Row = dict[str, Any]
Camera = tuple[str, str, int]  # port, name and node


class Controllers:
    """The controllers' paths, which take commands to find out: asked once for each camera, as long as it stays."""

    def __init__(self) -> None:
        self._found: dict[Camera, tuple[str | None, bool]] = {}

    async def learn(self, rows: list[Row]) -> None:
        attached = [_camera(row) for row in rows if row["state"] == "plugged" and row["video_node"] is not None]
        self._found = {camera: self._found[camera] for camera in attached if camera in self._found}
        for camera in attached:
            if camera not in self._found:
                node = camera[2]
                path = await aio.call(devices.controller_path, node)
                self._found[camera] = (path, await aio.call(devices.is_behind_pci_bridge, node))

    def of_bus(self, bus: int) -> tuple[str | None, str | None]:
        """Returns the paths of the bus's controller and of its bridge, if it is behind one and a camera tells."""
        for (port, _, _), (path, is_behind_bridge) in self._found.items():
            if path and _bus(port) == bus:
                return path, str(PurePosixPath(path).parent) if is_behind_bridge else None
        return None, None


def tree(rows: list[Row], controllers: Controllers) -> dict[str, Any]:
    found: dict[str | int, dict[str, Any]] = {}
    cameras = {row["slot"]: row for row in sorted(rows, key=lambda row: bool(row["state"] == "plugged")) if row["slot"]}
    for bus in sorted({_bus(port) for port in cameras}):
        path, bridge = controllers.of_bus(bus)
        controller = found.setdefault(path or bus, {"path": path, "bridge": bridge, "buses": [], "ports": []})
        controller["buses"].append(bus)
        controller["ports"] += _ports(f"{bus}-", {port: row for port, row in cameras.items() if _bus(port) == bus})
    return {"controllers": list(found.values())}


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


def _camera(row: Row) -> Camera:
    return row["slot"], row["device"], row["video_node"]


def _bus(port: str) -> int:
    return int(port.partition("-")[0])
