# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The cameras of a state: by what each is known, what it is called, and which one waits for which."""

from __future__ import annotations

import json
from dataclasses import dataclass
from typing import Any

Value = dict[str, Any]
Camera = tuple[str, str]  # what it calls itself, and its port


@dataclass(frozen=True, order=True)
class Wait:
    """For which camera another one waits, and what the two share."""

    other: Camera
    collision: str | None

    @staticmethod
    def of(text: str) -> Wait:
        device, port, collision = json.loads(text)
        return Wait((device, port), collision)

    def text(self) -> str:
        return json.dumps([*self.other, self.collision])


def identity(channel: Value) -> Camera:
    return (channel["device"] or "", channel["port"])


def name_of(channel: Value) -> str:
    """Returns what the pages call a camera."""
    return str(channel["profile_name"] or channel["device"] or f"Channel {channel['channel']}")


def channel_of(state: Value | None, **where: int) -> Value | None:
    """Returns the channel that has a camera and these values, as profile=0."""
    for channel in state["channels"] if state else []:
        if channel["port"] and all(channel[name] == number for name, number in where.items()):
            return dict(channel)
    return None


def waits(channels: list[Value]) -> dict[Camera, Wait]:
    """Returns the cameras that wait. One whose port is off does not, and neither does one that is away."""
    found = {}
    for channel in channels:
        if channel["state"] != "plugged" or channel["waits_for"] is None or not channel["switched_on"]:
            continue
        collision = next((it["collision"] for it in channel["reasons"] if it["reason"] == "waits"), None)
        found[identity(channel)] = Wait(identity(channels[channel["waits_for"]]), collision)
    return found
