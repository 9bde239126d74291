# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs the device manager on a sandboxed host whose udev is mocked: prints the lines of the manager that each step brings.

The simulated hardware answers the library's tools, and umockdev sends udev's messages.
"""

from __future__ import annotations

import os
import signal
import subprocess
import sys

from mocked_udev import MockedUdev

NAME = "HD Pro Webcam C920"
FULL = [f"1-{port}" for port in range(1, 11)]
ON_THE_HOST = {name: value for name, value in os.environ.items() if not name.startswith(("LD_PRELOAD", "UMOCKDEV"))}


def on_the_host(*command: str) -> None:
    subprocess.run(command, check=True, env=ON_THE_HOST, stdout=subprocess.DEVNULL)


class Manager:
    """The running program."""

    def __enter__(self) -> Manager:
        self._process = subprocess.Popen(["device-service"], stdout=subprocess.PIPE, text=True)
        return self

    def prints(self, count: int) -> None:
        """Waits for the next lines, and prints them."""
        assert self._process.stdout
        for _ in range(count):
            print(self._process.stdout.readline(), end="", flush=True)

    def __exit__(self, *_: object) -> None:
        self._process.send_signal(signal.SIGTERM)
        rest, _ = self._process.communicate(timeout=30)
        print(f"{rest}ended with {self._process.returncode}", flush=True)


def a_day() -> None:
    mocked = MockedUdev()
    with Manager() as manager:
        manager.prints(1)
        on_the_host("sim", "plug", "hd-pro-webcam", "3-1", "--hardware-only")
        camera = mocked.plug("3-1", product=NAME)
        card = mocked.card(camera, 0)
        node = mocked.node(camera, 0, name=NAME)
        manager.prints(2)
        on_the_host("usbdevctl", "assign", "3-1", "0")
        mocked.remove(card)
        mocked.remove(node)
        mocked.change(camera)  # after the removal, as its message should have been
        on_the_host("sim", "unplug", "3-1", "--hardware-only")
        manager.prints(2)


def a_full_host() -> None:
    """All channels are taken when a camera comes, and then one that it can have becomes free."""
    mocked = MockedUdev()
    with Manager() as manager:
        manager.prints(1)
        for slot in FULL:
            on_the_host("usbdevctl", "plug", "--type", "camera", "--node", "0", "--slot", slot, "--name", NAME)
        mocked.node(mocked.plug("3-1", product=NAME), 0, name=NAME)
        manager.prints(1)
        on_the_host("usbdevctl", "unplug", "--type", "camera", "--slot", FULL[4])
        manager.prints(1)


{"day": a_day, "full": a_full_host}[sys.argv[1]]()
