# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The rules of a reboot: what changes while the host is off, and the numbers that the start gives."""

from __future__ import annotations

import re

import pytest
from conftest import files_below
from simlib.catalogue import load_camera
from simlib.errors import SimError
from simlib.host import Change, SimulatedHost
from simlib.machine import Machine
from simlib.ports import parse_port


def move(port: str, to: str) -> Change:
    return lambda machine: machine.move(parse_port(port), parse_port(to))


def swap(port: str, other: str) -> Change:
    return lambda machine: machine.swap(parse_port(port), parse_port(other))


def plug(camera: str, port: str) -> Change:
    return lambda machine: machine.plug(load_camera(camera), parse_port(port))


def nodes(host: SimulatedHost) -> dict[str, list[int]]:
    return {slot: plugged.nodes for slot, plugged in host.machine().cameras.items()}


def models(machine: Machine) -> dict[str, str]:
    return {slot: plugged.camera.name for slot, plugged in machine.cameras.items()}


def test_a_start_numbers_the_cameras_by_their_place_and_not_by_the_order_of_plugging(pc):
    host, _ = pc
    host.plug("usb2-camera", "3-2")
    host.plug("pc-camera", "1-1")
    host.reboot()
    assert nodes(host) == {"1-1": [0, 1], "3-2": [2, 3]}


def test_a_start_searches_the_buses_side_by_side(pc):
    host, _ = pc
    for port in ("1-1", "1-2", "3-1", "3-2"):
        host.plug("8mp-camera", port)
    host.reboot()
    assert nodes(host) == {"1-1": [0], "3-1": [1], "1-2": [2], "3-2": [3]}


def test_a_start_finds_hubs_before_the_devices_on_them(pc):
    host, _ = pc
    host.plug("8mp-camera", "3-1.2.1")
    host.plug("8mp-camera", "3-4")
    host.reboot()
    machine = host.machine()
    assert machine.hubs == {"3-1": 2, "3-1.2": 4}
    assert {slot: plugged.address for slot, plugged in machine.cameras.items()} == {"3-4": 3, "3-1.2.1": 5}


def test_sound_cards_get_new_numbers(pc):
    host, _ = pc
    host.plug("hd-pro-webcam", "3-1")
    host.plug("hdmi-grabber", "1-1")
    host.reboot()
    cards = {slot: plugged.card for slot, plugged in host.machine().cameras.items()}
    assert cards == {"1-1": 0, "3-1": 1}


def test_a_reboot_without_changes_leaves_the_same_files(pc):
    host, root = pc
    host.plug("hd-pro-webcam", "1-1")
    host.plug("usb2-camera", "3-1.2")
    before = files_below(root)
    host.reboot()
    assert files_below(root) == before


def test_files_show_only_the_new_place(pc):
    host, root = pc
    host.plug("usb2-camera", "3-1")
    host.reboot([move("3-1", "1-2")])
    assert not any(re.search(r"\b3-1\b", name) for name in files_below(root))
    assert (root / "sys/bus/usb/drivers/uvcvideo/1-2:1.0/video4linux/video0/name").is_file()
    assert 'KERNELS=="1-2"' in (root / "run/usbdev-sim/nodes/video0/walk").read_text()


@pytest.mark.parametrize("driver", ["uvcvideo", "snd-usb-audio"])
def test_a_driver_that_has_nothing_to_drive_is_not_loaded(pc, driver):
    host, root = pc
    host.plug("hd-pro-webcam", "3-1")
    host.reboot([lambda machine: machine.unplug(parse_port("3-1"))])
    assert not (root / "sys/bus/usb/drivers" / driver).exists()


def test_a_hub_moves_with_everything_on_it(pc):
    host, _ = pc
    host.plug("pc-camera", "3-1.2")
    host.plug("usb2-camera", "3-1.4.1")
    host.plug("hd-usb-camera", "3-1.4.3")
    host.unplug("3-1.2")
    host.reboot([move("3-1", "5-2")])
    assert models(host.machine()) == {"5-2.4.1": "usb2-camera", "5-2.4.3": "hd-usb-camera"}
    assert set(host.machine().hubs) == {"5-2", "5-2.4"}


def test_a_camera_moved_away_from_a_hub_leaves_the_hub(pc):
    host, _ = pc
    host.plug("pc-camera", "3-1.2")
    host.reboot([move("3-1.2", "3-2")])
    assert (list(host.machine().hubs), models(host.machine())) == (["3-1"], {"3-2": "pc-camera"})


def test_two_ports_exchange_what_is_in_them(pc):
    host, _ = pc
    host.plug("pc-camera", "1-1")
    host.plug("usb2-camera", "3-1.1")
    host.plug("hd-usb-camera", "3-1.2")
    host.reboot([swap("1-1", "3-1")])
    assert models(host.machine()) == {
        "3-1": "pc-camera",
        "1-1.1": "usb2-camera",
        "1-1.2": "hd-usb-camera",
    }


def test_changes_are_made_in_their_order(pc):
    host, _ = pc
    host.plug("pc-camera", "1-1")
    host.reboot([move("1-1", "1-2"), plug("usb2-camera", "1-1"), move("1-2", "1-3")])
    assert models(host.machine()) == {"1-1": "usb2-camera", "1-3": "pc-camera"}


@pytest.mark.parametrize(
    ("change", "reason"),
    [
        (move("1-2", "1-3"), "nothing is plugged in at 1-2"),
        (move("1-1", "3-1"), "3-1 has a hub"),
        (move("3-1", "1-1"), "1-1 has the camera pc-camera"),
        (move("3-1", "4-1"), "for superspeed devices"),
        (swap("3-1", "3-1.1"), "nothing is plugged in at 3-1.1"),
        (plug("usb2-camera", "1-1"), "has the camera pc-camera"),
    ],
)
def test_a_refused_change_leaves_the_host_as_it_was(pc, change, reason):
    host, root = pc
    host.plug("pc-camera", "1-1")
    host.plug("usb2-camera", "3-1.1")
    before = files_below(root)
    with pytest.raises(SimError, match=reason):
        host.reboot([plug("pc-camera", "1-4"), change])
    assert files_below(root) == before and models(host.machine()) == {"1-1": "pc-camera", "3-1.1": "usb2-camera"}


def test_after_a_reboot_cameras_can_be_plugged_in_and_out(pc):
    host, root = pc
    before = files_below(root)
    host.plug("usb2-camera", "3-1.1")
    host.reboot([plug("pc-camera", "1-1")])
    assert host.plug("pc-camera", "1-2").nodes == [4, 5]
    for port in ("1-1", "1-2", "3-1"):
        host.unplug(port)
    assert {name for name in files_below(root) if "uvcvideo" not in name} >= before
    assert not list((root / "dev").glob("video*"))
