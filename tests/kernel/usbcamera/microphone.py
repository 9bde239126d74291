# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The sound of a camera: a tone, and the volume that the machine reads and sets."""

from __future__ import annotations

import struct

from usbcamera.redirection import Connection, Control
from usbcamera.sound_descriptors import RATE, SAMPLES_A_PACKET

LOUD = 8_000
TONE = 1_000
PERIOD = RATE // TONE
# The volume in steps of 1/256 decibel, by request: now, least, most, step.
VOLUMES = {0x81: 0, 0x82: -40 * 256, 0x83: 0, 0x84: 256}
MUTE = 1


class Microphone:
    def __init__(self, endpoint: int, channels: int, connection: Connection) -> None:
        self._endpoint, self._connection = endpoint, connection
        samples = [LOUD if it % PERIOD < PERIOD // 2 else -LOUD for it in range(SAMPLES_A_PACKET) for _ in range(channels)]
        self._packet = struct.pack(f"<{len(samples)}h", *samples)

    def send(self, number: int) -> None:
        self._connection.isochronous(number, self._endpoint, self._packet)

    @staticmethod
    def asked(control: Control) -> bytes | None:
        """Returns what a request of the sound control reads; one that sets something is accepted."""
        if not control.request_type & 0x80:
            return b""
        if control.value >> 8 == MUTE:
            return b"\0"
        volume = VOLUMES.get(control.request)
        return None if volume is None else struct.pack("<h", volume)
