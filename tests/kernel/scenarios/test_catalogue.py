# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every simulated camera, on the real kernel: it has the name, the formats and the serial number that the simulator shows."""

from __future__ import annotations

import subprocess
from collections.abc import Callable

import pytest
from ground.guest import Guest
from ground.ground import Port
from ground.plugging import Plugged
from ground.root import REPOSITORY
from usbcamera.description import METADATA
from usbcamera.formats import read_formats

CAMERAS = sorted(it.parent.name for it in (REPOSITORY / "host/sim/cameras").glob("*/camera.toml"))
# Of these the simulator shows what no kernel's own driver makes.
WITHOUT_A_KERNEL = {
    "long-name-camera": "its name is longer than the driver makes one",
}


def older_layout(listing: str) -> str:
    program = REPOSITORY / "host/sim/bin/v4l2-old-layout"
    return subprocess.run([program], input=listing, capture_output=True, text=True, check=True).stdout


@pytest.mark.parametrize("name", [it for it in CAMERAS if it not in WITHOUT_A_KERNEL])
def test_the_kernel_shows_what_the_simulator_shows(guest: Guest, plug: Callable[..., Plugged], name: str) -> None:
    camera = plug(name, Port("xhci", "1"))
    for function in camera.camera.functions:
        node = camera.node(function.first_interface)
        shown = guest.run("cat", f"/sys/class/video4linux/{node.rpartition('/')[2]}/name").rstrip("\n")
        assert shown == camera.camera.name_of(function)
        listing = next(it for it in function.nodes if it != METADATA)
        expected = camera.camera.listing(listing).decode()
        printed = older_layout(guest.run("v4l2-ctl", "-d", node, "--list-formats-ext"))
        assert read_formats(printed) == read_formats(expected)
        if read_formats(expected)[0].fourcc in ("MJPG", "YUYV"):
            assert printed.split() == expected.split()
