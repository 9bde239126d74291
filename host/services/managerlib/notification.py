# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The line that the manager prints for a change notification."""

from __future__ import annotations

import ipaddress

from usbdev import Notification

_EVENTS = {0: "0 (changed)", 6: "6 (plugged)", 7: "7 (removed)"}


def line(it: Notification) -> str:
    return (
        f"event {_EVENTS.get(it.event, it.event)}  profile {_number(it.profile)}"
        f"  video {_number(it.video_node)}  audio {_number(it.audio_node)}  flag {it.flag}"
        f"  target {_number(it.target)}  request {_request(it.header)}"
    )


def _request(header: bytes) -> str:
    """Returns the client's address if the header contains nothing else: a client has cleared a profile."""
    before, address, after = header[:4], header[4:8], header[8:]
    if not any(header):
        return "none"
    return header.hex() if any(before + after) else str(ipaddress.IPv4Address(address))


def _number(value: int) -> str:
    return "none" if value == -1 else str(value)
