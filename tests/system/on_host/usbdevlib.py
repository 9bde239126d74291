# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The library's records and functions, as far as the tests on the host call them."""

from __future__ import annotations

import ctypes
from ctypes import CDLL, POINTER, Structure, byref, c_char, c_char_p, c_float, c_int

CHANNELS = 10


class Device(Structure):
    _fields_ = [
        ("devtype", c_int),
        ("node", c_int),
        ("usbslot", c_char * 128),
        ("plugged", c_int),
        ("devname", c_char * 256),
    ]


class Conflict(Structure):
    _fields_ = [
        ("profilename", c_char * 256),
        ("devname", c_char * 256),
        ("channel", c_int),
        ("profile", c_int),
    ]


class Size(Structure):
    _fields_ = [("width", c_int), ("height", c_int), ("fps_count", c_int), ("fps", c_float * 30)]


class Format(Structure):
    _fields_ = [("index", c_int), ("codec", c_int), ("res_count", c_int), ("res", Size * 32)]


class Stream(Structure):
    _fields_ = [
        ("header", ctypes.c_ubyte * 16),
        *((name, c_int) for name in "channel stream_type slot_switch vnode vprofile vcodec venable".split()),
        *((name, c_int) for name in "spsstate width height".split()),
        ("framerate", c_float),
        ("reserved1", c_int),
        ("fetype", c_char * 16),
        *((name, c_int) for name in "anode aprofile acodec aenable samplerate channelno bitrate volume".split()),
        ("osdenable", c_int),
        ("reserved2", c_int * 3),
        *((name, c_int) for name in "flip mirror ldspoutput".split()),
        ("vtag", c_char * 16),
    ]


FormatTable = Format * 8

library = CDLL("libusbdevlib.so")
library.mn_set_usbdev_hotplug.argtypes = [
    POINTER(Device), POINTER(c_int), c_char_p, POINTER(c_int), POINTER(Conflict)
]  # fmt: skip
library.vl_set_usbchn_profile.argtypes = [c_char_p, c_int]
library.vl_clear_usbchn_profile.argtypes = [c_int, c_char_p, c_int]
library.mn_get_usbchn_fmts.argtypes = [c_int, POINTER(Format), POINTER(c_int)]
library.vl_get_usbchn_cap.argtypes = [c_int, POINTER(Format)]
library.vl_get_stream_info.argtypes = [c_int, POINTER(Stream)]
library.vl_set_usbchn_stream.argtypes = [c_int, POINTER(Stream), POINTER(Stream), c_int]


def hotplug(devtype: int, node: int, slot: str, plugged: int, name: str) -> int:
    device = Device(devtype, node, slot.encode(), plugged, name.encode()[:255])
    profile, vnode = c_int(), c_int()
    devname = ctypes.create_string_buffer(256)
    return library.mn_set_usbdev_hotplug(byref(device), byref(profile), devname, byref(vnode), byref(Conflict()))


def start_up() -> None:
    library.vl_set_devpf_list()


def assign(slot: str, profile: int) -> int:
    return library.vl_set_usbchn_profile(ctypes.create_string_buffer(slot.encode(), 128), profile)


def clear(profile: int, event: int = 0) -> int:
    return library.vl_clear_usbchn_profile(profile, None, event)
