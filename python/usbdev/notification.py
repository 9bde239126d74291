# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The change notification that the library sends to the manager: UDP port 10171 of the loopback address."""

from __future__ import annotations

import struct
from dataclasses import dataclass

PORT = 10171
SIZE = 56
HEADER_SIZE = 16
MAGIC = b"ORDA_VLM2_CFCG_N"
# Sender and receiver run on one host, so the numbers have its byte order.
_LAYOUT = struct.Struct("=16s16s6i")


@dataclass(frozen=True)
class Notification:
    header: bytes  # of the request that changed something
    profile: int
    video_node: int
    audio_node: int
    flag: int
    event: int
    target: int

    @classmethod
    def from_bytes(cls, datagram: bytes) -> Notification:
        """Decodes a datagram; raises ValueError for one of another size or with another beginning."""
        if len(datagram) != SIZE:
            raise ValueError(f"it has {len(datagram)} bytes, not {SIZE}")
        magic, *rest = _LAYOUT.unpack(datagram)
        if magic != MAGIC:
            raise ValueError(f"it does not begin with {MAGIC.decode()}")
        return cls(*rest)

    def __bytes__(self) -> bytes:
        if len(self.header) != HEADER_SIZE:
            raise ValueError(f"the header has {len(self.header)} bytes, not {HEADER_SIZE}")
        numbers = (self.profile, self.video_node, self.audio_node, self.flag, self.event, self.target)
        try:
            return _LAYOUT.pack(MAGIC, self.header, *numbers)
        except struct.error:
            raise OverflowError("a number of the notification does not fit into 32 bits") from None
