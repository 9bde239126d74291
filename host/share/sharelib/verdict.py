# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a viewer gets: the path of the stream, the request for a password, or the reason why there is nothing to see."""

from __future__ import annotations

import hmac
from dataclasses import dataclass
from typing import Protocol

from usbdev import ViewerCode

from sharelib import streams
from sharelib.library import Link

# The name of each reason, by which pages find their own words for it, and a sentence.
Told = tuple[str, str]
INCOMPLETE: Told = ("incomplete", "This link is incomplete; it was probably cut when it was copied.")
PASSWORD_NEEDED: Told = ("password_needed", "This link is protected by a password.")
PASSWORD_WRONG: Told = ("password_wrong", "This is not the password.")
PAUSE: Told = ("too_many", "There were too many wrong attempts.")
FINAL_REASONS: dict[int, Told] = {
    ViewerCode.WRONG_TOKEN: ("wrong_token", "This link is no longer valid; ask for the new one."),
    ViewerCode.UNKNOWN_SHARE_ID: ("unknown", "This link is unknown; it was replaced or removed."),
}
PASSING_REASONS: dict[int, Told] = {
    ViewerCode.NOT_ATTACHED: ("unplugged", "The camera is not plugged in."),
    ViewerCode.NO_VIDEO: ("no_picture", "The camera gives no picture at the moment."),
    ViewerCode.SOUND_ONLY: ("sound_only", "There is sound here, but no picture to show."),
    ViewerCode.WAITS: ("waits", "The camera has to wait for another one, or cannot be used on this host."),
    ViewerCode.PORT_OFF: ("switched_off", "The camera's port is switched off."),
    ViewerCode.NOT_SHARED: ("not_shared", "This camera is not shared at the moment."),
}


@dataclass(frozen=True)
class Verdict:
    answer: dict[str, str | float | None]
    is_wrong: bool = False  # a token or password was given, and it is wrong
    pause: int = 0  # seconds


class Links(Protocol):
    """The part of the library that decides."""

    def open(self, ssid: str, token: str) -> tuple[int, Link | None]: ...


def judge(links: Links, ssid: str, token: str, password: str) -> Verdict:
    # For the library an empty share id is that of a channel without a share link.
    if not ssid or not token:
        return _told("refused", INCOMPLETE)
    code, link = links.open(ssid, token)
    if link is not None:
        return _opened(link, password)
    if code in PASSING_REASONS:
        return _told("waits", PASSING_REASONS[code])
    return _told("refused", FINAL_REASONS[code], is_wrong=code == ViewerCode.WRONG_TOKEN)


def paused(seconds: int) -> Verdict:
    return Verdict({**_reason(PAUSE), "outcome": "paused", "seconds": seconds}, pause=seconds)


def _opened(link: Link, password: str) -> Verdict:
    if link.password is None or hmac.compare_digest(link.password, password.encode()):
        playlist = f"/{link.stream}/{streams.PLAYLIST}"
        return Verdict({"outcome": "plays", "name": link.name, "playlist": playlist, "changed": streams.changed(link.stream)})
    return _told("password", PASSWORD_WRONG, is_wrong=True) if password else _told("password", PASSWORD_NEEDED)


def _told(outcome: str, told: Told, is_wrong: bool = False) -> Verdict:
    return Verdict({"outcome": outcome, **_reason(told)}, is_wrong)


def _reason(told: Told) -> dict[str, str]:
    reason, sentence = told
    return {"reason": reason, "sentence": sentence}
