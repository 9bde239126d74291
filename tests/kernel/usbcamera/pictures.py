# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Pictures that prove themselves: a number, the camera's tag and the complement of both, as a field of light and dark cells."""

from __future__ import annotations

from functools import lru_cache

GRID = 8
DARK, LIGHT = 28, 228
NUMBER_BITS = 24


def cell_size(width: int, height: int) -> int:
    """Cells are as large as fits, in whole blocks of the compression, so that they survive it."""
    size = min(width, height) // GRID // 8 * 8
    if size == 0:
        raise ValueError(f"a picture of {width}x{height} is too small")
    return size


def cells(number: int, tag: int) -> list[int]:
    """Returns eight rows of eight bits: number and tag, then their complement."""
    word = (number % (1 << NUMBER_BITS)) << 8 | tag
    value = word << 32 | word ^ 0xFFFFFFFF
    return [value >> 8 * (GRID - 1 - row) & 255 for row in range(GRID)]


def recognise(luma: bytes, width: int, height: int, step: int = 1) -> tuple[int, int] | None:
    """Returns number and tag of a decoded picture, or nothing if it is damaged. Brightness values are step bytes apart."""
    size = cell_size(width, height)
    value = 0
    for row in range(GRID):
        for column in range(GRID):
            x, y = column * size + size // 2, row * size + size // 2
            value = value << 1 | (luma[(y * width + x) * step] > 128)
    word = value >> 32
    return (word >> 8, word & 255) if word ^ 0xFFFFFFFF == value & 0xFFFFFFFF else None


def yuyv(number: int, tag: int, width: int, height: int) -> bytes:
    size = cell_size(width, height)
    field = b"".join(_yuyv_row(bits, size, width) * size for bits in cells(number, tag))
    return field + _yuyv_row(0, size, width) * (height - GRID * size)


def grey(number: int, tag: int, width: int, height: int) -> bytes:
    return yuyv(number, tag, width, height)[::2]


def _levels(bits: int) -> list[int]:
    return [LIGHT if bits >> (GRID - 1 - column) & 1 else DARK for column in range(GRID)]


@lru_cache(maxsize=512)
def _yuyv_row(bits: int, size: int, width: int) -> bytes:
    cells_of_row = b"".join(bytes([level, 128]) * size for level in _levels(bits))
    return cells_of_row + bytes([DARK, 128]) * (width - GRID * size)
