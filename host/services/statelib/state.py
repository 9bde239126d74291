# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The whole picture: ten channels, four profiles, the USB ports and the newest events."""

from __future__ import annotations

import asyncio
import socket
from typing import Any

from servicelib.counts import counts
from usbdev import Entry, ProfileInfo, UsbdevError, aio, core, profiles
from usbdev.records import PROFILES

from statelib import event_log, program, usb_tree
from statelib.problems import host_away
from statelib.stream_settings import settings

Row = dict[str, Any]  # of "usbdevctl explain --json"
Value = dict[str, Any]
EVENTS = 20
PICTURE = ("codec", "width", "height", "rate", "flip", "mirror", "overlay")
REASON = ("reason", "cause", "values", "text", "hinders", "other_channel", "collision")


class Reader:
    """Reads the state. Whether only one camera can stream takes commands to find out, and the host stays what it is."""

    def __init__(self) -> None:
        self._is_limited: bool | None = None

    async def state(self) -> Value:
        return {"host": {"name": socket.gethostname()}, **await self._channels(), "events": await self.events()}

    async def _channels(self) -> Value:
        """Returns the parts of the state that follow from the channels."""
        explained, bound = await asyncio.gather(program.ask("explain"), _profiles())
        rows: list[Row] = explained["channels"]
        if self._is_limited is None:
            self._is_limited = await aio.call(core.is_limited_to_one_channel)
        known = await asyncio.to_thread(usb_tree.buses)
        usb = usb_tree.tree(rows, known, self._is_limited, usb_tree.full(explained["buses"]))
        return {
            "channels": [channel(row, *bound.get(row["profile"], (None, None))) for row in rows],
            "profiles": [profile(number, rows) for number in range(PROFILES)],
            "usb": {**usb, "buses": explained["buses"]},
        }

    async def events(self) -> list[Value]:
        return await asyncio.to_thread(event_log.newest, EVENTS)


async def _profiles() -> dict[int, tuple[Entry, ProfileInfo]]:
    with counts.timed("library_calls", "profiles"):
        return await aio.call(_bound)


def _bound() -> dict[int, tuple[Entry, ProfileInfo]]:
    """Returns the profiles that a channel has, with their settings."""
    try:
        return {number: (entry, profiles.info(number)) for number, entry in profiles.profiles().items()}
    except UsbdevError:
        raise host_away("The channel configuration cannot be read.") from None


def channel(row: Row, entry: Entry | None, info: ProfileInfo | None) -> Value:
    return {
        "channel": row["channel"],
        "state": row["state"],
        "port": row["slot"] or None,
        "device": row["device"] or None,
        "node": row["video_node"],
        "profile": row["profile"],
        "profile_name": row["profile_name"] or None,
        "switched_on": row["slot_switch"],
        "waits_for": row["parked_behind"],
        "supported": row["supported"],
        "streams": row["streams"],
        "shared": entry is not None and entry.shrenable == 1,
        **_settings(info),
        "created": row["created"] or None,
        "reasons": [_reason(reason) for reason in row["reasons"]],
    }


def _settings(info: ProfileInfo | None) -> Value:
    if info is None:
        return dict.fromkeys((*PICTURE, "sound"))
    stored = settings(info)
    sound = {"card": info.anode >= 0, "on": stored["sound"], "codec": stored["sound_codec"], "volume": stored["volume"]}
    return {**{name: stored[name] for name in PICTURE}, "sound": sound}


def _reason(reason: Row) -> Value:
    return {**{name: reason[name] for name in REASON}, "text": program.sentence(reason["why"]), "cure": program.sentence(reason["remedy"])}


def profile(number: int, rows: list[Row]) -> Value:
    row = next((row for row in rows if row["profile"] == number), None)
    return {
        "profile": number,
        "channel": row["channel"] if row else None,
        "name": (row and row["profile_name"]) or None,
        "streams": bool(row and row["streams"]),
    }
