# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Changes that both the owner's pages and other programs make. usbdevctl decides about each."""

from __future__ import annotations

from typing import Any

from usbdev import UsbdevError, aio, profiles

from statelib import problems, program
from statelib.stream_settings import not_stored, options, settings

Value = dict[str, Any]


async def switch(channel: int, on: bool) -> Value:
    switched = await program.ask("slot", "on" if on else "off", f"ch{channel}")
    return {"switched_on": switched["slot_switch"], "waits_for": switched["parked_behind"]}


async def set_stream(profile: int, asked: Value) -> Value:
    """Stores the settings, and returns what became of each."""
    stored = await program.ask("stream", "set", f"pf{profile}", *options(asked), seconds=program.SECONDS_WITH_CAMERA)
    try:
        taken = settings(await aio.call(profiles.info, profile))
    except UsbdevError:
        raise problems.host_away("The channel configuration cannot be read.") from None
    return {"asked": asked, "taken": {name: taken[name] for name in asked}, "not_stored": not_stored(stored)}


async def share(profile: int, action: str) -> Value:
    """Asks for "show", "on", "off" or "renew", and returns the link."""
    link = await program.ask("share", action, f"pf{profile}")
    if action == "off":  # which answers about the sharing only
        return await share(profile, "show")
    return {"on": link["sharing"], "password": link["password"], "page": link["page"] if link["sharing"] else None}
