"""What the host does when a device comes or goes and when it starts: it calls the library, here through usbdevctl."""

from __future__ import annotations

import subprocess

from simlib.errors import SimError
from simlib.machine import PluggedCamera

PROGRAM = "usbdevctl"


def announce(action: str, plugged: PluggedCamera) -> int:
    """Reports a camera ("plug" or "unplug") and then its sound card. Returns how the camera's report ended: the
    library may well turn a sound card down."""
    status = _call(action, "camera", plugged.nodes[0], plugged, plugged.camera.node_name)
    if plugged.card is not None and plugged.camera.sound is not None:
        _call(action, "audio", plugged.card, plugged, plugged.camera.sound.name)
    return status


def start_up() -> int:
    """Has the library bring the channels into line with what is plugged in."""
    return _run([PROGRAM, "sync"])


def _call(action: str, kind: str, number: int, plugged: PluggedCamera, name: str) -> int:
    return _run([PROGRAM, action, "--type", kind, "--node", str(number), "--slot", plugged.port.slot, "--name", name])


def _run(arguments: list[str]) -> int:
    try:
        return subprocess.run(arguments, check=False).returncode
    except OSError as problem:
        reason = f"the library was not told: {PROGRAM} cannot be run ({problem.strerror})"
        raise SimError(reason) from problem
