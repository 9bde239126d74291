# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "device-service"."""

from __future__ import annotations

import argparse
import asyncio

from servicelib import changes, lifecycle, reasons
from servicelib.counts import counts
from servicelib.places import CONFIGURATION
from usbdev import core

from devicelib import decision
from devicelib.decision import Kind
from devicelib.library import Library
from devicelib.missing import MissingNodes
from devicelib.udev import Udev


class DeviceManager:
    """Keeps the library up to date with what is plugged in."""

    def __init__(self, udev: Udev, library: Library) -> None:
        self._udev = udev
        self._library = library
        self._changed = asyncio.Event()
        self._logging: set[asyncio.Task[None]] = set()
        self._missing = MissingNodes(self._log_reason)
        self._waiting: set[str] = set()  # ports whose cameras wait for a free channel

    def start(self) -> None:
        """Synchronises. Whatever comes or goes meanwhile is reported by follow()."""
        with lifecycle.watched():
            world = self._udev.look()
            self._library.synchronise()
            for call in decision.corrections(world, self._library.attached()):
                self._library.call(call)
            self._library.notify_manager()
        for slot in world.keys() - self._library.attached().keys():
            if world[slot].camera() is not None:
                self._has_no_channel(slot)
        self._history = decision.all_of(world)
        self._changed.set()

    async def follow(self) -> None:
        """Reports what comes and goes, until it is cancelled."""
        loop = asyncio.get_running_loop()
        loop.add_reader(self._udev.fileno(), self._take_events)
        changes.follow(str(CONFIGURATION.parent), changes.RENAMED, self._configuration_changed)
        while True:
            await self._changed.wait()
            self._changed.clear()
            while await self._report_one():
                pass

    def _take_events(self) -> None:
        self._udev.take_events()
        self._changed.set()

    def _configuration_changed(self, names: set[str]) -> None:
        """Plugs cameras in once more that wait for a free channel, because the library gives one at a plug only."""
        if self._waiting and names & {CONFIGURATION.name, ""} and self._library.has_free_channel():
            self._history = decision.without_cameras(self._history, self._waiting - self._library.attached().keys())
            self._waiting.clear()
            self._changed.set()

    async def _report_one(self) -> bool:
        """Looks again before each call, because a call takes long enough for the next event."""
        with lifecycle.watched():
            world = self._udev.look()
            self._missing.follow(world)
            call = decision.next_call(self._history, world)
            if call is None:
                return False
            taken = self._library.call(call)
        if call.kind is Kind.CAMERA:
            self._waiting.discard(call.slot)
            if call.plugged and not taken:
                self._has_no_channel(call.slot)
        self._history = decision.after(self._history, call)
        await asyncio.sleep(0)  # lets a signal end the service between two calls
        return True

    def _has_no_channel(self, slot: str) -> None:
        self._log_reason(slot)
        if not self._library.has_free_channel():
            self._waiting.add(slot)

    def _log_reason(self, slot: str) -> None:
        """Has it logged why the camera got no channel, or no node, while other devices come and go."""
        task = asyncio.create_task(reasons.log(slot))
        self._logging.add(task)
        task.add_done_callback(self._logging.discard)


async def serve() -> None:
    counts.begin("devices")
    manager = DeviceManager(Udev(core.trim), Library())
    manager.start()
    loop = asyncio.get_running_loop()
    following = loop.create_task(manager.follow())
    stopped = loop.create_task(lifecycle.until_stopped("following udev"))
    await asyncio.wait((following, stopped), return_when=asyncio.FIRST_COMPLETED)
    if following.done():
        following.result()  # which is the reason why it has failed


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(
        prog="device-service", description="Reports cameras and sound cards to the library as they come and go."
    )
    parser.parse_args(arguments)
    return lifecycle.run(serve())
