# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A sandboxed host with simulated cameras, on which the device manager runs as in the guest."""

from __future__ import annotations

import os
import socket
import subprocess
from pathlib import Path

from ground.channel import Channel, Machine

KERNEL = Path(__file__).resolve().parent.parent
REPOSITORY = KERNEL.parents[1]
START_PATIENCE = 120


class Sandbox(Machine):
    def __init__(self, topology: str) -> None:
        ours, theirs = socket.socketpair()
        sandbox: list[str | Path] = [REPOSITORY / "host/sandbox/sandbox", "run", "--build", os.environ["USBDEV_BUILD_DIR"]]
        command: list[str | Path] = [*sandbox, "--services", "--topology", topology, "--", KERNEL / "guest/agent"]
        self._process = subprocess.Popen(command, stdin=theirs.fileno())
        theirs.close()
        self._channel = Channel(ours)
        self._channel.ready.result(timeout=START_PATIENCE)
        self.run("mkfifo", "/tmp/changes")
        self.start_manager()

    def stop(self) -> None:
        self._channel.close()
        self._process.wait()

    def start_manager(self) -> None:
        program = f"{KERNEL}/ground/manager_of_sandbox.py"
        self.start("sh", "-c", f"exec /usr/bin/python3 -B {program} <>/tmp/changes >>/tmp/manager.log 2>&1")
        self.wait("grep -q following /tmp/manager.log")

    def stop_manager(self) -> None:
        self.run("pkill", "-f", "manager_of_sandbox")  # in the sandbox's own process namespace
        self.run("rm", "/tmp/manager.log")

    def change(self, *command: str) -> None:
        """Changes the simulated hardware, and wakes the device manager, as a message of udev would."""
        self.run("sim", *command, "--hardware-only")
        self.shell("echo 1<>/tmp/changes")  # this opening waits for nobody
