# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The share functions of the library, for Python."""

from __future__ import annotations

import ctypes
from dataclasses import dataclass

OPENS = -1
WRONG_TOKEN = 9000


class ShareLinkInfo(ctypes.Structure):
    """The record of that name in usbdev/records.h."""

    _fields_ = (
        ("profile", ctypes.c_int),
        ("profilename", ctypes.c_char * 256),
        ("shrenable", ctypes.c_int),
        ("pwdenable", ctypes.c_int),
        ("shrpwd", ctypes.c_char * 32),
        ("ssid", ctypes.c_char * 48),
        ("token", ctypes.c_char * 64),
        ("hash_string", ctypes.c_char * 64),
    )


@dataclass(frozen=True)
class Link:
    """The stream of a share link, and the password that still has to be checked."""

    name: str
    stream: str
    password: bytes | None


class Library:
    def __init__(self, library: ctypes.CDLL) -> None:
        self._library = library

    def web_port(self) -> int | None:
        """Returns the TCP port of the host's web pages."""
        port = ctypes.c_int(0)
        result = self._library.vl_get_nas_HTTPport(ctypes.byref(port))
        return port.value if result == 0 and port.value > 0 else None

    def open(self, ssid: str, token: str) -> tuple[int, Link | None]:
        """Checks whether a share id and token open a stream: returns the result code, and the link if they do."""
        profile, code = ctypes.c_int(-1), ctypes.c_int(WRONG_TOKEN)
        wanted = ssid.encode(), token.encode()
        self._library.vl_ssid_auth(*wanted, ctypes.byref(profile), ctypes.byref(code))
        if code.value != OPENS:
            return code.value, None
        info = ShareLinkInfo(profile=profile.value)
        found = self._library.vl_get_share_link(ctypes.byref(info)) == 0
        # The link may have been renewed between the two calls, and the old token must not open it.
        if not found or (info.ssid, info.token) != wanted:
            return WRONG_TOKEN, None
        return OPENS, _link(info)


def _link(info: ShareLinkInfo) -> Link:
    name = info.profilename.decode(errors="replace") or f"Channel {info.profile + 1}"
    return Link(name, info.hash_string.decode("ascii"), info.shrpwd if info.pwdenable else None)
