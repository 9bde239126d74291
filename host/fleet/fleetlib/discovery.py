# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The message by which home-automation software finds the host: one device, with a sensor for each channel and profile, which
read the document of the state."""

from __future__ import annotations

from typing import Any

from usbdev.records import CHANNELS, PROFILES

from fleetlib.topics import Topics

Value = dict[str, Any]
STATES = ["plugged", "unplugged", "displaced", "free"]


def message(host: str, topics: Topics, version: str | None) -> Value:
    own = f"usbdev_{host}"
    return {
        "device": {"identifiers": [own], "name": host, "model": "USB cameras", "sw_version": version or "unknown"},
        "origin": {"name": "usbdev", "sw_version": version or "unknown"},
        "availability_topic": topics.availability,
        "state_topic": topics.state,
        "qos": 1,
        "components": {
            **{f"channel{number}": _channel(own, number, topics) for number in range(CHANNELS)},
            **{f"profile{number}": _profile(own, number) for number in range(PROFILES)},
        },
    }


def _channel(own: str, number: int, topics: Topics) -> Value:
    """What is in the channel; the camera's name, port and the reasons why it does not stream are attributes."""
    channel = f"value_json.channels[{number}]"
    return {
        "platform": "sensor",
        "unique_id": f"{own}_channel{number}",
        "name": f"Channel {number}",
        "device_class": "enum",
        "options": STATES,
        "icon": "mdi:webcam",
        "value_template": f"{{{{ {channel}.state }}}}",
        "json_attributes_topic": topics.state,
        "json_attributes_template": f"{{{{ {channel} | tojson }}}}",
    }


def _profile(own: str, number: int) -> Value:
    return {
        "platform": "binary_sensor",
        "unique_id": f"{own}_profile{number}",
        "name": f"Stream {number}",
        "device_class": "running",
        "value_template": f"{{{{ 'ON' if value_json.profiles[{number}].streams else 'OFF' }}}}",
    }
