# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A camera that goes and comes back while a program streams from it."""

from __future__ import annotations

from collections.abc import Callable

import pytest
from ground.guest import Guest
from ground.pictures import Streaming
from ground.ground import Port
from ground.plugging import Hub, Plugged

Plug = Callable[..., Plugged]


@pytest.mark.parametrize("transfer", [[], ["--isochronous"]], ids=["bulk", "isochronous"])
def test_a_stream_ends_with_its_camera_and_a_new_one_begins_with_it(guest: Guest, plug: Plug, transfer: list[str]) -> None:
    camera = plug("usb2-camera", Port("ehci", "1"), "--tag", "1", *transfer)
    stream = Streaming(guest, camera.node(), count=0)
    stream.wait_for_a_picture()
    camera.move(Port("ehci", "1"))
    assert stream.is_lost()
    before = stream.pictures()
    after = Streaming(guest, camera.node()).pictures()
    assert {tag for _, tag in before + after} == {1}
    assert after[0] > before[-1]


def test_a_camera_in_another_port_has_another_slot_and_path(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", Port("xhci", "1"))

    def path() -> str:
        properties = guest.run("udevadm", "info", "--query=property", camera.node())
        return next(line for line in properties.splitlines() if line.startswith("ID_PATH="))

    first = path()
    camera.move(Port("xhci", "2"))
    assert (first.partition("usb-")[2], path().partition("usb-")[2]) == ("0:1:1.0", "0:2:1.0")


def test_while_its_old_node_is_open_a_returning_camera_gets_another(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", Port("xhci", "1"))
    node = camera.node()
    holder = guest.start("sh", "-c", f"exec 3<{node}; touch /tmp/held; until test -e /tmp/released; do sleep 0.1; done")
    guest.wait("test -e /tmp/held")
    camera.move(Port("xhci", "1"))
    assert camera.node() != node
    guest.run("touch", "/tmp/released")
    assert holder.result(timeout=240).status == 0


def test_a_driver_that_is_unbound_and_bound_brings_the_node_back(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", Port("xhci", "1"))
    camera.node()
    driver, interface = "/sys/bus/usb/drivers/uvcvideo", f"{camera.slot}:1.0"
    guest.shell(f"echo {interface} >{driver}/unbind")
    assert guest.shell(f"ls /sys/bus/usb/devices/{interface}").find("video4linux") < 0
    guest.shell(f"echo {interface} >{driver}/bind")
    assert len(Streaming(guest, camera.node()).pictures()) == 5


def test_cameras_move_with_their_hub(guest: Guest, plug: Plug, hub: Callable[[Port], Hub]) -> None:
    first = hub(Port("xhci", "3"))
    cameras = [plug("usb2-camera", Port("xhci", f"3.{port}"), "--tag", str(port), speed=12) for port in (1, 2)]
    for camera in cameras:
        camera.node()
    first.unplug()
    for camera in cameras:
        camera.wait_until_gone()
    hub(Port("xhci", "4"))
    for port, camera in enumerate(cameras, 1):
        camera.move(Port("xhci", f"4.{port}"))
    for port, camera in enumerate(cameras, 1):
        assert {tag for _, tag in Streaming(guest, camera.node()).pictures()} == {port}
