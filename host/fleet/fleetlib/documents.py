# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is published. Each document lists its members, so that nothing gets out that was not meant to: no password, no link
and no token. host/fleet/schema describes the documents."""

from __future__ import annotations

import json
from datetime import datetime, timezone
from typing import Any

SCHEMA = 1
CHANNEL = ("channel", "state", "port", "device", "node", "profile", "profile_name", "switched_on", "waits_for", "supported",
           "streams", "shared", "codec", "width", "height", "rate", "flip", "mirror", "overlay")  # fmt: skip
SOUND = ("card", "on", "codec", "volume")
REASON = ("reason", "cause", "text", "cure", "hinders", "other_channel", "collision")
PROFILE = ("profile", "channel", "name", "streams")
EVENT = ("id", "time", "severity", "text")

Value = dict[str, Any]


def state(host: str, versions: Value, found: Value, dropped: int) -> Value:
    return {
        "schema": SCHEMA,
        "host": host,
        "versions": versions,
        "channels": [_channel(channel) for channel in found["channels"]],
        "profiles": [_some(profile, PROFILE) for profile in found["profiles"]],
        "dropped_events": dropped,
    }


def event(host: str, found: Value) -> Value:
    return {"schema": SCHEMA, "host": host, **_some(found, EVENT)}


def with_time(document: Value) -> bytes:
    """Returns the document, as it is sent, with the time at which it was true."""
    return text({**document, "time": datetime.now(timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")})


def text(document: Value) -> bytes:
    return json.dumps(document, separators=(",", ":")).encode()


def _channel(found: Value) -> Value:
    sound = found["sound"] and _some(found["sound"], SOUND)
    return {**_some(found, CHANNEL), "sound": sound, "reasons": [_some(reason, REASON) for reason in found["reasons"]]}


def _some(found: Value, names: tuple[str, ...]) -> Value:
    return {name: found[name] for name in names}
