# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Cameras that vanish, hang or refuse while they are asked."""

from __future__ import annotations

from collections.abc import Callable

import pytest
from ground.guest import Guest
from ground.pictures import Streaming
from ground.ground import Port
from ground.plugging import Plugged

Plug = Callable[..., Plugged]
PORT, OTHER = Port("xhci", "1"), Port("xhci", "2")


@pytest.mark.parametrize("moment", ["description", "configuration", "probe"])
def test_a_camera_that_vanishes_while_it_is_asked_leaves_nothing(guest: Guest, plug: Plug, moment: str) -> None:
    camera = plug("usb2-camera", PORT, "--fault", f"vanish:{moment}")
    other = plug("usb2-camera", OTHER)
    assert len(Streaming(guest, other.node()).pictures()) == 5
    camera.wait_until_gone()
    assert guest.shell("ls /sys/class/video4linux | wc -l") == "2\n"


def test_a_camera_that_vanishes_at_its_third_picture_ends_the_stream(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", PORT, "--fault", "vanish:picture:3")
    stream = Streaming(guest, camera.node(), count=0)
    assert stream.is_lost()
    camera.wait_until_gone()


def test_a_camera_that_refuses_what_was_agreed_does_not_stream(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", PORT, "--fault", "stall:commit")
    refused = Streaming(guest, camera.node()).ended.result(timeout=240)
    assert "VIDIOC_STREAMON" in refused.errors


def test_a_camera_that_hangs_while_it_streams_can_be_unplugged(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", PORT, "--fault", "hang:picture:9")
    stream = Streaming(guest, camera.node(), count=0)
    stream.wait_for_a_picture()
    camera.unplug()
    assert stream.is_lost()
