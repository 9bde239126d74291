# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the host does at its start and when a device is plugged in or unplugged: it calls the library, here through usbdevctl."""

from __future__ import annotations

import subprocess

from simlib.errors import SimError
from simlib.machine import Event, PluggedCamera

PROGRAM = "usbdevctl"


def announce(action: str, plugged: PluggedCamera) -> int:
    """Reports to the library what was plugged in ("plug") or unplugged ("unplug"). Returns the status of the first camera's
    report: it is normal that the library refuses a sound card or a second function."""
    statuses = [(event.kind, _call(action, plugged.port.slot, event)) for event in plugged.events()]
    return next(status for kind, status in statuses if kind == "camera")


def start_up() -> int:
    """Makes the library update the channels from what is plugged in."""
    return _run([PROGRAM, "sync"])


def _call(action: str, slot: str, event: Event) -> int:
    device = ["--type", event.kind, "--node", str(event.number), "--slot", slot, "--name", event.name]
    return _run([PROGRAM, action, *device])


def _run(arguments: list[str]) -> int:
    try:
        return subprocess.run(arguments, check=False).returncode
    except OSError as problem:
        reason = f"the library was not called: {PROGRAM} cannot be run ({problem.strerror})"
        raise SimError(reason) from problem
