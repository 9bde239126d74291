# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Is the device manager of a sandboxed host: the machine's own, except that it reads from the simulator what is plugged in.
A line on the standard input announces that something has changed."""

from __future__ import annotations

import asyncio
import os
import sys
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[3]
sys.path[:0] = [str(REPOSITORY / "host/services"), str(REPOSITORY / "host/sim")]

from devicelib.library import Library  # noqa: E402
from devicelib.service import DeviceManager  # noqa: E402
from devicelib.world import Card, Node, UsbDevice, World  # noqa: E402
from simlib.catalogue import METADATA  # noqa: E402
from simlib.host import SimulatedHost  # noqa: E402
from simlib.machine import PluggedCamera  # noqa: E402


class SimulatedUdev:
    def fileno(self) -> int:
        return sys.stdin.fileno()

    def take_events(self) -> None:
        os.read(self.fileno(), 4096)

    def look(self) -> World:
        return {slot: usb_device(plugged) for slot, plugged in SimulatedHost().machine().cameras.items()}


def usb_device(plugged: PluggedCamera) -> UsbDevice:
    """The address is another one after each plug, as the time at which udev is ready."""
    nodes = tuple(
        Node(number, function.first_interface, plugged.camera.name_of(function), plugged.address, listing != METADATA)
        for function, numbers in plugged.functions()
        for listing, number in zip(function.nodes, numbers, strict=True)
    )
    sound = plugged.camera.sound
    cards = () if sound is None or plugged.card is None else (Card(plugged.card, sound.name, plugged.address),)
    return UsbDevice(nodes, cards)


async def serve() -> None:
    manager = DeviceManager(SimulatedUdev(), Library())
    manager.start()
    print("following the simulator", flush=True)
    await manager.follow()


asyncio.run(serve())
