# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""<usbdev/profiles.h>: assignment of profiles, stream settings, port switch, listings, capabilities and information."""

from __future__ import annotations

from usbdev._library import ID_SIZE, ask, call, encoded, ffi, new_buffer, number_or_none, text_from
from usbdev.codes import EventCode
from usbdev.errors import UsbdevError
from usbdev.records import (
    CHANNELS,
    FORMATS,
    PROFILES,
    Entry,
    Format,
    ProfileInfo,
    StreamInfo,
    formats_from_c,
    from_c,
    is_zero,
    to_c,
)

_SLOT_SIZE = 128
_NO_RATE = -1.0


def is_unassigned(slot: str, profile: int) -> bool:
    """Checks that the device in a port may get a profile; returns whether its channel has none (vl_chk_usbdev_profile)."""
    unassigned = ffi.new("int *")
    call("vl_chk_usbdev_profile", encoded(slot), profile, unassigned)
    return bool(unassigned[0] == 1)


def assign(slot: str, profile: int) -> None:
    """Assigns a profile to the device in a port (vl_set_usbchn_profile)."""
    call("vl_set_usbchn_profile", new_buffer(_SLOT_SIZE, encoded(slot, _SLOT_SIZE)), profile)


def clear(profile: int, client_ip: str | None = None, event_code: int = EventCode.CHANGED) -> None:
    """Takes a profile from its channel, which hands over to one that waits for it (vl_clear_usbchn_profile)."""
    address = ffi.NULL if client_ip is None else encoded(client_ip)
    call("vl_clear_usbchn_profile", profile, address, event_code)


def rename(profile: int, name: str, event_code: int = EventCode.CHANGED) -> None:
    """Renames a profile (vl_set_profile_channelname)."""
    call("vl_set_profile_channelname", profile, encoded(name), event_code)


def set_stream(profile: int, new: StreamInfo, old: StreamInfo, event_code: int = EventCode.CHANGED) -> None:
    """Stores those stream settings of a profile that differ from the old ones (vl_set_usbchn_stream)."""
    call("vl_set_usbchn_stream", profile, to_c(new), to_c(old), event_code)


def closest_rate(profile: int, request: StreamInfo) -> float | None:
    """Chooses the camera's frame rate for a codec, a size and a rate above 0 (findclosedFPS)."""
    rate = ffi.new("float *", _NO_RATE)
    call("findclosedFPS", profile, to_c(request), rate)
    return None if rate[0] == _NO_RATE else float(rate[0])


def log_changes(
    profile: int, new: StreamInfo, old: StreamInfo, rate: float, event_code: int = EventCode.CHANGED
) -> None:
    """Logs an event for each stream setting that changed; `rate` is the one that is set (Add_setStream_log)."""
    ask("Add_setStream_log", profile, to_c(new), to_c(old), rate, event_code)


def switch_port(slot: str, on: bool) -> None:
    """Switches a port on or off (vl_set_usbslot_switch)."""
    call("vl_set_usbslot_switch", encoded(slot), b"enable" if on else b"disable", ffi.NULL)


def _numbers(function: str) -> tuple[int, ...]:
    listed = text_from(function, size=ID_SIZE)
    return tuple(map(int, listed.split(","))) if listed else ()


def unassigned() -> tuple[int, ...]:
    """Lists the profiles that no channel has (vl_get_available_profile)."""
    return _numbers("vl_get_available_profile")


def streaming() -> tuple[int, ...]:
    """Lists the profiles that can stream now, in the order of their channels (vl_get_usbdev_list)."""
    return _numbers("vl_get_usbdev_list")


def channels() -> dict[int, Entry]:
    """Describes the channels that have a device, by their numbers (vl_get_devpf_list)."""
    rows = ffi.new("_usbdev_entry[]", CHANNELS)
    call("vl_get_devpf_list", rows)
    return {channel: from_c(Entry, row) for channel, row in enumerate(rows) if not is_zero(row)}


def profiles() -> dict[int, Entry]:
    """Describes the profiles that a channel has, by their numbers (vl_get_profile_list)."""
    rows = ffi.new("_usbdev_entry[]", PROFILES)
    call("vl_get_profile_list", rows)
    return {profile: from_c(Entry, row) for profile, row in enumerate(rows) if row.profile != -1}


def formats(profile: int) -> tuple[Format, ...]:
    """Asks the camera of a profile for its formats (vl_get_usbchn_cap)."""
    table = ffi.new("_usbfmt_des[]", FORMATS)
    count = ask("vl_get_usbchn_cap", profile, table)
    if count < 0:
        raise UsbdevError("vl_get_usbchn_cap", count)
    return formats_from_c(table, count)


def codecs(profile: int) -> str:
    """Reads the stored codecs of a profile's camera, such as "0 1" (vl_get_profile_video_cap)."""
    return text_from("vl_get_profile_video_cap", profile, size=ID_SIZE)


def audio_capability(profile: int) -> str:
    """Reads the stored audio capability of a profile's sound card (vl_get_usbchn_audio_cap)."""
    return text_from("vl_get_usbchn_audio_cap", profile, size=ID_SIZE)


def info(profile: int) -> ProfileInfo:
    """Reads all settings of a profile (vl_get_profile_info)."""
    record = ffi.new("_profile_info *")
    call("vl_get_profile_info", profile, record)
    return from_c(ProfileInfo, record)


def of_channel(channel: int) -> int | None:
    """Reads the profile of a channel (vl_get_profileID)."""
    return number_or_none(ask("vl_get_profileID", channel))


def stream_info(profile: int) -> StreamInfo:
    """Reads the stream settings of a profile (vl_get_stream_info).

    Fails with result -2 if its device is not attached, -3 if it has to wait or is unsupported, -4 if its port is off.
    """
    record = to_c(StreamInfo())
    call("vl_get_stream_info", profile, record)
    return from_c(StreamInfo, record)
