# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is plugged into which port, and the numbers that the kernel would give it. Uses no files."""

from __future__ import annotations

from collections.abc import Iterable, Iterator
from itertools import islice, zip_longest
from typing import NamedTuple

from simlib.catalogue import Camera, UsbDevice, VideoFunction, load_hub
from simlib.errors import SimError
from simlib.ports import Port, parse_port
from simlib.topology import SPEED_NAMES, Topology

HUB = "full-speed-hub"
LAST_ADDRESS = 127


class Event(NamedTuple):
    """One device of an event: its kind ("camera" or "audio"), the number of its node or card, and its name."""

    kind: str
    number: int
    name: str


class PluggedCamera(NamedTuple):
    camera: Camera
    port: Port
    address: int
    nodes: list[int]
    card: int | None

    def functions(self) -> Iterator[tuple[VideoFunction, list[int]]]:
        """Returns each function with the numbers of its nodes."""
        numbers = iter(self.nodes)
        for function in self.camera.functions:
            yield function, list(islice(numbers, len(function.nodes)))

    def events(self) -> list[Event]:
        """Returns what the device manager reports when it is plugged in or unplugged, in the order of its interfaces."""
        events = {
            function.first_interface: Event("camera", nodes[0], self.camera.name_of(function))
            for function, nodes in self.functions()
        }
        if self.camera.sound is not None and self.card is not None:
            events[self.camera.sound.first_interface] = Event("audio", self.card, self.camera.sound.name)
        return [event for _, event in sorted(events.items())]


class Machine:
    def __init__(self, topology: Topology) -> None:
        self.topology = topology
        self.hub = load_hub(HUB)
        self.hubs: dict[str, int] = {}
        self.cameras: dict[str, PluggedCamera] = {}
        self.next_address: dict[int, int] = {}

    def plug(self, camera: Camera, port: Port) -> PluggedCamera:
        """Plugs the camera in and gives it its numbers; adds the hubs that the port needs."""
        self._check_free(camera, port)
        self._plug_hubs(port)
        address = self._take_address(port.bus)
        nodes = self._free_nodes(sum(len(it.nodes) for it in camera.functions))
        card = self._free_card() if camera.sound else None
        plugged = PluggedCamera(camera, port, address, nodes, card)
        self.cameras[port.slot] = plugged
        return plugged

    def unplug(self, port: Port) -> list[PluggedCamera]:
        """Unplugs what is in the port: a camera, or a hub with everything on it."""
        gone = [plugged for slot, plugged in self.cameras.items() if _is_at(slot, port)]
        if not gone and port.slot not in self.hubs:
            raise SimError(f"nothing is plugged in at {port.slot}")
        self.cameras = {slot: plugged for slot, plugged in self.cameras.items() if not _is_at(slot, port)}
        self.hubs = {slot: address for slot, address in self.hubs.items() if not _is_at(slot, port)}
        return gone

    def move(self, port: Port, to: Port) -> None:
        """Moves what is in a port, a camera or a hub with everything on it, to another port."""
        self._put(self._take(port), to)

    def swap(self, port: Port, other: Port) -> None:
        here, there = self._take(port), self._take(other)
        self._put(here, other)
        self._put(there, port)

    def boot(self) -> None:
        """Gives out all numbers again, as a start does."""
        cameras, hubs = self.cameras, self.hubs
        self.cameras, self.hubs, self.next_address = {}, {}, {}
        for port in _in_order_of_discovery(map(parse_port, [*hubs, *cameras])):
            if port.slot in hubs:
                self.hubs[port.slot] = self._take_address(port.bus)
            else:
                self.plug(cameras[port.slot].camera, port)

    def speed_at(self, port: Port, device: UsbDevice) -> int:
        """Returns the speed of the device in that port, in Mbit/s: the slowest on its way to the bus."""
        speeds = [device.speed, self.topology.bus_of(port).speed]
        if port.hub is not None:
            speeds.append(self.hub.speed)
        return min(speeds)

    def interface_devpath(self, plugged: PluggedCamera, function: VideoFunction) -> str:
        """Returns the path of the interface of the function's picture, below /sys."""
        return f"{self.topology.devpath(plugged.port)}/{plugged.port.slot}:1.{function.first_interface}"

    def _take(self, port: Port) -> dict[str, UsbDevice]:
        """Unplugs what is in the port, and returns it by its place on the hub: ".2" is the hub's second port."""
        hubs = [slot for slot in self.hubs if _is_at(slot, port)]
        taken: dict[str, UsbDevice] = {slot.removeprefix(port.slot): self.hub for slot in sorted(hubs, key=len)}
        return taken | {it.port.slot.removeprefix(port.slot): it.camera for it in self.unplug(port)}

    def _put(self, taken: dict[str, UsbDevice], to: Port) -> None:
        for place, device in taken.items():
            port = parse_port(to.slot + place)
            if isinstance(device, Camera):
                self.plug(device, port)
            else:
                self._check_free(device, port)
                self._plug_hubs(port)
                self.hubs[port.slot] = self._take_address(port.bus)

    def _check_free(self, device: UsbDevice, port: Port) -> None:
        bus = self.topology.bus_of(port)
        first = self.hub if port.hub else device
        if not bus.takes(first.speed):
            other = self.topology.bus_for(first.speed, bus)
            kind = SPEED_NAMES[bus.speed]
            raise SimError(f"bus {bus.number} is for {kind} devices; {first.name} belongs on bus {other.number}")
        if port.hub is not None and max(port.path[1:]) > self.hub.ports:
            raise SimError(f"a hub has only {self.hub.ports} ports")
        if port.slot in self.hubs:
            raise SimError(f"{port.slot} has a hub; unplug it or choose a port on it")
        taken = next((slot for slot in self._slots_up_from(port) if slot in self.cameras), None)
        if taken is not None:
            raise SimError(f"{taken} has the camera {self.cameras[taken].camera.name}; unplug it first")

    def _plug_hubs(self, port: Port) -> None:
        for slot in reversed(self._slots_up_from(port)[1:]):
            if slot not in self.hubs:
                self.hubs[slot] = self._take_address(port.bus)

    def _slots_up_from(self, port: Port | None) -> list[str]:
        slots = []
        while port is not None:
            slots.append(port.slot)
            port = port.hub
        return slots

    def _take_address(self, bus: int) -> int:
        """Returns the next address. As in the kernel, an address that was just freed is not the next one."""
        used = {plugged.address for plugged in self.cameras.values() if plugged.port.bus == bus}
        used |= {address for slot, address in self.hubs.items() if slot.startswith(f"{bus}-")}
        start = self.next_address.get(bus, 2)
        candidates: list[int] = [*range(start, LAST_ADDRESS + 1), *range(2, start)]
        address = next(number for number in candidates if number not in used)
        self.next_address[bus] = address + 1 if address < LAST_ADDRESS else 2
        return address

    def _free_nodes(self, count: int) -> list[int]:
        used = {node for plugged in self.cameras.values() for node in plugged.nodes}
        return [node for node in range(len(used) + count) if node not in used][:count]

    def _free_card(self) -> int:
        used = {plugged.card for plugged in self.cameras.values()}
        return next(card for card in range(len(used) + 1) if card not in used)


def _in_order_of_discovery(ports: Iterable[Port]) -> Iterator[Port]:
    """Returns the order of a search: all buses at the same time, port by port, each hub before the devices on it."""
    buses: dict[int, list[Port]] = {}
    for port in sorted(ports, key=lambda it: (it.bus, len(it.path), it.path)):
        buses.setdefault(port.bus, []).append(port)
    return (port for turn in zip_longest(*buses.values()) for port in turn if port is not None)


def _is_at(slot: str, port: Port) -> bool:
    return slot == port.slot or slot.startswith(f"{port.slot}.")
