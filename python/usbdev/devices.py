# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""<usbdev/devices.h>: identification of USB devices, formats, conflicts between devices, USB ports, questions to the host."""

from __future__ import annotations

from collections.abc import Sequence

from usbdev._library import (
    ID_SIZE,
    NAME_SIZE,
    ask,
    call,
    encoded,
    ffi,
    int_from,
    new_buffer,
    new_ints,
    number_or_none,
    text_if_found,
    text_if_set,
)
from usbdev.errors import UsbdevError
from usbdev.records import (
    CHANNELS,
    FORMATS,
    AvailableDevice,
    Device,
    Format,
    StreamInfo,
    formats_from_c,
    from_c,
    is_zero,
    to_c,
)

_NO_SUCCESSOR = 99
_NOT_AVAILABLE = -1


def usb_ids(device: Device) -> str | None:
    """Finds the vendor and product ids of a camera, such as "046d:0825" (find_pidvid)."""
    return text_if_found("find_pidvid", to_c(device), size=ID_SIZE)


def front_end_type(device: Device) -> str | None:
    """Looks up the front-end type of a camera (get_fetypeid)."""
    return text_if_found("get_fetypeid", to_c(device), size=ID_SIZE)


def is_behind_pci_bridge(node: int) -> bool:
    """Checks whether a camera is connected through a PCI bridge (isPCIbridge)."""
    return bool(ask("isPCIbridge", node) == 1)


def controller_path(node: int) -> str | None:
    """Finds the sysfs path of a camera's USB controller (get_pcibridgePath)."""
    return text_if_found("get_pcibridgePath", node, size=NAME_SIZE)


def is_port_on(configuration: int, slot: str) -> bool:
    """Reads whether a port was last switched on (get_switch_state).

    `configuration` is the address of a configuration handle that the caller has opened for reading.
    """
    return bool(ask("get_switch_state", ffi.cast("void *", configuration), encoded(slot)) == 1)


def is_listed(name: str, list_file: str) -> bool:
    """Checks whether a list file contains a device (devlistcmp)."""
    return bool(ask("devlistcmp", encoded(name), encoded(list_file)) == 1)


def camera_formats(node: int) -> tuple[tuple[Format, ...], bool]:
    """Asks a camera for its formats, and whether it lists a rate above 60 frames per second (mn_get_usbchn_fmts)."""
    table, is_over_60 = ffi.new("_usbfmt_des[]", FORMATS), ffi.new("int *")
    count = ask("mn_get_usbchn_fmts", node, table, is_over_60)
    if count < 0:
        raise UsbdevError("mn_get_usbchn_fmts", count)
    return formats_from_c(table, count), is_over_60[0] == 1


def can_encode() -> bool:
    """Checks whether this host may encode H.264 in hardware (validate_hwenc)."""
    return int_from("validate_hwenc") == 1


def has_gpu_driver() -> bool:
    """Checks whether the driver of the host's GPU is installed (check_gpu_status)."""
    return int_from("check_gpu_status") == 1


def needs_kill(node: int) -> bool:
    """Checks whether a format query of a camera that hangs needs signal 9 to end (vl_force_kill_v4l2_ctl)."""
    return bool(ask("vl_force_kill_v4l2_ctl", node) == 1)


def do_conflict(slot: str, bridge_path: str | None, other_slot: str, other_node: int) -> bool:
    """Checks whether two devices cannot stream at the same time (chkconflict).

    `bridge_path` is that of the device in `slot`, if it is behind a PCI bridge whose path is known.
    """
    path = new_buffer(NAME_SIZE, encoded(bridge_path or "", NAME_SIZE))
    other = ffi.new("char[]", encoded(other_slot))
    return bool(ask("chkconflict", other, encoded(slot), bridge_path is not None, other_node, path) == 1)


def compare_creation_times(one: str, other: str) -> int:
    """Returns 1 if `other` is earlier, 2 if the times are equal, otherwise 0, also for a text that is no time (isElderPf)."""
    return int(ask("isElderPf", encoded(one), encoded(other)))


def hand_over(channel: int, mark: int = -1, mode: int = 0) -> int | None:
    """Hands over from a channel to one that waits for it; returns the successor's profile (updateConflict)."""
    profile = int_from("updateConflict", channel, mark, mode)
    return None if profile == _NO_SUCCESSOR else profile


def first_conflict(channel: int) -> int | None:
    """Finds the first channel that conflicts with a channel and may stream (getConflictCH)."""
    answers = new_ints((-1,) * CHANNELS)
    call("getConflictCH", channel, answers)
    return number_or_none(answers[channel])


def compute_conflicts(states: Sequence[int]) -> tuple[int, ...]:
    """Computes conflict marks again: takes what to do with each channel, returns 1 for each computed one (syncConflict)."""
    if len(states) != CHANNELS:
        raise ValueError(f"there are {CHANNELS} channels")
    both = new_ints(tuple(states))
    call("syncConflict", both)
    return tuple(both)


def available_devices() -> dict[int, AvailableDevice]:
    """Describes the channels that can get a profile, by their numbers (vl_get_available_dev)."""
    rows = ffi.new("_availinfo[]", CHANNELS)
    call("vl_get_available_dev", rows)
    return {channel: from_c(AvailableDevice, row) for channel, row in enumerate(rows) if not is_zero(row)}


def devices_of_profile(profile: int | None) -> dict[int, AvailableDevice]:
    """Describes the channels that serve a profile, or have none, by their numbers (vl_get_available_dev_N_channel)."""
    rows = ffi.new("_availinfo[]", CHANNELS)
    call("vl_get_available_dev_N_channel", rows, -1 if profile is None else profile)
    return {
        channel: from_c(AvailableDevice, row) for channel, row in enumerate(rows) if row.stream_type != _NOT_AVAILABLE
    }


def port_codecs(slot: str) -> str | None:
    """Reads the codecs of the device in a port, such as "0 1" (vl_get_usbslot_video_cap)."""
    return text_if_set("vl_get_usbslot_video_cap", encoded(slot), size=ID_SIZE)


def port_stream(slot: str) -> StreamInfo | None:
    """Reads the stream settings of the device in a port (vl_get_usbslot_info)."""
    info = ffi.new("_streaminfo *")
    call("vl_get_usbslot_info", encoded(slot), info)
    return None if info.channel == -1 else from_c(StreamInfo, info)


def panel_number(slot: str) -> int | None:
    """Finds the number of a port on the host's panel (vl_HOS_CLI_usbid)."""
    return number_or_none(ask("vl_HOS_CLI_usbid", encoded(slot)))


def has_model_picture() -> bool:
    """Checks whether the host has a picture of its own model (vl_find_HOS_model_pic)."""
    return bool(ask("vl_find_HOS_model_pic") == 0)


def supports_encoding_add_on() -> bool:
    """Reads whether the host's GPU supports the encoding add-on (vl_check_HOS_halvane_support)."""
    return int_from("vl_check_HOS_halvane_support") == 1
