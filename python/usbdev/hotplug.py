# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""<usbdev/hotplug.h>: devices that are plugged in and unplugged, start-up synchronisation, node readers and setters.

Only one device event or synchronisation may run on a host. The functions that are one hold the host's lock file meanwhile.
"""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import dataclass, replace
from typing import Any

from usbdev._library import NAME_SIZE, ask, call, encoded, ffi, new_buffer, new_ints, number_or_none, text_in
from usbdev._turns import device_event
from usbdev.errors import UsbdevError
from usbdev.records import CHANNELS, ChannelUpdate, Conflict, Device, fill, from_c, to_c

_UNSET = -1
_FOUND = 1


@dataclass(frozen=True)
class Handled:
    """What the hotplug handler did with a device."""

    channel: int
    profile: int | None
    device: Device  # a sound card in a port that a channel knows has that channel's device name
    removed_name: str  # of a camera that was removed
    removed_node: int | None
    conflict: Conflict | None  # of a camera that was plugged in


@dataclass(frozen=True)
class Scan:
    """What the synchronisation has found so far."""

    channels: tuple[ChannelUpdate, ...] = (ChannelUpdate(),) * CHANNELS
    conflict_map: tuple[int, ...] = (-1,) * CHANNELS
    new_cameras: tuple[ChannelUpdate, ...] = ()
    new_cards: tuple[ChannelUpdate, ...] = ()


@device_event
def handle_event(device: Device) -> Handled:
    """Handles a device that was plugged in or removed; fails if no channel takes it (mn_set_usbdev_hotplug)."""
    record, profile, node = to_c(device), ffi.new("int *"), ffi.new("int *", _UNSET)
    name, conflict = new_buffer(NAME_SIZE), ffi.new("_usbdev_conflict *", {"channel": _UNSET})
    channel = ask("mn_set_usbdev_hotplug", record, profile, name, node, conflict)
    if channel < 0:
        raise UsbdevError("mn_set_usbdev_hotplug", channel)
    return Handled(
        channel,
        number_or_none(profile[0]),
        from_c(Device, record),
        text_in(name),
        number_or_none(node[0]),
        None if conflict.channel == _UNSET else from_c(Conflict, conflict),
    )


@device_event
def start_up() -> None:
    """Updates the channels at start-up from the attached devices (vl_set_devpf_list)."""
    call("vl_set_devpf_list")


def leave_h264() -> None:
    """Changes channels from H.264 to MJPEG if the host may not encode (check_halvane)."""
    call("check_halvane")


@device_event
def synchronise() -> None:
    """Finds the attached devices and updates the channels (mn_sync_usbdev_conf)."""
    if (result := ask("mn_sync_usbdev_conf")) != 1:
        raise UsbdevError("mn_sync_usbdev_conf", result)


def _array(records: Sequence[ChannelUpdate]) -> Any:
    """Makes an array of ten records; raises ValueError for more."""
    if len(records) > CHANNELS:
        raise ValueError(f"there are {len(records)} records, and at most {CHANNELS} are possible")
    result = ffi.new("_usbdev_update[]", CHANNELS)
    for target, record in zip(result, records):
        fill(target, record)
    return result


def _channels(channels: Sequence[ChannelUpdate]) -> Any:
    if len(channels) != CHANNELS:
        raise ValueError(f"there are {CHANNELS} channels")
    return _array(channels)


def _marks(conflict_map: Sequence[int]) -> Any:
    if len(conflict_map) != CHANNELS:
        raise ValueError(f"there are {CHANNELS} channels")
    return new_ints(tuple(conflict_map))


def _updates(array: Any, count: int) -> tuple[ChannelUpdate, ...]:
    return tuple(from_c(ChannelUpdate, record) for record in array[0:count])


def find_cameras(scan: Scan) -> Scan:
    """Finds the attached cameras (get_conf_chinfo)."""
    channels, marks = _channels(scan.channels), _marks(scan.conflict_map)
    count, cameras = ffi.new("int *", len(scan.new_cameras)), _array(scan.new_cameras)
    call("get_conf_chinfo", channels, marks, count, cameras)
    new_cameras = _updates(cameras, count[0])
    return replace(scan, channels=_updates(channels, CHANNELS), conflict_map=tuple(marks), new_cameras=new_cameras)


def find_cards(scan: Scan) -> Scan:
    """Finds the attached sound cards, after the cameras (get_conf_audioinfo)."""
    channels, marks = _channels(scan.channels), _marks(scan.conflict_map)
    count, cards = ffi.new("int *", len(scan.new_cards)), _array(scan.new_cards)
    cameras = _array(scan.new_cameras)
    call("get_conf_audioinfo", channels, marks, count, cards, len(scan.new_cameras), cameras)
    new_cards = _updates(cards, count[0])
    return replace(scan, channels=_updates(channels, CHANNELS), conflict_map=tuple(marks), new_cards=new_cards)


def store_channels(channels: Sequence[ChannelUpdate]) -> tuple[ChannelUpdate, ...]:
    """Stores what the scans found; returns the channels as they are then (update_usbinfo)."""
    records = _channels(channels)
    call("update_usbinfo", records)
    return _updates(records, CHANNELS)


@device_event
def handle_new(cameras: Sequence[ChannelUpdate], cards: Sequence[ChannelUpdate]) -> None:
    """Handles new devices as newly plugged in, cameras first (sync_usbdev)."""
    call("sync_usbdev", len(cameras), _array(cameras), len(cards), _array(cards))


def clear_other_profiles(channels: Sequence[ChannelUpdate]) -> None:
    """Clears every profile but profile 0, for hosts limited to one channel (rmNone1stProfile)."""
    call("rmNone1stProfile", _channels(channels))


def _node_and_name(function: str, interface: str) -> tuple[int, str] | None:
    number, name = ffi.new("int *", _UNSET), new_buffer(NAME_SIZE)
    call(function, encoded(interface), number, name)
    return None if number[0] == _UNSET else (number[0], text_in(name))


def video_node(interface: str) -> tuple[int, str] | None:
    """Finds the video node of a USB interface, such as "3-1.2:1.0", and its name (get_video_info)."""
    return _node_and_name("get_video_info", interface)


def sound_card(interface: str) -> tuple[int, str] | None:
    """Finds the sound card of a USB interface, and its name (get_audio_info)."""
    return _node_and_name("get_audio_info", interface)


def _in_port(function: str, slot: str) -> ChannelUpdate | None:
    record = to_c(ChannelUpdate(usbslot=slot))
    call(function, record)
    return from_c(ChannelUpdate, record) if record.state == _FOUND else None


def camera_in_port(slot: str) -> ChannelUpdate | None:
    """Finds the video node and the name of the camera in a port (get_usb_vnode)."""
    return _in_port("get_usb_vnode", slot)


def card_in_port(slot: str) -> ChannelUpdate | None:
    """Finds the sound card in a port (get_usb_anode)."""
    return _in_port("get_usb_anode", slot)


def set_stream_parameters(profile: int, state: int) -> None:
    """Stores the stream-parameter state of a profile's channel (mn_set_usbchn_sps)."""
    call("mn_set_usbchn_sps", profile, state)


def apply_volume(profile: int) -> int:
    """Sets a profile's sound card to the stored volume; returns what the audio library returned (mn_set_usbdev_volume)."""
    result = int(ask("mn_set_usbdev_volume", profile))
    if result == -1:
        raise UsbdevError("mn_set_usbdev_volume", result)
    return result
