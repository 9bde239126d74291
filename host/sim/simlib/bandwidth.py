# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files in which the kernel tells how much of its bus a camera reserves: the descriptors of its streaming interfaces,
and which setting they have. Setting 0 reserves nothing; a camera that streams has setting 1, the largest."""

from __future__ import annotations

import struct
from collections.abc import Iterable
from pathlib import Path

from simlib.topology import HIGH_SPEED, SUPERSPEED

VIDEO, STREAMING = 0x0E, 2
ISOCHRONOUS = 5
SETTING = "bAlternateSetting"


def add_files(device: Path, streaming: Iterable[int], speed: int) -> None:
    """Adds the files to the device's folder, in which those of its interfaces are."""
    numbers = list(streaming)
    (device / "speed").write_text(f"{speed}\n", encoding="ascii")
    (device / "descriptors").write_bytes(_descriptors(numbers, speed))
    for number in numbers:
        interface = device / f"{device.name}:1.{number}"
        (interface / "bInterfaceNumber").write_text(f"{number:02x}\n", encoding="ascii")
        (interface / SETTING).write_text(" 0\n", encoding="ascii")


def _descriptors(interfaces: list[int], speed: int) -> bytes:
    settings = b"".join(_interface(number, 0) + _interface(number, 1) + _endpoint(speed) for number in interfaces)
    return _descriptor(2, struct.pack("<HBBBBB", 9 + len(settings), len(interfaces), 1, 0, 0x80, 250)) + settings


def _interface(number: int, setting: int) -> bytes:
    return _descriptor(4, bytes([number, setting, setting, VIDEO, STREAMING, 0, 0]))


def _endpoint(speed: int) -> bytes:
    """Returns three packets of 1,024 bytes in each eighth of a millisecond, or one of 1,023 in each millisecond; a fast
    device has a burst of 16 packets."""
    packets = 0x1400 if speed == HIGH_SPEED else 1024 if speed > HIGH_SPEED else 1023
    endpoint = _descriptor(5, struct.pack("<BBHB", 0x81, ISOCHRONOUS, packets, 1))
    return endpoint + (_descriptor(0x30, struct.pack("<BBH", 15, 0, 16 * 1024)) if speed >= SUPERSPEED else b"")


def _descriptor(kind: int, content: bytes) -> bytes:
    return bytes([2 + len(content), kind]) + content
