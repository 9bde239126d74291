# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Decodes a change notification."""

from __future__ import annotations

import ipaddress
import struct
from dataclasses import dataclass

MAGIC = b"ORDA_VLM2_CFCG_N"
# Sender and receiver run on one host, so the numbers have its byte order.
_LAYOUT = struct.Struct("=16s16s6i")
_EVENTS = {6: "6 (plugged)", 7: "7 (removed)"}


@dataclass
class Notification:
    header: bytes
    profile: int
    video_node: int
    audio_node: int
    flag: int
    event: int
    target: int

    def __str__(self) -> str:
        return (
            f"event {_EVENTS.get(self.event, self.event)}  profile {_number(self.profile)}"
            f"  video {_number(self.video_node)}  audio {_number(self.audio_node)}  flag {self.flag}"
            f"  target {_number(self.target)}  request {self._request()}"
        )

    def _request(self) -> str:
        """Returns the client's address if the header contains nothing else: a client has cleared a profile."""
        before, address, after = self.header[:4], self.header[4:8], self.header[8:]
        if not any(self.header):
            return "none"
        return self.header.hex() if any(before + after) else str(ipaddress.IPv4Address(address))


def decode(datagram: bytes) -> Notification:
    """Decodes a datagram; raises ValueError for one of another size or with another beginning."""
    if len(datagram) != _LAYOUT.size:
        raise ValueError(f"it has {len(datagram)} bytes, not {_LAYOUT.size}")
    magic, header, *numbers = _LAYOUT.unpack(datagram)
    if magic != MAGIC:
        raise ValueError(f"it does not begin with {MAGIC.decode()}")
    return Notification(header, *numbers)


def _number(value: int) -> str:
    return "none" if value == -1 else str(value)
