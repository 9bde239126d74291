# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The descriptors of a microphone: a terminal, its volume, and an endpoint for sixteen-bit sound."""

from __future__ import annotations

import struct

from usbcamera.video_descriptors import class_specific

AUDIO = 1
CONTROL, STREAMING = 1, 2
MICROPHONE, VOLUME, OUTPUT = 1, 2, 3
RATE = 16_000
SAMPLES_A_PACKET = RATE // 1000


def packet_size(channels: int) -> int:
    return 2 * channels * SAMPLES_A_PACKET


def control_part(streaming: int, channels: int) -> bytes:
    places = 3 if channels == 2 else 0
    parts = b"".join([
        class_specific(2, struct.pack("<BHBBHBB", MICROPHONE, 0x0201, 0, channels, places, 0, 0)),
        class_specific(6, bytes([VOLUME, MICROPHONE, 1, 3, *[0] * channels, 0])),
        class_specific(3, struct.pack("<BHBBB", OUTPUT, 0x0101, 0, VOLUME, 0)),
    ])  # fmt: skip
    return class_specific(1, struct.pack("<HHBB", 0x0100, 9 + len(parts), 1, streaming)) + parts


def streaming_part(channels: int) -> bytes:
    return class_specific(1, struct.pack("<BBH", OUTPUT, 1, 1)) + class_specific(
        2, bytes([1, channels, 2, 16, 1]) + RATE.to_bytes(3, "little"))


def endpoint(address: int, channels: int, interval: int) -> bytes:
    body = struct.pack("<BBBHBBB", 5, address, 5, packet_size(channels), interval, 0, 0)
    return bytes([len(body) + 1]) + body + class_specific(1, bytes(4), 0x25)
