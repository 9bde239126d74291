# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The device and settings layer of a USB camera application on a storage host.

Each module has the functions of one header of the library: `usbdev.profiles` those of <usbdev/profiles.h>, and so on.
A function's description names the C function that it calls; the header describes that one completely. `usbdev.aio` calls
them from an event loop.
"""

from usbdev import core, devices, hostinfo, hotplug, profiles, web
from usbdev.codes import Codec, EventCode, StreamType, ViewerCode
from usbdev.errors import NotViewableError, UsbdevError
from usbdev.notification import Notification
from usbdev.records import (
    AvailableDevice,
    ChannelUpdate,
    Conflict,
    Device,
    Entry,
    Format,
    FrameSize,
    NasServer,
    Package,
    ProfileInfo,
    ShareLink,
    StreamInfo,
)

__all__ = [
    "AvailableDevice",
    "ChannelUpdate",
    "Codec",
    "Conflict",
    "Device",
    "Entry",
    "EventCode",
    "Format",
    "FrameSize",
    "NasServer",
    "NotViewableError",
    "Notification",
    "Package",
    "ProfileInfo",
    "ShareLink",
    "StreamInfo",
    "StreamType",
    "UsbdevError",
    "ViewerCode",
    "core",
    "devices",
    "hostinfo",
    "hotplug",
    "profiles",
    "web",
]
