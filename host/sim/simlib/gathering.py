# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Asks the host's tools about a camera, and writes their answers into the files of a capture."""

from __future__ import annotations

import ctypes
import json
import subprocess
from pathlib import Path

from simlib.capture import LARGEST_FILE
from simlib.errors import SimError

NODES = Path("/sys/class/video4linux")
SOUND_LIBRARY = "libalsa_ctl.so"
SECONDS = 20


class SoundInfo(ctypes.Structure):
    """_acard_info of platform/alsa_ctl.h."""

    _fields_ = [("entry_count", ctypes.c_int), ("channel_mode", ctypes.c_int), ("channel_count", ctypes.c_int),
                ("name", ctypes.c_char * 256)]  # fmt: skip


def gather(node: str, folder: Path) -> None:
    """Writes the answers about all nodes of the camera whose node this is, and about its sound card."""
    entry = NODES / Path(node).name
    if not entry.exists():
        raise SimError(f"there is no camera with the node {node}")
    device = entry.resolve().parents[2]
    names = []
    for path in sorted(NODES.iterdir()):
        if path.resolve().is_relative_to(device):
            _gather_node(path.name, folder)
            names.append(f"{path}/name: {_line(path / 'name')}\n")
    (folder / "video4linux-names.txt").write_text("".join(names), encoding="utf-8")
    if sound := _sound(device):
        (folder / "sound-card.json").write_text(json.dumps(sound), encoding="utf-8")


def _gather_node(name: str, folder: Path) -> None:
    walk = _output("/sbin/udevadm", "info", f"--name=/dev/{name}", "--attribute-walk")
    (folder / f"udevadm-name-attribute-walk.{name}.txt").write_bytes(walk)
    listing = _output("/usr/bin/v4l2-ctl", "-d", f"/dev/{name}", "--list-formats-ext")
    (folder / f"v4l2-ctl-list-formats-ext.{name}.txt").write_bytes(listing or b"no format\n")


def _output(*command: str) -> bytes:
    """Returns what the tool printed; whether that makes sense is the importer's to judge."""
    try:
        done = subprocess.run(command, capture_output=True, timeout=SECONDS, check=False)
    except (OSError, subprocess.TimeoutExpired) as problem:
        raise SimError(f"{command[0]} does not answer: {problem}") from problem
    return done.stdout[: LARGEST_FILE + 1]


def _line(path: Path) -> str:
    with path.open("rb") as file:
        return file.readline(256).decode(errors="replace").strip()


def _sound(device: Path) -> dict[str, object] | None:
    """Asks the host's audio library about the camera's sound card."""
    cards = sorted(device.glob("*:*/sound/card*"))
    if not cards:
        return None
    info = SoundInfo()
    number = int(cards[0].name.removeprefix("card"))
    try:
        answer = ctypes.CDLL(SOUND_LIBRARY).ac_get_Acard_info(number, ctypes.byref(info))
    except OSError as problem:
        raise SimError(f"the audio library cannot be asked: {problem}") from problem
    if answer != 0:
        raise SimError(f"the audio library does not describe card {number}")
    first = int(cards[0].parents[1].name.rsplit(".", 1)[1])
    return {"name": info.name.decode(errors="replace"), "first_interface": first, "entry_count": info.entry_count,
            "channel_mode": info.channel_mode, "channel_count": info.channel_count}  # fmt: skip
