# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Many cameras, and many events."""

from __future__ import annotations

import os
import random
from collections.abc import Callable

from ground.guest import Guest
from ground.pictures import Streaming
from ground.ground import Port
from ground.plugging import Plugged

Plug = Callable[..., Plugged]
PORTS = [Port("xhci", "1"), Port("xhci", "2"), Port("xhci", "3"), Port("ehci", "1"), Port("ehci", "2"), Port("pair", "1")]
EVENTS = 50


def nodes_of_kernel(guest: Guest) -> set[str]:
    """Returns the slot of every camera that has a node of pictures."""
    links = guest.shell("for it in /sys/class/video4linux/*/index; do readlink -f $it; done").split()
    return {link.split("/video4linux/")[0].rpartition("/")[2].partition(":")[0] for link in links if "*" not in link}


def test_six_cameras_have_twelve_nodes_and_pictures_of_their_own(guest: Guest, plug: Plug) -> None:
    cameras = [plug("usb2-camera", port, "--tag", str(index)) for index, port in enumerate(PORTS)]
    nodes = [camera.node() for camera in cameras]
    assert guest.shell("ls /sys/class/video4linux | wc -l") == "12\n"
    for index, node in enumerate(nodes):
        assert {tag for _, tag in Streaming(guest, node, count=2).pictures()} == {index}


def test_after_a_storm_of_events_each_camera_that_is_plugged_in_works(guest: Guest, plug: Plug) -> None:
    seed = int(os.environ.get("USBDEV_SEED", "1"))
    print(f"USBDEV_SEED={seed}")
    chance = random.Random(seed)
    there: dict[Port, tuple[Plugged, int]] = {}
    for event in range(EVENTS):
        port = chance.choice(PORTS)
        if port in there:
            there.pop(port)[0].unplug()
        else:
            there[port] = plug("usb2-camera", port, "--tag", str(event)), event
    for camera, event in there.values():
        assert {tag for _, tag in Streaming(guest, camera.node(), count=2).pictures()} == {event}
    guest.run("udevadm", "settle")
    assert nodes_of_kernel(guest) == {camera.slot for camera, _ in there.values()}
