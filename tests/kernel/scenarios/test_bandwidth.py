# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Two cameras that reserve more bandwidth than their controller has."""

from __future__ import annotations

from collections.abc import Callable

import pytest
from ground.guest import Guest
from ground.pictures import Streaming
from ground.ground import Port
from ground.plugging import Plugged

WITHOUT_SPACE = "No space left on device"
# Each reserves more than half of what there is: of every microframe on the fast controller, of every frame on the slow one.
GREEDY = {
    "ehci": (["--isochronous", "--burst", "3", "--every-microframe"], 480),
    "uhci": (["--isochronous"], 12),
}


@pytest.mark.parametrize("controller", GREEDY)
def test_the_second_camera_gets_no_bandwidth_until_the_first_one_stops(guest: Guest, plug: Callable[..., Plugged],
                                                                      controller: str) -> None:  # fmt: skip
    options, speed = GREEDY[controller]
    first, second = (plug("usb2-camera", Port(controller, port), *options, speed=speed) for port in ("1", "2"))
    streaming = Streaming(guest, first.node(), count=0)
    streaming.wait_for_a_picture()
    refused = Streaming(guest, second.node()).ended.result(timeout=240)
    assert WITHOUT_SPACE in refused.errors
    first.unplug()
    assert streaming.pictures()
    assert len(Streaming(guest, second.node()).pictures()) == 5
