# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Which controller each USB bus of the host has, and the devices above it."""

from __future__ import annotations

import tomllib
from typing import NamedTuple

from simlib.attributes import AttributeList, Values
from simlib.catalogue import DATA
from simlib.errors import SimError
from simlib.ports import Port

SUPERSPEED = 5000
HIGH_SPEED = 480
FULL_SPEED = 12
SPEED_NAMES = {SUPERSPEED: "superspeed", HIGH_SPEED: "high-speed", FULL_SPEED: "full-speed"}


class Bus(NamedTuple):
    number: int
    controller: str
    speed: int
    ports: int
    manufacturer: str
    product: str
    takes_slower: bool = True
    takes_faster: bool = True

    def takes(self, speed: int) -> bool:
        return (self.takes_slower or speed >= self.speed) and (self.takes_faster or speed <= self.speed)

    @property
    def bridges(self) -> int:
        """Returns the number of PCI bridges above its controller."""
        return max(self.controller.count("/") - 1, 0) if self.controller.startswith("pci") else 0

    @property
    def devpath(self) -> str:
        return f"/devices/{self.controller}/usb{self.number}"

    def values(self) -> Values:
        """The attributes of the root hub."""
        protocol, product_id, version = {
            SUPERSPEED: ("03", "0003", "3.00"),
            # 01: it translates for slower devices, unless these have their own controller
            HIGH_SPEED: ("01" if self.takes_slower else "00", "0002", "2.00"),
            FULL_SPEED: ("00", "0001", "1.10"),
        }[self.speed]
        return {
            "busnum": self.number,
            "protocol": protocol,
            "max_packet": 9 if self.speed == SUPERSPEED else 64,
            "product_id": product_id,
            "usb_version": f" {version}",
            "manufacturer": self.manufacturer,
            "product": self.product,
            "serial": self.controller.rsplit("/", 1)[1],
            "ports": self.ports,
            "speed": self.speed,
        }


class Topology:
    def __init__(self, name: str) -> None:
        self.folder = DATA / "topologies" / name
        path = self.folder / "topology.toml"
        if "/" in name or not path.is_file():
            raise SimError(f"there is no topology '{name}'; there are: {', '.join(topology_names())}")
        self.name = name
        facts = tomllib.loads(path.read_text(encoding="utf-8"))
        self.buses = {bus["number"]: Bus(**bus) for bus in facts["bus"]}

    def bus_of(self, port: Port) -> Bus:
        bus = self.buses.get(port.bus)
        if bus is None:
            numbers = ", ".join(map(str, self.buses))
            raise SimError(f"this host has no USB bus {port.bus}; its buses are {numbers}")
        if port.path[0] > bus.ports:
            raise SimError(f"bus {bus.number} has only {bus.ports} ports")
        return bus

    def bus_for(self, speed: int, near: Bus) -> Bus:
        """Returns the nearest bus for devices of this speed."""

        def distance(bus: Bus) -> tuple[bool, int]:
            return bus.bridges != near.bridges, abs(bus.number - near.number)

        return min((bus for bus in self.buses.values() if bus.takes(speed)), key=distance)

    def devpath(self, port: Port) -> str:
        """Returns the path of the device in a port, below /sys."""
        slots = [Port(port.bus, port.path[:length]).slot for length in range(1, len(port.path) + 1)]
        return "/".join([self.buses[port.bus].devpath, *slots])

    def controller_blocks(self, bus: Bus) -> list[str]:
        """Prints the walk from the controller up to the root of the tree."""
        parts = bus.controller.split("/")
        paths = ["/devices/" + "/".join(parts[:length]) for length in range(len(parts), 0, -1)]
        return [self._attributes(path).block(path, {}) for path in paths]

    def _attributes(self, devpath: str) -> AttributeList:
        return AttributeList(self.folder / "devices" / f"{devpath.rsplit('/', 1)[1]}.txt")


def topology_names() -> list[str]:
    return sorted(path.parent.name for path in (DATA / "topologies").glob("*/topology.toml"))
