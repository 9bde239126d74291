# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the manager asks the library, and reports to it."""

from __future__ import annotations

from dataclasses import dataclass

from servicelib.lifecycle import say
from usbdev import Codec, StreamType, UsbdevError, profiles, web

WITH_VIDEO = (StreamType.VIDEO, StreamType.BOTH)


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
    def stream(self, profile: int) -> Stream | None:
        """Returns what the profile has to stream now; None if it has no camera, or one that is unplugged, waits or is off."""
        try:
            info = profiles.stream_info(profile)
        except UsbdevError:
            return None
        if info.stream_type not in WITH_VIDEO:
            return None
        return Stream(info.vnode, info.vcodec == Codec.MJPEG, info.width, info.height, info.framerate)

    def tell_available(self, profile: int, available: bool) -> None:
        """Stores whether a stream is available; the manager continues without if that cannot be stored."""
        try:
            web.set_stream_available(profile, int(available))
        except UsbdevError as problem:
            say(f"the state of profile {profile} was not stored: {problem}")
