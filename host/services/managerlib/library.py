# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Calls the library as the manager of a real host does."""

from __future__ import annotations

import ctypes
from ctypes import c_char, c_float, c_int, c_ubyte
from dataclasses import dataclass

WITH_VIDEO = (2, 3)  # stream types
MJPEG = 1


class StreamInfo(ctypes.Structure):
    """_streaminfo of include/usbdev/records.h."""

    _fields_ = [
        ("header", c_ubyte * 16),
        *((name, c_int) for name in ("channel", "stream_type", "slot_switch", "vnode", "vprofile", "vcodec", "venable")),
        *((name, c_int) for name in ("spsstate", "width", "height")),
        ("framerate", c_float),
        ("reserved1", c_int),
        ("fetype", c_char * 16),
        *((name, c_int) for name in ("anode", "aprofile", "acodec", "aenable", "samplerate", "channelno", "bitrate")),
        *((name, c_int) for name in ("volume", "osdenable")),
        ("reserved2", c_int * 3),
        *((name, c_int) for name in ("flip", "mirror", "ldspoutput")),
        ("vtag", c_char * 16),
    ]


@dataclass(frozen=True)
class Stream:
    """Describes what a profile streams."""

    node: int
    is_mjpeg: bool
    width: int
    height: int
    rate: float

    def __str__(self) -> str:
        return f"{self.width}x{self.height} at {self.rate:.2f} from camera {self.node}"


class Library:
    def __init__(self) -> None:
        self._calls = ctypes.CDLL("libusbdevlib.so.1")

    def stream(self, profile: int) -> Stream | None:
        """Returns what the profile has to stream now; None if it has no camera, or one that is unplugged, waits or is off."""
        info = StreamInfo()
        if self._calls.vl_get_stream_info(profile, ctypes.byref(info)) != 0 or info.stream_type not in WITH_VIDEO:
            return None
        return Stream(info.vnode, info.vcodec == MJPEG, info.width, info.height, info.framerate)

    def tell_available(self, profile: int, available: bool) -> None:
        self._calls.mn_update_pfstate(profile, int(available))
