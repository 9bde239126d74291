# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""paho's client, with bounds on what a broker may send."""

from __future__ import annotations

from collections.abc import Callable

from paho.mqtt.client import MQTT_ERR_PROTOCOL, PUBLISH, Client, MQTTv5
from paho.mqtt.properties import PacketTypes, Properties

LARGEST_PACKET = 16384  # bytes
TYPE, EXACTLY_ONCE = 0xF0, 0x04  # of a packet's first byte
FAILED = 0x80  # codes from here on


class CarefulClient(Client):  # type: ignore[misc]
    """paho has no setting for these bounds, so they are where it reads from the socket and takes packets apart."""

    def __init__(self, name: str, refused: Callable[[int, int], None]) -> None:
        """`refused` is called with the number of a message that the broker did not take, and the code of the reason."""
        super().__init__(name, protocol=MQTTv5)
        self._refused = refused

    @staticmethod
    def wishes() -> Properties:
        """Returns what a proper broker is asked for."""
        wishes = Properties(PacketTypes.CONNECT)
        wishes.MaximumPacketSize = LARGEST_PACKET
        return wishes

    def _sock_recv(self, size: int) -> bytes:
        if size > LARGEST_PACKET:  # all that is missing of a packet
            raise ConnectionAbortedError(f"a packet of {size} bytes")
        return bytes(super()._sock_recv(size))

    def _packet_handle(self) -> int:
        """Takes no message that the broker may keep open, because each of these is kept in memory."""
        command = self._in_packet["command"]
        if command & TYPE == PUBLISH and command & EXACTLY_ONCE:
            return int(MQTT_ERR_PROTOCOL)
        return int(super()._packet_handle())

    def _handle_pubackcomp(self, kind: str) -> int:
        packet = self._in_packet["packet"]
        if len(packet) > 2 and packet[2] >= FAILED:
            self._refused(int.from_bytes(packet[:2], "big"), packet[2])
        return int(super()._handle_pubackcomp(kind))
