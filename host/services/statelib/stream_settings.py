# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The settings of a stream: those that are stored, and those that somebody asks for."""

from __future__ import annotations

from typing import Any

from usbdev import Codec, ProfileInfo

from statelib import problems
from statelib.members import Kinds

CODECS = ("mjpeg", "h264")
SOUND_CODECS = ("ulaw", "aac")
LARGEST_SIDE = 99999
FASTEST = 1000.0
KINDS: Kinds = {"codec": str, "width": int, "height": int, "rate": float, "overlay": bool, "flip": bool, "mirror": bool,
                "sound": bool, "sound_codec": str, "volume": int}  # fmt: skip
# The program's options, in whose names its answers call what was not stored.
OPTIONS = {"overlay": "overlay", "flip": "flip", "mirror": "mirror", "sound": "audio", "sound_codec": "audio_codec",
           "volume": "volume", "codec": "codec"}  # fmt: skip
# What the settings are called here that the program's answers name.
NAMES = {"size": "size", "fps": "rate", "display": "display", **{option: name for name, option in OPTIONS.items()}}


def settings(info: ProfileInfo) -> dict[str, Any]:
    """Returns what is stored."""
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


def options(asked: dict[str, Any]) -> list[str]:
    """Returns the settings as the program's options; raises Problem for values that no camera has."""
    if not asked or ("width" in asked) != ("height" in asked):
        raise problems.invalid("The request needs a setting, and with a width the height.")
    _check(asked)
    found = []
    if "width" in asked:
        found += ["--size", f"{asked['width']}x{asked['height']}"]
    if "rate" in asked:
        found += ["--fps", f"{asked['rate']:.3f}"]
    for name, option in OPTIONS.items():
        if name in asked:
            found += [f"--{option.replace('_', '-')}", _word(asked[name])]
    return found


def not_stored(answer: dict[str, Any]) -> list[str]:
    """Returns the settings that the program names as not stored."""
    return [NAMES[option] for option in answer["not_stored"]]


def differences(answer: dict[str, Any]) -> list[dict[str, Any]]:
    """Returns what a camera took instead of what another one had."""
    return [{**change, "setting": NAMES[change["setting"]]} for change in answer["changes"]]


def _check(asked: dict[str, Any]) -> None:
    allowed = {
        "codec": CODECS,
        "sound_codec": SOUND_CODECS,
        "width": range(1, LARGEST_SIDE + 1),
        "height": range(1, LARGEST_SIDE + 1),
        "volume": range(101),
    }
    for name, values in allowed.items():
        if name in asked and asked[name] not in values:
            raise problems.invalid(f"The request has no proper {name}.")
    if not 0 <= asked.get("rate", 0) <= FASTEST:
        raise problems.invalid("The request has no proper rate.")


def _word(value: Any) -> str:
    return {True: "on", False: "off"}[value] if isinstance(value, bool) else str(value)
