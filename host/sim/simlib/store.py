# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Stores the simulated machine between two commands: one file, read and replaced under a lock."""

from __future__ import annotations

import fcntl
import json
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

from simlib.catalogue import load_camera
from simlib.errors import SimError
from simlib.machine import Machine, PluggedCamera
from simlib.ports import parse_port
from simlib.topology import Topology


class Store:
    """The folder /run/usbdev-sim of a host."""

    def __init__(self, root: Path) -> None:
        self.folder = root / "run/usbdev-sim"
        self._file = self.folder / "machine.json"

    def create(self, topology: str) -> None:
        """Makes an empty machine."""
        self.folder.mkdir(parents=True, exist_ok=True)
        self._write(Machine(Topology(topology)))

    @contextmanager
    def change(self) -> Iterator[Machine]:
        """Lets one caller at a time change the machine; stores it unless the change fails."""
        self._check_there()
        with open(self.folder / "lock", "w", encoding="ascii") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            machine = self.read()
            yield machine
            self._write(machine)

    def read(self) -> Machine:
        self._check_there()
        facts = json.loads(self._file.read_text(encoding="utf-8"))
        machine = Machine(Topology(facts["topology"]))
        machine.hubs = facts["hubs"]
        machine.next_address = {int(bus): address for bus, address in facts["next_address"].items()}
        for slot, entry in facts["cameras"].items():
            camera = load_camera(entry.pop("camera"))
            machine.cameras[slot] = PluggedCamera(camera, parse_port(slot), **entry)
        return machine

    def _check_there(self) -> None:
        if not self._file.is_file():
            raise SimError("there is no simulated host here; run this inside the sandbox")

    def _write(self, machine: Machine) -> None:
        cameras = {
            slot: {"camera": it.camera.name, "address": it.address, "nodes": it.nodes, "card": it.card}
            for slot, it in machine.cameras.items()
        }
        facts = {
            "topology": machine.topology.name,
            "hubs": machine.hubs,
            "next_address": machine.next_address,
            "cameras": cameras,
        }
        fresh = self._file.with_suffix(".new")
        fresh.write_text(json.dumps(facts, indent=1) + "\n", encoding="utf-8")
        fresh.replace(self._file)
