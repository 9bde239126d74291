# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the manager asks the library, and reports to it. A call may wait for another program, so each has a thread."""

from __future__ import annotations

from dataclasses import dataclass

from servicelib.counts import counts
from servicelib.lifecycle import say
from usbdev import Codec, StreamInfo, StreamType, UsbdevError, aio, hotplug, profiles, web

WITH_VIDEO = (StreamType.VIDEO, StreamType.BOTH)


@dataclass(frozen=True)
class Sound:
    """The sound that comes with the pictures."""

    card: int
    rate: int
    channels: int
    bits_per_second: int
    volume: int


@dataclass(frozen=True)
class Stream:
    """Describes what a profile streams. Pictures that the camera compresses are shown as they are."""

    node: int
    is_mjpeg: bool
    width: int
    height: int
    rate: float
    overlay: bool = False
    flip: bool = False
    mirror: bool = False
    sound: Sound | None = None

    def __str__(self) -> str:
        return f"{self.width}x{self.height} at {self.rate:.2f} from camera {self.node}"


class Library:
    async def stream(self, profile: int) -> Stream | None:
        """Returns what the profile has to stream now; None if it has no camera, or one that is unplugged, waits or is off."""
        try:
            with counts.timed("library_calls", "stream_info"):
                info = await aio.call(profiles.stream_info, profile)
        except UsbdevError:
            return None
        return wanted(info)

    async def tell_available(self, profile: int, available: bool) -> None:
        """Stores whether a stream is available; the manager continues without if that cannot be stored."""
        try:
            with counts.timed("library_calls", "set_stream_available"):
                await aio.call(web.set_stream_available, profile, int(available))
        except UsbdevError as problem:
            say(f"the state of profile {profile} was not stored: {problem}")

    async def apply_volume(self, profile: int) -> None:
        """Sets the sound card to the volume of the profile; not every card can be set."""
        try:
            with counts.timed("library_calls", "apply_volume"):
                await aio.call(hotplug.apply_volume, profile)
        except UsbdevError as problem:
            say(f"the volume of profile {profile} was not set: {problem}")


def wanted(info: StreamInfo) -> Stream | None:
    """Returns what the settings ask for. The library stores overlay, flip and mirror for H.264 only."""
    if info.stream_type not in WITH_VIDEO:
        return None
    is_mjpeg = info.vcodec == Codec.MJPEG
    overlay, flip, mirror = (not is_mjpeg and bool(it) for it in (info.osdenable, info.flip, info.mirror))
    return Stream(info.vnode, is_mjpeg, info.width, info.height, info.framerate, overlay, flip, mirror, _sound(info))


def _sound(info: StreamInfo) -> Sound | None:
    if info.stream_type != StreamType.BOTH or not info.aenable:
        return None
    return Sound(info.anode, info.samplerate, info.channelno, info.bitrate, info.volume)
