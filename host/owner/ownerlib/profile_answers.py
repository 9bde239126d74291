# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is asked and changed of one profile: its name, its camera and its stream."""

from __future__ import annotations

from typing import Any

from usbdev import UsbdevError, aio, profiles
from usbdev.records import CHANNELS

from ownerlib import problems, program
from ownerlib.answers import SignedIn
from ownerlib.channel_answers import begin_stream
from ownerlib.stored_settings import CODECS, SOUND_CODECS, settings

LONGEST_NAME = 255  # bytes
LARGEST_SIDE = 99999
FASTEST = 1000.0
SETTINGS = {"codec": str, "width": int, "height": int, "rate": float, "overlay": bool, "flip": bool, "mirror": bool,
            "sound": bool, "sound_codec": str, "volume": int}  # fmt: skip
# The program's options, in whose names its answers call what was not stored.
OPTIONS = {"overlay": "overlay", "flip": "flip", "mirror": "mirror", "sound": "audio", "sound_codec": "audio_codec",
           "volume": "volume", "codec": "codec"}  # fmt: skip


class Name(SignedIn):
    async def put(self, profile: str) -> None:
        name = self.members({"name": str})["name"]
        if len(name.encode()) > LONGEST_NAME:
            raise problems.invalid(f"The name has more than {LONGEST_NAME} bytes.")
        renamed = await program.ask("rename", f"pf{profile}", "--", name)
        self.finish({"name": renamed["profile_name"]})


class Move(SignedIn):
    async def post(self, profile: str) -> None:
        channel = self.members({"channel": int})["channel"]
        if channel not in range(CHANNELS):
            raise problems.invalid("The request has no proper channel.")
        moved = await program.ask("move", profile, f"ch{channel}", seconds=program.SECONDS_WITH_CAMERA)
        await begin_stream(int(profile))
        self.finish({"differences": moved["differences"], "page": moved["page"]})


class Stream(SignedIn):
    async def patch(self, profile: str) -> None:
        asked = self.members({}, SETTINGS)
        options = _options(asked)
        stored = await program.ask("stream", "set", f"pf{profile}", *options, seconds=program.SECONDS_WITH_CAMERA)
        try:
            taken = settings(await aio.call(profiles.info, int(profile)))
        except UsbdevError:
            raise problems.host_away("The channel configuration cannot be read.") from None
        names = {option: name for name, option in OPTIONS.items()}
        not_stored = [names[option] for option in stored["not_stored"]]
        self.finish({"asked": asked, "taken": {name: taken[name] for name in asked}, "not_stored": not_stored})


def _options(asked: dict[str, Any]) -> list[str]:
    """Returns the settings as the program's options; raises Problem for values that no camera has."""
    if not asked or ("width" in asked) != ("height" in asked):
        raise problems.invalid("The request needs a setting, and with a width the height.")
    _check(asked)
    options = []
    if "width" in asked:
        options += ["--size", f"{asked['width']}x{asked['height']}"]
    if "rate" in asked:
        options += ["--fps", f"{asked['rate']:.3f}"]
    for name, option in OPTIONS.items():
        if name in asked:
            options += [f"--{option.replace('_', '-')}", _word(asked[name])]
    return options


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
