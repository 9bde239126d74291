# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The simulated host: the machine's numbers and the files that show them, which change together."""

from __future__ import annotations

from collections.abc import Callable, Iterable
from pathlib import Path

from simlib.catalogue import load_camera
from simlib.hardware import Hardware
from simlib.machine import Machine, PluggedCamera
from simlib.ports import parse_port
from simlib.store import Store
from simlib.topology import Topology


Change = Callable[[Machine], object]


class SimulatedHost:
    def __init__(self, root: Path = Path("/")) -> None:
        self._store = Store(root)
        self._hardware = Hardware(root)

    def create(self, topology: str) -> None:
        """Makes a host on which nothing is plugged in."""
        self._store.create(topology)
        self._hardware.add_buses(Topology(topology))

    def plug(self, camera_name: str, port: str) -> PluggedCamera:
        camera = load_camera(camera_name)
        with self._store.change() as machine:
            plugged = machine.plug(camera, parse_port(port))
            self._hardware.appear(machine, plugged)
        return plugged

    def unplug(self, port: str) -> list[PluggedCamera]:
        """Unplugs what is in the port, and returns the cameras that were unplugged."""
        with self._store.change() as machine:
            gone = machine.unplug(parse_port(port))
            for plugged in gone:
                self._hardware.vanish(machine, plugged)
        return gone

    def reboot(self, changes: Iterable[Change] = ()) -> None:
        """Switches the hardware off, makes the changes, and switches it on; if a change is refused, nothing happens."""
        with self._store.change() as machine:
            before = list(machine.cameras.values())
            for change in changes:
                change(machine)
            machine.boot()
            for plugged in before:
                self._hardware.vanish(machine, plugged)
            self._hardware.unload_drivers()
            for plugged in machine.cameras.values():
                self._hardware.appear(machine, plugged)

    def machine(self) -> Machine:
        """Returns what is plugged in now, to read only."""
        return self._store.read()
