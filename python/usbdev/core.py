# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""<usbdev/core.h>: text utilities, queries of the host, the mapping from profile to channel, the change notification."""

from __future__ import annotations

from usbdev._library import (
    NAME_SIZE,
    ask,
    call,
    decoded,
    encoded,
    ffi,
    int_from,
    new_buffer,
    text_from,
    text_if_set,
    text_in,
)
from usbdev.errors import UsbdevError
from usbdev.notification import Notification

_PACKAGE_SIZE = 128
_SETTING_SIZE = 32
_SHORT_TEXT_SIZE = 64
_JSON_SIZE = 1024


def trim(text: str) -> str:
    """Returns the text without blanks, tabs and double quotes around it (trim)."""
    buffer = ffi.new("char[]", encoded(text))
    return decoded(ffi.string(ask("trim", buffer)))


def remove_character(text: str, character: str) -> str:
    """Removes every occurrence of a character of one byte from a text below 64 bytes (trimdatetime)."""
    buffer = ffi.new("char[]", encoded(text, _SHORT_TEXT_SIZE))
    removed = encoded(character)
    if len(removed) != 1:
        raise ValueError(f"the character has {len(removed)} bytes, not 1")
    ask("trimdatetime", buffer, removed)
    return text_in(buffer)


def split_in_two(line: str, separator: str) -> tuple[str, str] | None:
    """Splits a line at its first separator and trims both parts; None without a separator (get_two_params)."""
    buffer = ffi.new("char[]", encoded(line))
    left, right = new_buffer(len(buffer)), new_buffer(len(buffer))
    found = ask("get_two_params", buffer, encoded(separator), left, right) == 1
    return (text_in(left), text_in(right)) if found else None


def escape_json(text: str) -> str:
    """Prepares a text for use inside a JSON string; the result has at most 1023 bytes (process_json_string)."""
    buffer = new_buffer(_JSON_SIZE, encoded(text, _JSON_SIZE))
    if (result := ask("process_json_string", buffer, _JSON_SIZE)) != 1:
        raise UsbdevError("process_json_string", result)
    return text_in(buffer)


def package_folder(package: str) -> str:
    """Finds the folder in which an application package is installed (get_bndl_install_path)."""
    return text_from("get_bndl_install_path", encoded(package), size=_PACKAGE_SIZE)


def package_field(package: str, field: str) -> str:
    """Reads one field of an application package from the host's registry (get_bndl_info)."""
    return text_from("get_bndl_info", encoded(package), encoded(field), size=_PACKAGE_SIZE)


def host_setting(key: str) -> str | None:
    """Reads a value of the host's system configuration (get_nas_info)."""
    return text_if_set("get_nas_info", encoded(key), size=_SETTING_SIZE)


def is_limited_to_one_channel() -> bool:
    """Checks whether this host is limited to one camera channel (AMDmodel_oneChannelLimited)."""
    return bool(ask("AMDmodel_oneChannelLimited") == 1)


def channel_of_profile(profile: int) -> int:
    """Finds the channel that serves a profile (trsProfiletoPlugCh)."""
    return int_from("trsProfiletoPlugCh", profile)


def device_name(profile: int) -> str:
    """Returns the name of the device that serves a profile (vl_getDevName)."""
    return text_from("vl_getDevName", profile, size=NAME_SIZE)


def notify_manager(notification: Notification) -> None:
    """Sends a change notification to the manager (vl_settingNotify)."""
    call("vl_settingNotify", bytes(notification))
