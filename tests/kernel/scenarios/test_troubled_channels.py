# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Channels while something goes wrong, on both grounds."""

from __future__ import annotations

import os
import random
import time

from ground.ground import Ground, Port
from ground.scenario import on_both_grounds

A, B = Port("xhci", "1"), Port("xhci", "2")
EVENTS, SECONDS = 50, 60
PORTS = [Port("xhci", str(number)) for number in range(1, 7)]


@on_both_grounds()
def test_a_driver_that_is_unbound_and_bound_keeps_the_channel(ground: Ground) -> None:
    ground.plug("usb2-camera", A)
    ground.shows({A: 0})
    ground.rebind(A)
    ground.shows({A: 0})


@on_both_grounds()
def test_cameras_exchanged_while_the_device_manager_is_down_are_found_at_its_start(ground: Ground) -> None:
    ground.use_two_cameras(A, B)
    with ground.without_manager():
        ground.unplug(A)
        ground.unplug(B)
        ground.plug("pc-camera", A)
        ground.plug("usb2-camera", B)
    ground.shows({A: 2, B: 3})


@on_both_grounds()
def test_a_camera_that_vanishes_while_its_formats_are_read_keeps_no_other_waiting(ground: Ground) -> None:
    with ground.held_tool():
        ground.plug("usb2-camera", A)
        ground.wait_until_asked()
        ground.unplug(A)
    ground.shows({})
    ground.plug("pc-camera", B)
    ground.shows({B: 0})


@on_both_grounds()
def test_a_tool_that_hangs_keeps_the_channel_waiting_for_ten_seconds_only(ground: Ground) -> None:
    with ground.held_tool():
        ground.plug("usb2-camera", A)
        ground.shows({A: 0})
    ground.plug("pc-camera", B)
    ground.shows({A: 0, B: 1})


# Of a storm only the last state is reported, and the guest's storm has other states on the way.
@on_both_grounds(seen=Ground.record_of_a_storm)
def test_after_a_storm_of_events_the_channels_are_those_of_a_synchronisation(ground: Ground) -> None:
    seed = int(os.environ.get("USBDEV_SEED", "1"))
    print(f"USBDEV_SEED={seed}")
    chance = random.Random(seed)
    there: set[Port] = set()
    began = time.monotonic()
    for _ in range(EVENTS):
        port = chance.choice(PORTS)
        if port in there:
            ground.pull(port)
        else:
            ground.plug("usb2-camera", port)
        there ^= {port}
    assert time.monotonic() - began < SECONDS, "a machine this slow makes no storm"
    ground.shows_cameras_in(there)
    before = ground.channels()
    with ground.without_manager():
        pass
    assert ground.channels() == before
