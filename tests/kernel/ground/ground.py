# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a scenario does and sees, on whatever ground it runs: ports with cameras, and the channels, events and notifications
that come of them."""

from __future__ import annotations

import json
import re
import time
from abc import ABC, abstractmethod
from collections.abc import Iterator, Mapping
from contextlib import contextmanager
from dataclasses import dataclass
from typing import NamedTuple

from ground.channel import PATIENCE, Machine

PAUSE = 0.5  # so that asking does not take the processor from what is waited for
NOTHING_LOGGED = 3
OF_THE_MACHINE = {"created", "reason"}  # a time, and what only this machine has against a camera
# What is chance where cameras come at the same time: who is first gets the lower numbers.
BY_CHANCE = {"channel", "video_node"}
NUMBERED = re.compile(r"\b(Channel|video) \d+")
# It waits as long as a file is there, as a tool does whose camera does not answer.
HELD_TOOL = """#!/bin/sh
: >/run/lock/asked
while test -e /run/lock/held; do sleep 0.1; done
exec {tool} "$@"
"""
# A stream without pictures, which costs nothing: profiles are assigned here to see what becomes of channels.
ENCODER = "/usr/bin/ffmpeg"
LIGHT_ENCODER = """#!/bin/sh
for last; do :; done
while echo >"${last%/*}/playlist.m3u8"; do sleep 1; done
"""


class Port(NamedTuple):
    """A controller with a port of it; "3.1" is the first port of a hub in port 3."""

    controller: str
    number: str


@dataclass(frozen=True)
class Record:
    """What came of a scenario: rows of channels, texts of the event log, lines of notifications. Ports are named as in
    the scenario."""

    channels: tuple[str, ...]
    events: tuple[str, ...]
    notifications: tuple[str, ...]


class Ground(ABC):
    machine: Machine
    locks = "/run/lock"
    _before = 0  # notifications that came before the scenario

    @abstractmethod
    def plug(self, camera: str, port: Port) -> None:
        """Puts a camera into a port; on a hub's port, with the hub if that is missing."""

    @abstractmethod
    def unplug(self, port: Port) -> None:
        """Takes out a camera, or a hub with everything on it."""

    def pull(self, port: Port) -> None:
        """The same without waiting until the kernel has noticed it."""
        self.unplug(port)

    @abstractmethod
    def rebind(self, port: Port) -> None:
        """Takes the driver from a camera, and gives it back when the device manager has noticed that."""

    @abstractmethod
    def stop_manager(self) -> None: ...

    @abstractmethod
    def start_manager(self) -> None: ...

    @abstractmethod
    def replace_tool(self, text: str) -> None:
        """Puts a shell script in the place of v4l2-ctl, whose path the script gets; the device manager is not running."""

    @abstractmethod
    def use_light_encoder(self) -> None: ...

    @abstractmethod
    def received(self) -> list[str]:
        """Returns the lines of all notifications that the manager has printed."""

    @abstractmethod
    def controllers(self) -> Mapping[str, str]:
        """Returns the name of the controller of each bus."""

    @contextmanager
    def without_manager(self) -> Iterator[None]:
        self.stop_manager()
        yield
        self.start_manager()

    @contextmanager
    def held_tool(self) -> Iterator[None]:
        """Until its end, whoever asks a camera for its formats has to wait."""
        with self.without_manager():
            self.replace_tool(HELD_TOOL)
            self.machine.run("touch", f"{self.locks}/held")
        yield
        self.machine.run("rm", f"{self.locks}/held")

    def wait_until_asked(self) -> None:
        self.machine.wait(f"test -e {self.locks}/asked")

    def usbdevctl(self, *words: str) -> str:
        return self.machine.run("usbdevctl", *words)

    def slot(self, port: Port) -> str:
        bus = next(bus for bus, controller in self.controllers().items() if controller == port.controller)
        return f"{bus}-{port.number}"

    def channels(self) -> list[dict]:
        """Returns the rows of the channels that are not free."""
        rows = json.loads(self.usbdevctl("channels", "--json"))["channels"]
        return [row for row in rows if row["state"] != "free"]

    def events(self) -> list[str]:
        done = self.machine.start("usbdevctl", "log", "--lines", "1000", "--json").result(PATIENCE)
        if done.status == NOTHING_LOGGED:
            return []
        return [f"{it['level']}: {it['text']}" for it in json.loads(done.output)["events"]]

    def notifications(self) -> list[str]:
        return self.received()[self._before :]

    def told(self, count: int) -> list[str]:
        """Waits for that many notifications."""
        patience = time.monotonic() + PATIENCE
        while len(found := self.notifications()) < count and time.monotonic() < patience:
            time.sleep(PAUSE)
        return found

    def shows(self, cameras: Mapping[Port, int]) -> None:
        """Waits until exactly these ports have cameras, each on its channel."""
        expected = {self.slot(port): channel for port, channel in cameras.items()}
        patience = time.monotonic() + PATIENCE
        while (found := self._plugged()) != expected:
            assert time.monotonic() < patience, f"{found} instead of {expected}"
            time.sleep(PAUSE)

    def shows_cameras_in(self, ports: set[Port]) -> None:
        """Waits until exactly these ports have cameras, whatever their channels are."""
        expected = {self.slot(port) for port in ports}
        patience = time.monotonic() + PATIENCE
        while (found := set(self._plugged())) != expected:
            assert time.monotonic() < patience, f"{found} instead of {expected}"
            time.sleep(PAUSE)

    def use_two_cameras(self, first: Port, second: Port) -> None:
        """Plugs two cameras in, and gives the first profile 0 and the second profile 1."""
        self.plug("usb2-camera", first)
        self.shows({first: 0})
        self.plug("pc-camera", second)
        self.shows({first: 0, second: 1})
        self.usbdevctl("assign", self.slot(first), "0")
        self.usbdevctl("assign", self.slot(second), "1")

    def record(self) -> Record:
        return Record(self._rows(OF_THE_MACHINE), tuple(map(self._named, self.events())), tuple(self.notifications()))

    def record_in_any_order(self) -> Record:
        """The same where cameras come at the same time."""
        texts = (map(_without_numbers, lines) for lines in (map(self._named, self.events()), self.notifications()))
        events, notifications = (tuple(sorted(it)) for it in texts)
        return Record(tuple(sorted(self._rows(OF_THE_MACHINE | BY_CHANCE))), events, notifications)

    def record_of_a_storm(self) -> Record:
        """The same where what is on the way is seen or not: what is there at the end, and the events about that, each once. Of
        notifications only those are left that name a profile; nobody has one."""
        whole = self.record_in_any_order()
        rows = [row for row in whole.channels if json.loads(row)["state"] == "plugged"]
        ports = [json.loads(row)["slot"] for row in rows]
        events = {line for line in whole.events if any(f"[{port} " in line for port in ports)}
        notifications = [line for line in whole.notifications if "profile none" not in line]
        return Record(tuple(rows), tuple(sorted(events)), tuple(notifications))

    def _rows(self, left_out: set[str]) -> tuple[str, ...]:
        rows = [{key: value for key, value in row.items() if key not in left_out} for row in self.channels()]
        return tuple(self._named(json.dumps(row, ensure_ascii=False)) for row in rows)

    def _plugged(self) -> dict[str, int]:
        return {row["slot"]: row["channel"] for row in self.channels() if row["state"] == "plugged"}

    def _named(self, text: str) -> str:
        """Replaces the numbers of the buses by the names of their controllers."""
        controllers = self.controllers()
        return re.sub(r"\b(\d+)-(?=\d)", lambda it: f"{controllers.get(it[1], it[1])}-", text)


def _without_numbers(line: str) -> str:
    return NUMBERED.sub(r"\1 N", line)
