# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A long random life of a host, checked after every step.

USBDEV_SEED and USBDEV_STEPS repeat a run or make it longer.
"""

from __future__ import annotations

import os
import random
from collections.abc import Callable, Iterator
from pathlib import Path

import pytest
import usbdevlib
from host import Host, stream_folder
from model import NONE, Camera, Model

SEED = int(os.environ.get("USBDEV_SEED", "20240305"))
STEPS = int(os.environ.get("USBDEV_STEPS", "250"))

# With one node each, so that all of them together have numbers of one digit. One brings a sound card.
CAMERAS = ["8mp-camera", "hdmi-grabber", "panorama-camera", "stereo-camera"]
PORTS = ["1-1", "1-2", "3-1.1", "3-1.2", "3-1.3", "3-2", "5-1", "5-2"]
EVENTS = [0, 1, 3, 4]


class Life:
    """Does something to the host and to the model of it, and returns what it did."""

    def __init__(self, host: Host, chance: random.Random) -> None:
        self.host, self.model, self._chance = host, Model(), chance
        self._deeds: list[tuple[Callable[[], str], int]] = [
            (self._plug, 9),
            (self._unplug, 7),
            (self._replace_unnoticed, 2),
            (self._assign, 15),
            (self._clear, 10),
            (self._reboot, 1),
        ]

    def next(self) -> str:
        deeds, weights = zip(*self._deeds)
        return self._chance.choices(deeds, weights)[0]()

    def cameras(self) -> list[Camera]:
        """Sorted as the host lists them."""
        plugged = self.host.hardware.machine().cameras
        return [Camera(slot, it.camera.node_name, it.nodes[0]) for slot, it in sorted(plugged.items())]

    def _plug(self) -> str:
        port = self._free_port()
        if port is None:
            return self._unplug()
        return f"plug {self._plug_into(port)} {port}"

    def _plug_into(self, port: str) -> str:
        camera = self._chance.choice(CAMERAS)
        self.host.plug(camera, port)
        self.model.plug(next(it for it in self.cameras() if it.slot == port))
        return camera

    def _unplug(self) -> str:
        port = self._taken_port()
        if port is None:
            return self._plug()
        with_card = self.host.hardware.machine().cameras[port].card is not None
        self.host.unplug(port)
        for _ in range(2 if with_card else 1):
            self.model.unplug(port)
        return f"unplug {port}"

    def _replace_unnoticed(self) -> str:
        """Another camera comes without word that the first one went."""
        port = self._taken_port()
        if port is None:
            return self._plug()
        self.host.hardware.unplug(port)
        return f"replace by {self._plug_into(port)} {port}"

    def _assign(self) -> str:
        port, profile = self._chance.choice(PORTS), self._chance.randrange(4)
        before = self.host.channels()
        succeeded = usbdevlib.assign(port, profile) == 0
        assert succeeded == self.model.assign(port, profile)
        if any(it.attached and it.profile == profile for it in before):
            assert [it.profile for it in self.host.channels()] == [it.profile for it in before]
        return f"assign {port} {profile}: {succeeded}"

    def _clear(self) -> str:
        profile = self._chance.randrange(4)
        cleared = usbdevlib.clear(profile, self._chance.choice(EVENTS)) == 0
        assert cleared == self.model.clear(profile)
        return f"clear {profile}: {cleared}"

    def _reboot(self) -> str:
        changes = [*self._changes()]
        self.host.reboot(*changes)
        self.model.start_up(self.cameras())
        return f"reboot {changes}"

    def _changes(self) -> Iterator[str]:
        ports = self._chance.sample(PORTS, 4)
        taken = self._taken_ports()
        for port, other in (ports[:2], ports[2:]):
            if port in taken and other in taken:
                yield f"swap {port} {other}"
            elif port in taken:
                yield self._chance.choice([f"move {port} {other}", f"unplug {port}"])
            else:
                yield f"plug {self._chance.choice(CAMERAS)} {port}"

    def _taken_ports(self) -> list[str]:
        return [it.slot for it in self.cameras()]

    def _taken_port(self) -> str | None:
        return self._one_of(self._taken_ports())

    def _free_port(self) -> str | None:
        return self._one_of([port for port in PORTS if port not in self._taken_ports()])

    def _one_of(self, ports: list[str]) -> str | None:
        return self._chance.choice(ports) if ports else None


def check(host: Host, model: Model) -> None:
    channels = host.channels()
    assert [(it.exists, it.slot, it.device, it.profile, it.vnode) for it in channels] == [
        (it.exists or 0, it.slot, it.device, it.profile, it.node) for it in model.channels
    ]
    assert all(it.parked_behind != it.number and -1 <= it.parked_behind <= 9 for it in channels)
    assert host.links() == {it.link: stream_folder(it.profile) for it in channels if it.profile != NONE}
    assert all(it.link == "" for it in channels if it.profile == NONE)


@pytest.fixture
def quick_host(host: Host, without_process_list: None) -> Iterator[Host]:
    """A host without the codec package, too, so that a step costs fewer commands."""
    packages = Path("/etc/config/bndl.conf")
    before = packages.read_text()
    packages.write_text("")
    yield host
    packages.write_text(before)


def test_every_step_of_a_random_sequence_leaves_a_state_that_follows_the_rules(quick_host):
    print(f"USBDEV_SEED={SEED} USBDEV_STEPS={STEPS}")
    life = Life(quick_host, random.Random(SEED))
    for _ in range(STEPS):
        print(life.next())
        check(quick_host, life.model)
