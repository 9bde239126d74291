# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Every function of the package, called on a host with simulated cameras; what it returns is what the host has."""

from __future__ import annotations

import ctypes
import subprocess
from dataclasses import replace
from pathlib import Path

import pytest
from usbdev import (
    ChannelUpdate,
    Codec,
    Device,
    EventCode,
    NotViewableError,
    ShareLink,
    StreamType,
    UsbdevError,
    ViewerCode,
    core,
    devices,
    hostinfo,
    hotplug,
    profiles,
    web,
)

CONFIGURATION = Path("/etc/config/usbdev.conf")
PORT, OTHER_PORT = "3-1", "1-1"
NAME = "USB 2.0 Camera: HD USB Camera"
CAMERA = Device(1, 0, PORT, devname=NAME)


@pytest.fixture(scope="module")
def plugged() -> bytes:
    """The configuration of a host with one camera, in channel 0."""
    subprocess.run(["sim", "plug", "hd-usb-camera", PORT], check=True, capture_output=True)
    return CONFIGURATION.read_bytes()


@pytest.fixture(autouse=True)
def camera(plugged: bytes) -> None:
    """A host with that camera, on which nothing else has happened."""
    CONFIGURATION.write_bytes(plugged)


@pytest.fixture
def assigned() -> None:
    """The camera has profile 0."""
    profiles.assign(PORT, 0)


def test_a_camera_without_a_profile_is_available() -> None:
    assert {channel: entry.devname for channel, entry in profiles.channels().items()} == {0: NAME}
    assert devices.available_devices()[0].usbslot == PORT
    assert devices.devices_of_profile(None)[0].stream_type == StreamType.VIDEO
    assert (profiles.of_channel(0), profiles.profiles(), profiles.unassigned()) == (None, {}, (0, 1, 2, 3))
    assert profiles.is_unassigned(PORT, 0)


@pytest.mark.usefixtures("assigned")
def test_a_camera_with_a_profile_is_found_by_it() -> None:
    assert (core.channel_of_profile(0), core.device_name(0), profiles.of_channel(0)) == (0, NAME, 0)
    assert list(devices.devices_of_profile(0)) == [0]
    assert {number: entry.usbslot for number, entry in profiles.profiles().items()} == {0: PORT}
    assert (profiles.unassigned(), profiles.streaming()) == ((1, 2, 3), (0,))
    assert (profiles.info(0).devname, profiles.codecs(0)) == (NAME, devices.port_codecs(PORT))
    assert not profiles.is_unassigned(PORT, 0)


def test_a_profile_that_no_channel_serves_is_a_failure() -> None:
    for function in (core.channel_of_profile, core.device_name, profiles.stream_info, profiles.formats, web.usb_ids,
                     profiles.codecs, profiles.audio_capability, web.share_link, profiles.clear):  # fmt: skip
        with pytest.raises(UsbdevError, match="returned -1"):
            function(3)


@pytest.mark.usefixtures("assigned")
def test_a_stream_is_set_to_a_size_and_the_closest_rate() -> None:
    before = profiles.stream_info(0)
    wanted = replace(before, width=640, height=480, framerate=29)
    rate = profiles.closest_rate(0, wanted)
    profiles.set_stream(0, wanted, before)
    after = profiles.stream_info(0)
    assert (after.width, after.height, after.framerate, after.vcodec) == (640, 480, rate, Codec.MJPEG)
    assert profiles.closest_rate(0, replace(wanted, framerate=0)) is None
    with pytest.raises(UsbdevError):
        profiles.set_stream(0, replace(wanted, width=3), after)
    profiles.log_changes(0, wanted, before, 25, EventCode.EVERYTHING)


@pytest.mark.usefixtures("assigned")
def test_a_camera_has_the_formats_that_it_lists() -> None:
    formats, is_over_60 = devices.camera_formats(0)
    assert formats == profiles.formats(0)
    assert not is_over_60
    mjpeg = next(it for it in formats if it.codec == Codec.MJPEG)
    assert any((size.width, size.height) == (1280, 720) and 30 in size.fps for size in mjpeg.sizes)


@pytest.mark.usefixtures("assigned")
def test_a_port_is_switched_off_and_on() -> None:
    profiles.switch_port(PORT, False)
    with pytest.raises(UsbdevError, match="vl_get_stream_info returned -4"):
        profiles.stream_info(0)
    with pytest.raises(NotViewableError, match="code 9009"):
        web.check_viewable(0)
    profiles.switch_port(PORT, True)
    web.check_viewable(0)
    stream = devices.port_stream(PORT)
    assert stream is not None and stream.channel == 0
    assert devices.port_stream("9-9") is None and devices.port_codecs("9-9") is None


@pytest.mark.usefixtures("assigned")
def test_a_profile_is_renamed_and_cleared() -> None:
    profiles.rename(0, "Front door \udcff")
    assert profiles.info(0).profilename == "Front door \udcff"
    profiles.clear(0, "192.0.2.7")
    assert profiles.profiles() == {}


@pytest.mark.usefixtures("assigned")
def test_a_share_link_opens_its_profile_until_it_is_renewed() -> None:
    made = web.set_share_link(ShareLink(0, shrenable=1, pwdenable=1, shrpwd="päss"))
    assert (web.share_link(0).token, web.share_link(0).shrpwd) == (made.token, "päss")
    assert web.opened_profile(made.ssid, made.token) == web.profile_of_share_id(made.ssid) == 0
    with pytest.raises(NotViewableError) as wrong:
        web.opened_profile(made.ssid, "cafe")
    assert wrong.value.code == ViewerCode.WRONG_TOKEN
    renewed = web.renew_share_link(0)
    with pytest.raises(NotViewableError):
        web.opened_profile(made.ssid, made.token)
    assert web.opened_profile(renewed.ssid, renewed.token) == 0
    web.remove_link_file("ch0")
    assert web.profile_of_share_id("00000000") is None


def test_a_profile_without_a_channel_cannot_be_viewed_and_has_no_code() -> None:
    with pytest.raises(NotViewableError) as raised:
        web.check_viewable(2)
    assert raised.value.code is None


@pytest.mark.usefixtures("assigned")
def test_a_removed_camera_is_reported_with_what_it_was() -> None:
    handled = hotplug.handle_event(replace(CAMERA, plugged=0))
    assert (handled.channel, handled.profile, handled.removed_name, handled.removed_node) == (0, 0, NAME, 0)
    again = hotplug.handle_event(CAMERA)
    assert (again.channel, again.profile, again.removed_node, again.conflict) == (0, 0, None, None)


def test_a_device_that_no_channel_takes_is_a_failure() -> None:
    with pytest.raises(UsbdevError, match="mn_set_usbdev_hotplug returned -1"):
        hotplug.handle_event(Device(0, 7, "9-9", plugged=0))


@pytest.mark.usefixtures("assigned")
def test_the_attached_devices_are_found_and_stored() -> None:
    cameras = hotplug.find_cameras(hotplug.Scan(channels=(ChannelUpdate(usbslot=PORT, state=1),) + (ChannelUpdate(),) * 9))
    everything = hotplug.find_cards(cameras)
    assert everything.channels[0].devname == NAME
    assert everything.new_cameras == () == everything.new_cards
    assert hotplug.store_channels(everything.channels)[0].vnode == 0
    hotplug.handle_new([], [])
    hotplug.clear_other_profiles(everything.channels)
    hotplug.start_up()
    hotplug.synchronise()
    hotplug.leave_h264()
    assert profiles.of_channel(0) == 0


def test_a_camera_that_no_channel_knows_is_new() -> None:
    CONFIGURATION.write_text("<velmora/>\n")
    found = hotplug.find_cameras(hotplug.Scan()).new_cameras
    assert [(it.usbslot, it.vnode) for it in found] == [(PORT, 0)]
    hotplug.handle_new(found, [])
    assert list(profiles.channels()) == [0]


@pytest.mark.parametrize("function", [hotplug.find_cameras, hotplug.find_cards])
def test_a_scan_has_every_channel_and_at_most_ten_new_devices(function) -> None:
    for scan in (
        hotplug.Scan(channels=()), hotplug.Scan(conflict_map=(0,)), hotplug.Scan(new_cameras=(ChannelUpdate(),) * 11)
    ):  # fmt: skip
        with pytest.raises(ValueError):
            function(scan)


def test_what_is_in_a_port_is_found() -> None:
    found = hotplug.camera_in_port(PORT)
    assert found is not None and (found.vnode, found.devname) == (0, NAME)
    assert hotplug.video_node(f"{PORT}:1.0") == (0, NAME)
    assert hotplug.video_node("9-9:1.0") is None and hotplug.sound_card("9-9:1.0") is None
    assert hotplug.camera_in_port("9-9") is None and hotplug.card_in_port("9-9") is None


def test_a_camera_is_identified() -> None:
    ids = devices.usb_ids(CAMERA)
    assert ids is not None and len(ids) == 9 and ids[4] == ":"
    assert devices.front_end_type(CAMERA) is None
    assert devices.needs_kill(0) in (False, True)
    path = devices.controller_path(0)
    assert path is not None and path.startswith("/devices/pci")
    assert devices.controller_path(7) is None and not devices.is_behind_pci_bridge(7)


def test_two_devices_conflict_at_one_root_port() -> None:
    assert devices.do_conflict("3-1.1", None, "3-1.2", 0)
    assert not devices.do_conflict("3-1", None, OTHER_PORT, 0)
    assert devices.compare_creation_times("2024-03-05 08:15:00", "2024-03-05 08:14:59") == 1
    assert devices.compare_creation_times("2024-03-05 08:15:00", "2024-03-05 08:15:00") == 2


@pytest.mark.usefixtures("assigned")
def test_nobody_conflicts_with_the_only_camera() -> None:
    assert devices.first_conflict(0) is None
    assert devices.compute_conflicts([1, *[-1] * 9])[0] in (1, -1)
    assert devices.hand_over(0) is None
    with pytest.raises(ValueError, match="10 channels"):
        devices.compute_conflicts([1])


def test_the_host_describes_itself() -> None:
    assert (hostinfo.http_port(), hostinfo.version()) == (8080, core.host_setting("Version"))
    package = hostinfo.package("Velmora2")
    assert package.install_path == core.package_folder("Velmora2") == core.package_field("Velmora2", "Install_Path")
    assert devices.has_model_picture()
    assert not core.is_limited_to_one_channel()
    assert {devices.can_encode(), devices.has_gpu_driver(), devices.supports_encoding_add_on()} <= {True, False}
    assert devices.panel_number("9-9") is None
    assert not devices.is_listed(NAME, "/etc/config/.usbnosupportlist.dat")


def test_a_package_that_is_not_installed_is_a_failure() -> None:
    with pytest.raises(UsbdevError, match="get_bndl_install_path returned -1"):
        core.package_folder("no such package")


def test_the_switch_of_a_port_is_read_from_an_open_configuration() -> None:
    profiles.switch_port(PORT, False)
    host = ctypes.CDLL("libvlxmlcfg.so")
    handle = ctypes.c_void_p()
    assert host.xmlcfg_open(0, str(CONFIGURATION).encode(), ctypes.byref(handle)) == 1
    try:
        assert handle.value is not None
        assert not devices.is_port_on(handle.value, PORT)
        assert devices.is_port_on(handle.value, OTHER_PORT)
    finally:
        host.xmlcfg_close(handle, 0)


def test_timeouts_are_counted_in_shared_memory() -> None:
    with hostinfo.attach_counters(hostinfo.create_counters()) as counters:
        hostinfo.clear_counters(counters)
        hostinfo.count_timeout(2)
        assert counters.values() == (0, 0, 1, 0)
    counters.close()
    for call in (lambda: hostinfo.clear_counters(counters), counters.values):
        with pytest.raises(ValueError, match="not attached"):
            call()
    with pytest.raises(UsbdevError):
        hostinfo.count_timeout(4)
    with pytest.raises(UsbdevError, match="vl_attach_log_shm"):
        hostinfo.attach_counters(-1)


def test_identifiers_have_their_lengths() -> None:
    assert web.new_share_id().isdigit() and len(web.new_share_id()) == 8
    assert len(web.new_hash()) == 32 and web.new_hash() != web.new_hash()


@pytest.mark.usefixtures("assigned")
def test_the_state_of_a_stream_is_stored_and_seen() -> None:
    web.set_stream_available(0, 1)
    assert (web.has_playlist(0), web.is_read(0, Codec.MJPEG), web.usb_ids(0)) == (False, False, devices.usb_ids(CAMERA))
    hotplug.set_stream_parameters(0, 1)
    assert profiles.stream_info(0).spsstate == 1
    with pytest.raises(UsbdevError):
        hotplug.apply_volume(0)
    with pytest.raises(ValueError, match="not 32"):
        web.signal_streaming(b"short")
