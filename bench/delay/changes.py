# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Measures on a sandboxed host how long after a change of the configuration an owner's page is told what is different. Two
of the cameras wait for a third, which takes commands to explain."""

from __future__ import annotations

import asyncio
import json
import statistics
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/owner/on_host"))
import conftest
from client import PASSWORD, USER, Client
from open_page import ADDRESS
from servicelib import changes
from statelib.sources import CONFIGURATION, REPLACED
from tornado.httpclient import HTTPRequest
from tornado.websocket import WebSocketClientConnection, websocket_connect

TIMES = 30
SECONDS_BETWEEN = 0.5
CHANGES = {
    "a profile gets a name": ("usbdevctl rename 0 Door", "usbdevctl rename 0 Gate"),
    "a port is switched": ("usbdevctl slot off 1-1", "usbdevctl slot on 1-1"),
    "a camera comes or goes": ("sim plug usb2-camera 5-1", "sim unplug 5-1"),
}


class Clock:
    """Notes when the configuration was stored, and when the page was told of it."""

    def __init__(self) -> None:
        self.stored: list[float] = []
        self.told: list[float] = []
        folder, name = str(CONFIGURATION.parent), CONFIGURATION.name
        changes.follow(folder, REPLACED, lambda names: self.stored.append(time.monotonic()) if name in names else None)

    async def follow(self, page: WebSocketClientConnection) -> None:
        while (message := await page.read_message()) is not None:
            if json.loads(message)["section"] == "channels":
                self.told.append(time.monotonic())

    async def delay(self, command: str) -> float:
        """Makes the change; returns the milliseconds from the first time that something is stored."""
        self.stored.clear()
        self.told.clear()
        await asyncio.to_thread(conftest.run, command)
        while not self.told:
            await asyncio.sleep(SECONDS_BETWEEN)
        await asyncio.sleep(SECONDS_BETWEEN)
        return 1000 * (self.told[0] - self.stored[0])


def report(what: str, delays: list[float]) -> None:
    found = sorted(delays)
    print(f"{what:25}{statistics.median(found):8.0f}{found[len(found) * 95 // 100]:8.0f}{found[-1]:8.0f}{len(found):8}", flush=True)


async def measure(owner: Client) -> None:
    clock = Clock()
    page = await websocket_connect(HTTPRequest(ADDRESS, headers={"Cookie": owner.cookie}))
    following = asyncio.create_task(clock.follow(page))
    print(f"{'until it is told, in ms':25}{'median':>8}{'95 %':>8}{'worst':>8}{'times':>8}")
    for what, commands in CHANGES.items():
        report(what, [await clock.delay(commands[number % 2]) for number in range(TIMES)])
    following.cancel()


def main() -> None:
    with ExitStack() as running:
        folder = Path(running.enter_context(tempfile.TemporaryDirectory()))
        subprocess.run(["login-users", "add", USER], input=f"{PASSWORD}\n", text=True, check=True)
        conftest.run("for port in 1-1 3-1.1 3-1.2 3-2; do sim plug usb2-camera $port; done; usbdevctl assign 1-1 0; usbdevctl assign 3-1.1 1")
        for name in ("login-service", "manager-service", "owner-page"):
            service = conftest.Service(name, folder)
            service.start()
            running.callback(service.end)
        owner = Client()
        owner.sign_in()
        asyncio.run(measure(owner))


if __name__ == "__main__":
    main()
