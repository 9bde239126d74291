# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A baseline JPEG, 4:2:2 as cameras make it, in which every block of 8x8 is flat: only its brightness is stored."""

from __future__ import annotations

import struct
import subprocess
from functools import lru_cache

from usbcamera.pictures import DARK, GRID, LIGHT, cell_size, cells

# One code of four bits for each number of bits of a difference, and one code of one bit for "no more values".
SIZES = bytes(range(12))
DC_TABLE = bytes([0, 0, 0, 12, *[0] * 12]) + SIZES
AC_TABLE = bytes([1, *[0] * 15, 0])
# Brightness is stored in steps of one: the first coefficient is eight times the mean.
QUANTISATION = bytes([8] * 64)
COMPONENTS = bytes([1, 0x21, 0, 2, 0x11, 0, 3, 0x11, 0])


def jpeg(number: int, tag: int, width: int, height: int) -> bytes:
    size = cell_size(width, height) // 8
    rows = [bits for bits in cells(number, tag) for _ in range(size)]
    rows += [0] * (-(-height // 8) - len(rows))
    scan = b"".join(_row(bits, size, -(-width // 16)) + bytes([0xFF, 0xD0 + index % 8]) for index, bits in enumerate(rows))
    return _headers(width, height) + scan[:-2] + b"\xff\xd9"


def _segment(marker: int, body: bytes) -> bytes:
    return struct.pack(">BBH", 0xFF, marker, len(body) + 2) + body


@lru_cache
def _headers(width: int, height: int) -> bytes:
    return b"".join([
        b"\xff\xd8",
        _segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0"),
        _segment(0xDB, b"\0" + QUANTISATION),
        _segment(0xC0, struct.pack(">BHHB", 8, height, width, 3) + COMPONENTS),
        _segment(0xC4, b"\0" + DC_TABLE),
        _segment(0xC4, b"\x10" + AC_TABLE),
        _segment(0xDD, struct.pack(">H", -(-width // 16))),  # a restart after every row: rows do not depend on others
        _segment(0xDA, bytes([3, 1, 0, 2, 0, 3, 0, 0, 63, 0])),
    ])  # fmt: skip


def _flat_block(difference: int) -> str:
    size = abs(difference).bit_length()
    value = difference if difference >= 0 else difference + (1 << size) - 1
    return f"{size:04b}" + (f"{value:0{size}b}" if size else "") + "0"


@lru_cache(maxsize=512)
def _row(bits: int, size: int, units: int) -> bytes:
    """Returns a row of blocks: units of two blocks of brightness and one of each colour, which is always grey."""
    levels = [LIGHT if bits >> (GRID - 1 - block // size) & 1 else DARK for block in range(GRID * size)]
    levels += [DARK] * (2 * units - len(levels))
    text, before = "", 128
    for index, level in enumerate(levels[: 2 * units]):
        text += _flat_block(level - before) + (_flat_block(0) * 2 if index % 2 else "")
        before = level
    text += "1" * (-len(text) % 8)
    return int(text, 2).to_bytes(len(text) // 8, "big").replace(b"\xff", b"\xff\0")


def decoded(pictures: bytes) -> bytes:
    """Returns the brightness of every point of the pictures."""
    command = ["ffmpeg", "-v", "error", "-f", "mjpeg", "-i", "-", "-f", "rawvideo", "-pix_fmt", "gray", "-"]
    done = subprocess.run(command, input=pictures, capture_output=True, check=True)
    assert done.stderr == b"", done.stderr
    return done.stdout
