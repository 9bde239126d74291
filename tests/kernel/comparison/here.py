# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The same way from a camera's node to its pictures on this machine's own processor: on a sandboxed host, with the device
manager, the library, the manager and its encoder as they are. The formats come from a file, and test pictures from the encoder,
so what is missing is how long v4l2-ctl and the camera's first picture take."""

from __future__ import annotations

import json
from collections.abc import Iterator
from statistics import median

from ground.ground import Port
from ground.grounds import SimulatedGround

A, CAMERA = Port("xhci", "1"), "hd-pro-webcam"
RUNS = 7
FOLDER = "/mnt/ext/opt/apps/Velmora2/hls/channel1"
FILES = {"to the first fragment": "0.m4s", "to the small picture": "picture.jpg", "to the playlist": "playlist.m3u8"}
ENCODER = "to the start of the encoder"
# Wakes the device manager, and prints after how many seconds the line and the files are there.
TIMING = """
import json, os, sys, time
log, wanted, folder, files = open(sys.argv[1]), sys.argv[2], sys.argv[3], json.loads(sys.argv[4])
log.read()
began, at = time.monotonic(), {}
open("/tmp/changes", "r+b", buffering=0).write(b"\\n")
while len(at) <= len(files) and time.monotonic() < began + 60:
    if wanted not in at and wanted in log.read():
        at[wanted] = time.monotonic() - began
    for file in files:
        if file not in at and os.path.exists(f"{folder}/{file}"):
            at[file] = time.monotonic() - began
    time.sleep(0.002)
print(json.dumps(at))
"""


def from_the_node() -> Iterator[tuple[str, str]]:
    ground = SimulatedGround()
    try:
        ground.plug(CAMERA, A)
        ground.shows({A: 0})
        ground.usbdevctl("assign", ground.slot(A), "0")
        ground.usbdevctl("stream", "set", "0", "--size", "160x120")
        runs = [_again(ground) for _ in range(RUNS)]
    finally:
        ground.end()
    for name in (ENCODER, *FILES):
        times = [1000 * run[FILES.get(name, ENCODER)] for run in runs]
        yield f"here, from udev's node {name}", f"{median(times):.0f} ms ({min(times):.0f} to {max(times):.0f})"


def _again(ground: SimulatedGround) -> dict[str, float]:
    machine, streams = ground.machine, "profile 0 streams 160x120"
    machine.wait(f"test -e {FOLDER}/playlist.m3u8")
    ground.unplug(A)
    machine.wait(f"test ! -e {FOLDER}/playlist.m3u8")
    machine.run("sim", "plug", CAMERA, ground.slot(A), "--hardware-only")
    files = json.dumps(list(FILES.values()))
    at = json.loads(machine.run("/usr/bin/python3", "-IBc", TIMING, "/var/log/vl/manager-service.log", streams, FOLDER, files))
    at[ENCODER] = at.pop(streams)
    return dict(at)
