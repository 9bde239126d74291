#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""live.py FIRST LIVES CHANGES: lets so many hosts live on a sandboxed host, one after the other, and prints what each was
like after each change: the machine, as the simulator has it, and the state, as the host's services read it from the library.

The number of a life is its seed: it starts without a camera, ten are plugged in one after the other, four of them
get profiles, and then cameras are unplugged, plugged in, switched and assigned at random. CHANGES are those of the state."""

from __future__ import annotations

import asyncio
import json
import os
import resource
import subprocess
import sys
from collections.abc import Callable, Iterator
from pathlib import Path
from random import Random
from typing import Any, TextIO

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "host/sim"), str(ROOT / "host/services"), str(ROOT / "host/fleet")]

from fleetlib import documents
from simlib.devicemanager import announce
from simlib.errors import SimError
from simlib.host import SimulatedHost
from simlib.machine import Machine
from simlib.ports import parse_port
from statelib import event_log
from statelib.state import Reader

CONFIGURATION = Path("/etc/config/usbdev.conf")
LINKS = Path("/mnt/ext/opt/apps/Velmora2")
CAMERAS, PROFILES = 10, 4
LARGEST_LOG = 10_000
# Those with a single node: with ten of them no node has a number of two digits, of which the library reads the last only.
MODELS = ("120fps-camera", "8mp-camera", "console-camera", "panorama-camera", "spherical-camera", "stereo-camera")
PORTS = [f"{bus}-{port}" for bus in (1, 2, 3, 4) for port in range(1, 7)]
PORTS_ON_HUBS = [f"{bus}-{port}.{place}" for bus in (1, 3) for port in (7, 8) for place in range(1, 4)]


class Life:
    """What happens on a host. Each change is made on the machine and reported to the library, and has a name."""

    def __init__(self, number: int) -> None:
        self._random = Random(number)
        self._host = SimulatedHost()
        self._refused: set[str] = set()  # ports of cameras for which no channel was left

    def changes(self) -> Iterator[str]:
        for _ in range(CAMERAS):
            yield self._plug()
        for profile, port in enumerate(self._random.sample(self._ports(), PROFILES)):
            yield self._control("assign", port, str(profile), "--anyway")
        while True:
            yield self._random.choice(self._possible())()

    def _possible(self) -> list[Callable[[], str]]:
        full = len(self._ports()) == CAMERAS
        return [self._unplug if full else self._plug, self._switch, self._stream]

    def _plug(self) -> str:
        while True:
            model, port = self._random.choice(MODELS), self._random.choice(PORTS + PORTS_ON_HUBS)
            try:
                plugged = self._host.plug(model, port)
            except SimError:  # the port is taken, or of the other speed
                continue
            if announce("plug", plugged) != 0:
                self._refused.add(port)
            return f"plug {model} {port}"

    def _unplug(self) -> str:
        """Unplugs a camera, or the hub that it is on with everything."""
        port = self._random.choice(self._ports())
        if self._random.random() < 0.3:
            port = port.partition(".")[0]
        for gone in self._host.unplug(port):
            announce("unplug", gone)
            self._refused.discard(gone.port.slot)
        return f"unplug {port}"

    def _switch(self) -> str:
        return self._control("slot", self._random.choice(["on", "off"]), self._random.choice(self._ports()))

    def _stream(self) -> str:
        """A stream begins or ends: a camera gets a profile, or gives it back."""
        profile = str(self._random.randrange(PROFILES))
        return self._control(*self._random.choice([("clear", f"pf{profile}"), ("assign", self._random.choice(self._ports()), profile)]))

    def _control(self, *arguments: str) -> str:
        """Runs usbdevctl, which may refuse: then nothing has changed."""
        subprocess.run(["usbdevctl", *arguments], check=False, stderr=subprocess.DEVNULL)
        return " ".join(arguments)

    def machine(self) -> dict[str, dict[str, str]]:
        """Returns what is in each port: the cameras with a channel, and those for which none was left."""
        found = {port: plugged.camera.node_name for port, plugged in self._host.machine().cameras.items()}
        refused = {port: found.pop(port) for port in self._refused}
        return {"channels": found, "refused": refused}

    def _ports(self) -> list[str]:
        return sorted(self._host.machine().cameras)


def make_new(configuration: bytes) -> None:
    """Unplugs everything, and forgets all that the host knows."""

    def empty(machine: Machine) -> None:
        for slot in [*machine.hubs, *machine.cameras]:
            if "." not in slot:
                machine.unplug(parse_port(slot))

    SimulatedHost().reboot([empty])
    CONFIGURATION.write_bytes(configuration)
    event_log.FILE.unlink(missing_ok=True)
    for link in LINKS.iterdir():
        if link.is_symlink():
            link.unlink()


def processor_seconds() -> float:
    return sum(sum(resource.getrusage(whose)[:2]) for whose in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))


async def live(number: int, count: int, out: TextIO) -> None:
    """Writes a line for each state whose document differs from the one before, with the processor seconds that the change and
    the reading of the state took."""
    life, reader = Life(number), Reader()
    changes, name, changing = life.changes(), "start", 0.0
    seen: dict[str, Any] = {}
    last = 0
    while count >= 0:
        began = processor_seconds()
        state = await reader.state()
        reading = processor_seconds() - began
        document = documents.state("", {}, state, 0)
        if document != seen:
            seen = document
            events = event_log.following(last, LARGEST_LOG)
            last = events[-1]["id"] if events else last
            line = {"after": name, "machine": life.machine(), "state": state, "events": events, "changing": changing, "reading": reading}
            print(json.dumps({"life": number, **line}, separators=(",", ":")), file=out, flush=True)
            count -= 1
        began = processor_seconds()
        name = next(changes)
        changing = processor_seconds() - began


def main(numbers: list[int]) -> None:
    first, lives, count = numbers
    configuration = CONFIGURATION.read_bytes()
    with os.fdopen(os.dup(1), "w") as out, open(os.devnull, "wb") as nowhere:
        os.dup2(nowhere.fileno(), 1)  # to which the library and usbdevctl write, too
        for number in range(first, first + lives):
            asyncio.run(live(number, count, out))
            make_new(configuration)


if __name__ == "__main__":
    main([int(word) for word in sys.argv[1:]])
