# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The messages between the machine's end of a redirected USB device and the device, which is at this end."""

from __future__ import annotations

import asyncio
import struct
from collections.abc import Iterator
from dataclasses import dataclass

FIRST_HEADER = struct.Struct("<III")
HEADER = struct.Struct("<IIQ")
LARGEST_MESSAGE = 1 << 16
VERSION = b"usbcamera".ljust(64, b"\0")
# The device has a version, its endpoints have a packet size, identifiers have 64 bits and lengths of bulk data 32.
CAPABILITIES = 1 << 1 | 1 << 4 | 1 << 5 | 1 << 6

HELLO, CONNECT, DISCONNECT = 0, 1, 2
INTERFACES, ENDPOINTS = 4, 5
SET_CONFIGURATION, CONFIGURATION = 6, 8
SET_ALTERNATE, ALTERNATE = 9, 11
START_ISOCHRONOUS, STOP_ISOCHRONOUS, ISOCHRONOUS = 12, 13, 14
CANCEL = 21
CONTROL_PACKET, BULK_PACKET, ISOCHRONOUS_PACKET = 100, 101, 102

SUCCESS, CANCELLED, IO_ERROR, STALL = 0, 1, 3, 4
SPEEDS = {12: 1, 480: 2, 5000: 3}
TYPES = {"control": 0, "isochronous": 1, "bulk": 2, "none": 255}


@dataclass(frozen=True)
class Endpoint:
    """One for data towards the machine; the interval is in frames or microframes."""

    address: int
    type: str
    interface: int
    packet_size: int
    interval: int = 0


@dataclass(frozen=True)
class Control:
    """A request to the device, with the data that came with it or the number of bytes that may be returned."""

    id: int
    request_type: int
    request: int
    value: int
    index: int
    length: int
    data: bytes = b""


def endpoint_table(endpoints: list[Endpoint]) -> bytes:
    """Describes 32 endpoints: sixteen from the machine, then sixteen towards it."""
    rows = {0: ("control", 0, 0, 64), 16: ("control", 0, 0, 64)}
    for it in endpoints:
        rows[16 + (it.address & 15)] = (it.type, it.interval, it.interface, it.packet_size)
    types, intervals, interfaces, sizes = zip(*(rows.get(i, ("none", 0, 0, 0)) for i in range(32)))
    return bytes(TYPES[it] for it in types) + bytes(intervals) + bytes(interfaces) + struct.pack("<32H", *sizes)


def interface_table(interfaces: list[tuple[int, int, int]]) -> bytes:
    """Describes up to 32 interfaces, each with its number, class and subclass."""
    columns = [bytes(it).ljust(32, b"\0") for it in zip(*interfaces)]
    return struct.pack("<I", len(interfaces)) + b"".join(columns) + bytes(32)


class Messages:
    """Takes messages out of the bytes that arrive. The first one, which says what the other can, has shorter identifiers."""

    def __init__(self) -> None:
        self._buffer = bytearray()
        self._header = FIRST_HEADER

    def take(self, received: bytes) -> Iterator[tuple[int, int, bytes]]:
        """Returns the type, the identifier and the body of each message that is complete."""
        self._buffer += received
        while len(self._buffer) >= self._header.size:
            kind, length, identifier = self._header.unpack_from(self._buffer)
            if length > LARGEST_MESSAGE:
                raise ValueError(f"a message of {length} bytes")
            begin = self._header.size
            end = begin + length
            if len(self._buffer) < end:
                return
            body = bytes(self._buffer[begin:end])
            del self._buffer[:end]
            self._header = HEADER
            yield kind, identifier, body


class Connection:
    """Sends messages to the machine."""

    def __init__(self, transport: asyncio.WriteTransport) -> None:
        self._transport = transport

    def send(self, kind: int, body: bytes = b"", identifier: int = 0) -> None:
        self._transport.write(HEADER.pack(kind, len(body), identifier) + body)

    def greet(self) -> None:
        body = VERSION + struct.pack("<I", CAPABILITIES)
        self._transport.write(FIRST_HEADER.pack(HELLO, len(body), 0) + body)

    def answer(self, asked: Control, status: int, data: bytes = b"") -> None:
        """Ends a request. The length is that of the returned data, or of the data that was taken."""
        length = len(data) if asked.request_type & 0x80 else len(asked.data)
        head = struct.pack("<BBBBHHH", asked.request_type & 0x80, asked.request, asked.request_type, status,
                           asked.value, asked.index, length)
        self.send(CONTROL_PACKET, head + data, asked.id)

    def bulk(self, identifier: int, endpoint: int, status: int, data: bytes = b"") -> None:
        head = struct.pack("<BBHIH", endpoint, status, len(data) & 0xFFFF, 0, len(data) >> 16)
        self.send(BULK_PACKET, head + data, identifier)

    def isochronous(self, number: int, endpoint: int, data: bytes) -> None:
        self.send(ISOCHRONOUS_PACKET, struct.pack("<BBH", endpoint, SUCCESS, len(data)) + data, number)


def read_bulk(body: bytes) -> tuple[int, int]:
    """Returns the endpoint, and how many bytes may be returned."""
    endpoint, _, low, _, high = struct.unpack_from("<BBHIH", body)
    return endpoint, high << 16 | low


def read_control(identifier: int, body: bytes) -> Control:
    _, request, request_type, _, value, index, length = struct.unpack_from("<BBBBHHH", body)
    return Control(identifier, request_type, request, value, index, length, body[10:])
