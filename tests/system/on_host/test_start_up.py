# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What start-up makes of cameras that were moved, swapped, taken away or added while the host was off."""

from __future__ import annotations

import pytest
import usbdevlib
from host import Channel, Host, stream_folder

pytestmark = pytest.mark.usefixtures("without_process_list")

# Cameras with one node each, so that ten of them have the numbers 0 to 9; no two neighbours have the same name.
MODELS = ["8mp-camera", "hdmi-grabber", "panorama-camera", "spherical-camera", "stereo-camera"] * 2
PORTS = ["1-1", "1-2", "1-3", "1-4", "3-1", "3-2", "3-3", "3-4", "5-1", "5-2"]


# Every camera goes to the next port, and the last one to the first.
ROTATION = [f"swap {port} {PORTS[0]}" for port in PORTS[1:]]


def names_by_slot(host: Host) -> dict[str, str]:
    return {slot: plugged.camera.node_name for slot, plugged in host.hardware.machine().cameras.items()}


def assert_bound(channel: Channel, profile: int, host: Host) -> None:
    assert channel.profile == profile and host.links()[channel.link] == stream_folder(profile)


@pytest.fixture
def ten_cameras(host: Host) -> Host:
    for camera, port in zip(MODELS, PORTS):
        host.plug(camera, port)
    return host


def test_ten_cameras_in_each_others_ports_take_over_the_channels_of_the_ports(ten_cameras):
    before = names_by_slot(ten_cameras)
    ten_cameras.reboot(*ROTATION)
    names = names_by_slot(ten_cameras)
    assert all(names[slot] != before[slot] for slot in PORTS)
    for channel, slot in zip(ten_cameras.channels(), PORTS):
        assert (channel.slot, channel.device, channel.exists) == (slot, names[slot], 1)
        assert channel.vnode == ten_cameras.node(slot)


def test_channels_with_profiles_are_kept_for_their_cameras_while_the_last_of_ten_get_no_channel(ten_cameras):
    for profile in (0, 1):
        usbdevlib.assign(PORTS[profile], profile)
    before = ten_cameras.channels()[:2]
    ten_cameras.reboot(*ROTATION)
    channels = ten_cameras.channels()
    assert [(it.slot, it.exists) for it in channels[:2]] == [(PORTS[0], 0), (PORTS[1], 0)]
    assert [(it.slot, it.exists) for it in channels[2:]] == [(slot, 1) for slot in PORTS[:8]]

    ten_cameras.reboot(*reversed(ROTATION))
    for channel, was in zip(ten_cameras.channels(), before):
        assert (channel.slot, channel.device, channel.link, channel.exists) == (was.slot, was.device, was.link, 1)
        assert channel.vnode == ten_cameras.node(channel.slot)
        assert_bound(channel, channel.number, ten_cameras)


def test_two_cameras_swapped_leave_their_profiles_waiting_and_become_new_channels(host):
    host.plug("usb2-camera", "3-1")
    host.plug("pc-camera", "1-1")
    usbdevlib.assign("3-1", 0)
    usbdevlib.assign("1-1", 1)
    host.reboot("swap 3-1 1-1")
    channels = host.channels()
    assert [(it.slot, it.exists, it.profile) for it in channels[:2]] == [("3-1", 0, 0), ("1-1", 0, 1)]
    assert [(it.slot, it.device, it.exists, it.profile) for it in channels[2:4]] == [
        ("1-1", "USB 2.0 Camera: USB Camera", 1, -1),
        ("3-1", "USB2.0 PC CAMERA", 1, -1),
    ]
    assert set(host.links().values()) == {stream_folder(0), stream_folder(1)}


def test_two_cameras_of_one_model_can_be_swapped_unnoticed(host):
    host.plug("usb2-camera", "3-1")
    host.plug("usb2-camera", "1-1")
    usbdevlib.assign("3-1", 0)
    host.reboot("swap 3-1 1-1")
    assert [(it.slot, it.exists, it.profile, it.vnode) for it in host.channels()[:2]] == [
        ("3-1", 1, 0, host.node("3-1")),
        ("1-1", 1, -1, host.node("1-1")),
    ]


def test_an_unplugged_camera_keeps_its_profile_and_its_link(host):
    host.plug("usb2-camera", "3-1")
    usbdevlib.assign("3-1", 2)
    before = host.channels()[0]
    host.reboot("unplug 3-1")
    channel = host.channels()[0]
    assert (channel.exists, channel.vnode, channel.parked_behind) == (0, -1, -1)
    assert (channel.created, channel.link) == (before.created, before.link)
    assert_bound(channel, 2, host)


def test_an_unplugged_camera_without_a_profile_leaves_a_free_channel(host):
    host.plug("usb2-camera", "3-1")
    host.reboot("unplug 3-1", "plug pc-camera 1-1")
    channel = host.channels()[0]
    assert (channel.slot, channel.device, channel.exists) == ("1-1", "USB2.0 PC CAMERA", 1)


def test_a_new_camera_gets_the_first_free_channel(host):
    host.plug("usb2-camera", "3-1")
    usbdevlib.assign("3-1", 0)
    host.reboot("plug pc-camera 1-1")
    assert [(it.slot, it.exists, it.profile, it.vnode) for it in host.channels()[:2]] == [
        ("3-1", 1, 0, 2),
        ("1-1", 1, -1, 0),
    ]


def test_a_camera_does_not_wait_for_an_unplugged_camera(host):
    host.plug("hd-usb-camera", "3-1.1")
    usbdevlib.assign("3-1.1", 0)
    host.plug("hd-usb-camera", "3-1.2")
    assert host.channels()[1].parked_behind == 0
    host.reboot("unplug 3-1.1")
    assert host.channels()[1].parked_behind == -1


@pytest.fixture
def hub_of_four(host: Host) -> Host:
    for camera, port in zip(("usb2-camera", "pc-camera", "hd-usb-camera", "8mp-camera"), range(1, 5)):
        host.plug(camera, f"3-1.{port}")
    return host


def test_a_hub_moved_as_a_whole_keeps_the_channels_of_cameras_without_profile(hub_of_four):
    names = [it.device for it in hub_of_four.channels()]
    hub_of_four.reboot("move 3-1 5-2")
    channels = hub_of_four.channels()
    assert [it.slot for it in channels[:4]] == ["5-2.1", "5-2.2", "5-2.3", "5-2.4"]
    assert [it.device for it in channels] == names


def test_a_hub_moved_away_and_back_has_its_four_profiles_again(hub_of_four):
    for profile in range(4):
        usbdevlib.assign(f"3-1.{profile + 1}", profile)
    before = hub_of_four.channels()[:4]
    hub_of_four.reboot("move 3-1 5-2")
    assert [(it.exists, it.profile) for it in hub_of_four.channels()[:4]] == [(0, profile) for profile in range(4)]
    assert [it.slot for it in hub_of_four.channels()[4:8]] == ["5-2.1", "5-2.2", "5-2.3", "5-2.4"]
    hub_of_four.reboot("move 5-2 3-1")
    for channel, was in zip(hub_of_four.channels(), before):
        assert (channel.slot, channel.device, channel.link) == (was.slot, was.device, was.link)
        assert channel.attached
        assert_bound(channel, channel.number, hub_of_four)


def test_a_lost_link_is_made_again(host):
    host.plug("usb2-camera", "3-1")
    usbdevlib.assign("3-1", 3)
    before = host.links()
    host.empty_links()
    host.reboot()
    assert host.links() == before


def test_a_camera_with_a_name_of_300_bytes_keeps_its_channel(host):
    host.plug("long-name-camera", "3-1")
    usbdevlib.assign("3-1", 0)
    host.reboot("plug pc-camera 1-1")
    assert [(it.slot, it.exists, it.profile, len(it.device)) for it in host.channels()[:1]] == [("3-1", 1, 0, 255)]


def test_a_camera_with_its_microphone_first_keeps_its_channel(host):
    host.plug("microphone-first", "3-1")
    usbdevlib.assign("3-1", 0)
    host.reboot("plug pc-camera 1-1")
    channels = host.channels()
    assert (channels[0].exists, channels[0].profile, channels[0].vnode) == (1, 0, host.node("3-1"))
    assert [it.slot for it in channels[1:]] == ["1-1", *[""] * 8]


def test_of_a_node_number_with_two_digits_the_last_one_counts(host):
    """Six cameras with two nodes each: the picture of the last comes from /dev/video10."""
    for port in range(1, 7):
        host.plug("usb2-camera", f"1-{port}")
    assert [it.vnode for it in host.channels()[:6]] == [0, 2, 4, 6, 8, 10]
    host.reboot()
    assert [it.vnode for it in host.channels()[:6]] == [0, 2, 4, 6, 8, 0]
