# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the lines of the library and of usbdevctl in the event log mean, in the words of the pages."""

from __future__ import annotations

import re
from dataclasses import dataclass

from ownerlib.logged_reasons import cause_of
from ownerlib.texts import Texts

MODIFIED = r"Modified Channel (?P<number>\d) "  # the log counts profiles from one, and calls them channels
PORT = r"(?P<port>\d+-[\d.]+)"
SETTINGS = {"overlay timestamp": "overlay", "image reverse": "flip", "image mirror": "mirror", "audio": "sound.on"}
SETTING = rf"(?P<what>{'|'.join(SETTINGS)}) on Channel (?P<number>\d)"
# Each line of the library, by the name of its text.
LINES = {
    "log.codec": re.compile(MODIFIED + r"video format: (?P<codec>.+)"),
    "log.size": re.compile(MODIFIED + r"resolution: (?P<width>\d+)x(?P<height>\d+)"),
    "log.rate": re.compile(MODIFIED + r"FPS: (?P<rate>\d+\.\d+)"),
    "log.high_rate": re.compile(MODIFIED + r"frame rate to over 60 FPS\. Decode error may occur\."),
    "log.sound_codec": re.compile(MODIFIED + r"audio format: (?P<codec>.+)"),
    "log.volume": re.compile(MODIFIED + r"audio volume: (?P<percent>\d+)"),
    "log.name": re.compile(MODIFIED + r"channel name: (?P<name>.*)", re.DOTALL),
    "log.camera": re.compile(MODIFIED + rf"USB device name: (?P<device>.*) \({PORT}\)", re.DOTALL),
    "log.on": re.compile(rf"Enabled {SETTING}"),
    "log.off": re.compile(rf"Disabled {SETTING}"),
    "log.port_on": re.compile(rf"USB slot \[{PORT}\] has been enabled\."),
    "log.port_off": re.compile(rf"USB slot \[{PORT}\] has been disabled\."),
    "log.fast_camera": re.compile(rf"Camera\[{PORT} (?P<device>.*)\] has image size over 60 fps\. It may cause decode error\.", re.DOTALL),
}
# Why a camera does not stream, as usbdevctl logs it.
REASON = re.compile(rf"Camera\[{PORT}(?: (?P<device>.*?))?\]: (?P<why>.*)", re.DOTALL)

TOLD_AS = {"bandwidth": "bandwidth_alone"}  # without those who have it, whom usbdevctl names in English


@dataclass(frozen=True)
class Line:
    """A line that is known; what it does not have is None."""

    key: str | None
    values: dict[str, str]
    profile: int | None
    port: str | None
    device: str | None

    def words(self, texts: Texts) -> str | None:
        """Returns the line in the words of the pages; None if they have none for it."""
        if self.key is None:
            return self._reason(texts)
        shown = dict(self.values)
        if self.profile is not None:
            shown["profile"] = str(self.profile)
        if "rate" in shown:
            shown["rate"] = texts.rate(float(shown["rate"]))
        if "what" in shown:
            shown["setting"] = texts.text(SETTINGS[shown["what"]])
        return texts.text(self.key, **shown)


    def _reason(self, texts: Texts) -> str | None:
        found = cause_of(self.values["why"])
        if found is None:
            return None
        cause, values = found
        return texts.text("log.reason", why=texts.text(f"reason.{TOLD_AS.get(cause, cause)}", **values))


def is_about(text: str, port: str | None, profile: int | None) -> bool:
    """Checks whether a line names the port or the profile."""
    line = parse(text)
    if line is None:
        return False
    return (line.port is not None and line.port == port) or (line.profile is not None and line.profile == profile)


def parse(text: str) -> Line | None:
    """Returns the line; None if it is not known what it is about."""
    for key, pattern in [*LINES.items(), (None, REASON)]:
        found = pattern.fullmatch(text)
        if found:
            values = found.groupdict()
            profile = int(values["number"]) - 1 if "number" in values else None
            return Line(key, values, profile, values.get("port"), values.get("device"))
    return None
