# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The stored settings of a stream, by the names that the interface has for them."""

from __future__ import annotations

from typing import Any

from usbdev import Codec, ProfileInfo

CODECS = ("mjpeg", "h264")
SOUND_CODECS = ("ulaw", "aac")


def settings(info: ProfileInfo) -> dict[str, Any]:
    return {
        "codec": "mjpeg" if info.vcodec == Codec.MJPEG else "h264",
        "width": info.width,
        "height": info.height,
        "rate": round(info.framerate, 3),
        "overlay": bool(info.osdenable),
        "flip": bool(info.flip),
        "mirror": bool(info.mirror),
        "sound": bool(info.aenable),
        "sound_codec": SOUND_CODECS[info.acodec] if info.acodec in (0, 1) else None,
        "volume": info.volume,
    }
