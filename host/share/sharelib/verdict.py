"""What a viewer is told: where the stream is, that a password is needed, or why there is nothing to see."""

from __future__ import annotations

import hmac
from typing import Protocol

from sharelib.library import Link

Verdict = dict[str, str]

INCOMPLETE = "This link is incomplete; it was probably cut when it was copied."
PASSWORD_NEEDED = "This link is protected by a password."
PASSWORD_WRONG = "This is not the password."
REFUSALS = {
    9000: "This link is no longer valid; ask for the new one.",
    9001: "The camera is not plugged in.",
    9003: "The camera gives no picture at the moment.",
    9004: "There is sound here, but no picture to show.",
    9007: "The camera has to wait for another one, or cannot be used on this host.",
    9009: "The camera's port is switched off.",
    9010: "This camera is not shared at the moment.",
    9011: "This link is unknown; it was renewed or taken back.",
}


class Links(Protocol):
    """The part of the library that decides."""

    def open(self, ssid: str, token: str) -> tuple[int, Link | None]: ...


def judge(links: Links, ssid: str, token: str, password: str) -> Verdict:
    # The library takes an empty share id for one that a channel without a link has.
    if not ssid or not token:
        return _refused(INCOMPLETE)
    code, link = links.open(ssid, token)
    if link is None:
        return _refused(REFUSALS[code])
    if link.password is None or hmac.compare_digest(link.password, password.encode()):
        return {"outcome": "plays", "name": link.name, "playlist": f"/{link.stream}/playlist.m3u8"}
    return {"outcome": "password", "sentence": PASSWORD_WRONG if password else PASSWORD_NEEDED}


def _refused(sentence: str) -> Verdict:
    return {"outcome": "refused", "sentence": sentence}
