# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Cameras that differ from the plain one: with sound, with a second function, with unusual texts."""

from __future__ import annotations

import struct
from collections.abc import Callable

import pytest
from ground.guest import Guest
from ground.pictures import Streaming
from ground.ground import Port
from ground.plugging import Plugged

Plug = Callable[..., Plugged]
PORT = Port("xhci", "1")


def name_of(guest: Guest, node: str) -> str:
    return guest.run("cat", f"/sys/class/video4linux/{node.rpartition('/')[2]}/name").rstrip("\n")


def test_a_camera_whose_microphone_comes_first_is_heard_and_seen(guest: Guest, plug: Plug) -> None:
    camera = plug("microphone-first", PORT)
    node = camera.node()
    size = guest.run("v4l2-ctl", "-d", node, "--get-fmt-video").partition("Width/Height      : ")[2].split()[0]
    width, _, height = size.partition("/")
    assert len(Streaming(guest, node, "MJPG", (int(width), int(height)), count=2).pictures()) == 2
    card = guest.wait(f"ls /sys/bus/usb/devices/{camera.slot}:1.0/sound").strip().removeprefix("card")
    sound = guest.start("arecord", "-q", "-D", f"plughw:{card}", "-f", "S16_LE", "-r", "16000", "-s", "8000", "-t", "raw")
    recorded = sound.result(timeout=240)
    samples = struct.unpack(f"<{len(recorded.output) // 2}h", recorded.output)
    assert {8000, -8000} <= set(samples), recorded.errors


def test_an_infrared_function_has_a_node_of_its_own(guest: Guest, plug: Plug) -> None:
    camera = plug("colour-and-infrared", PORT)
    colour, infrared = camera.node(), camera.node(2)
    assert colour != infrared
    assert "'GREY'" in guest.run("v4l2-ctl", "-d", infrared, "--list-formats-ext")
    assert "'GREY'" not in guest.run("v4l2-ctl", "-d", colour, "--list-formats-ext")


@pytest.mark.parametrize("product", ["Büro-Kamera №1", "カメラ 摄像头", 'Camera "Pro"; $(reboot) `x`'])
def test_a_name_is_the_cameras_own_text(guest: Guest, plug: Plug, product: str) -> None:
    camera = plug("hd-usb-camera", PORT, product=product, interface="Bild")
    shown = f"{product}: Bild".encode()[:31].decode(errors="ignore")
    assert name_of(guest, camera.node()).encode()[:31].decode(errors="ignore") == shown


def test_cameras_with_equal_serial_numbers_stay_apart(guest: Guest, plug: Plug) -> None:
    twins = [plug("usb2-camera", Port("xhci", port), "--tag", port, serial="200901010001") for port in ("1", "2")]
    for twin in twins:
        node = twin.node()
        assert guest.run("cat", f"/sys/bus/usb/devices/{twin.slot}/serial") == "200901010001\n"
        assert {str(tag) for _, tag in Streaming(guest, node).pictures()} == {twin.port.number}


def test_an_empty_serial_number_is_none(guest: Guest, plug: Plug) -> None:
    camera = plug("usb2-camera", PORT, serial="")
    camera.node()
    assert guest.shell(f"cat /sys/bus/usb/devices/{camera.slot}/serial || true").strip() == ""
