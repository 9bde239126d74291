# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The formats of a camera, read from the same listing that a simulated camera prints."""

from __future__ import annotations

import re
from dataclasses import dataclass, field

UNITS_OF_A_SECOND = 10_000_000


@dataclass
class Frame:
    """A size with its intervals in units of 100 ns."""

    width: int
    height: int
    intervals: list[int] = field(default_factory=list)


@dataclass
class Format:
    """The kernel's four characters of a pixel format, with its sizes."""

    fourcc: str
    frames: list[Frame] = field(default_factory=list)


def read_formats(listing: str) -> list[Format]:
    """Reads the older layout of v4l2-ctl --list-formats-ext."""
    formats: list[Format] = []
    for line in listing.splitlines():
        if found := re.search(r"Pixel Format: '(....)'", line):
            formats.append(Format(found[1]))
        elif found := re.search(r"Size: Discrete (\d+)x(\d+)", line):
            formats[-1].frames.append(Frame(int(found[1]), int(found[2])))
        elif found := re.search(r"Interval: Discrete (.*)s \((.*) fps\)", line):
            formats[-1].frames[-1].intervals.append(_interval(float(found[1]), float(found[2])))
    for it in formats:
        _share_out(it.frames)
    return formats


def _share_out(frames: list[Frame]) -> None:
    """The kernel lists a size that a camera describes several times with the intervals of all of them, each time."""
    for size in {(it.width, it.height) for it in frames}:
        same = [it for it in frames if (it.width, it.height) == size]
        for index, frame in enumerate(same):
            frame.intervals = frame.intervals[index :: len(same)]


def _interval(seconds: float, rate: float) -> int:
    """Of the two, which have three places each, the larger is more precise."""
    return round(UNITS_OF_A_SECOND * seconds if seconds > rate else UNITS_OF_A_SECOND / rate)
