# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a camera's listing offers, read independently of the library."""

from __future__ import annotations

import re
from ctypes import c_float
from dataclasses import dataclass, field

CODECS = {"MJPG": 1, "YUYV": 0}


@dataclass
class ListedSize:
    codec: int
    width: int
    height: int
    rates: list[float] = field(default_factory=list)

    def chosen(self, requested: float) -> float:
        """The first rate that is not above the requested one, or else the last."""
        return next((rate for rate in self.rates if rate <= requested), self.rates[-1])


def single(rate: float) -> float:
    """The rate in single precision, as every record carries it."""
    return c_float(rate).value


def offered_sizes(listing: str) -> list[ListedSize]:
    """The sizes of the formats that can be streamed. A rate that comes twice for a size ends the reading."""
    sizes: list[ListedSize] = []
    codec = None
    for line in listing.splitlines():
        if pixel_format := re.search(r"Pixel Format: '(.{4})'", line):
            codec = CODECS.get(pixel_format[1])
        elif codec is None:
            continue
        elif size := re.search(r"Size: Discrete (\d+)x(\d+)", line):
            sizes.append(ListedSize(codec, int(size[1]), int(size[2])))
        elif rate := re.search(r"\(([\d.]+) fps\)", line):
            if single(float(rate[1])) in sizes[-1].rates:
                break
            sizes[-1].rates.append(single(float(rate[1])))
    return sizes
