# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Pictures of a camera at each kind of controller, as a program in the guest gets them."""

from __future__ import annotations

from collections.abc import Callable

import pytest
from ground.guest import Guest
from ground.pictures import Streaming
from ground.ground import Port
from ground.plugging import Plugged

Plug = Callable[..., Plugged]
TAG = 0xC5


@pytest.mark.parametrize("fourcc", ["MJPG", "YUYV"])
@pytest.mark.parametrize("transfer", [[], ["--isochronous"]], ids=["bulk", "isochronous"])
@pytest.mark.parametrize("controller, speed", [("xhci", 480), ("ehci", 480), ("uhci", 12)])
def test_pictures_arrive_whole_and_in_order(guest: Guest, plug: Plug, controller: str, speed: int, transfer: list[str],
                                            fourcc: str) -> None:  # fmt: skip
    camera = plug("usb2-camera", Port(controller, "1"), "--tag", str(TAG), *transfer, speed=speed)
    pictures = Streaming(guest, camera.node(), fourcc).pictures()
    assert len(pictures) == 5
    assert {tag for _, tag in pictures} == {TAG}
    numbers = [number for number, _ in pictures]
    assert numbers == sorted(set(numbers))


def test_a_superspeed_camera_is_on_the_other_bus_of_its_controller(guest: Guest, plug: Plug) -> None:
    camera = plug("usb3-camera", Port("xhci", "2"))
    assert guest.run("cat", f"{camera.node().replace('dev', 'sys/class/video4linux')}/device/../speed") == "5000\n"
    assert len(Streaming(guest, camera.node(), "MJPG", (3840, 2160), count=3).pictures()) == 3


def test_four_cameras_stream_at_once(guest: Guest, plug: Plug) -> None:
    ports = [Port("xhci", "1"), Port("xhci", "2"), Port("ehci", "1"), Port("pair", "1")]
    cameras = [plug("usb2-camera", port, "--tag", str(index)) for index, port in enumerate(ports)]
    streams = [Streaming(guest, camera.node(), count=10) for camera in cameras]
    for index, stream in enumerate(streams):
        assert [tag for _, tag in stream.pictures()] == [index] * 10
