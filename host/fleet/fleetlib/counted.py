# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the services of the host have counted, from their files (servicelib.counts). Who may write to the state of the cameras
may write these files too, so whatever does not fit is left out."""

from __future__ import annotations

import json
import os
import re
from dataclasses import dataclass, field
from fcntl import LOCK_NB, LOCK_SH, flock
from pathlib import Path
from typing import Any

from servicelib import counts

SERVICES = ("devices", "streams", "pages", "fleet")
LARGEST_FILE = 1 << 16
MOST_KINDS = 50  # of each service
WORD = re.compile(r"[a-z0-9_-]{1,32}")

Name = tuple[str, ...]


@dataclass
class Times:
    sum: float
    numbers: list[int]  # within each bound and above the one before


@dataclass
class Counted:
    is_running: bool = False
    numbers: dict[Name, int] = field(default_factory=dict)
    times: dict[Name, Times] = field(default_factory=dict)


def read() -> dict[str, Counted]:
    return {service: _read(counts.FOLDER / service) for service in SERVICES}


def _read(file: Path) -> Counted:
    try:
        text, is_running = _content(file)
        content = json.loads(text)
        numbers = [row for row in content["numbers"] if _is_name(row[:-1]) and _is_count(row[-1])]
        times = [row for row in content["times"] if _is_name(row[:-2]) and _are_times(*row[-2:])]
        return Counted(
            is_running=is_running,
            numbers={tuple(row[:-1]): row[-1] for row in numbers[:MOST_KINDS]},
            times={tuple(row[:-2]): Times(*row[-2:]) for row in times[:MOST_KINDS]},
        )
    except (OSError, ValueError, LookupError, TypeError, AttributeError, RecursionError):
        return Counted()


def _content(file: Path) -> tuple[bytes, bool]:
    """Returns also whether a service has the file locked; one that was replaced meanwhile is locked no more, because the service
    has the new one. Does not wait for a pipe in its place."""
    with open(os.open(file, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC), "rb") as opened:
        try:
            flock(opened, LOCK_SH | LOCK_NB)
            is_running = not os.path.samestat(os.fstat(opened.fileno()), os.stat(file))
        except BlockingIOError:
            is_running = True
        return opened.read(LARGEST_FILE), is_running


def _is_name(words: Any) -> bool:
    return all(isinstance(word, str) and WORD.fullmatch(word) is not None for word in words)


def _is_count(value: Any) -> bool:
    return type(value) is int and 0 <= value < 1 << 53


def _are_times(total: Any, numbers: Any) -> bool:
    return (
        type(total) in (int, float)
        and 0 <= total < 1e12
        and isinstance(numbers, list)
        and len(numbers) == len(counts.BOUNDS) + 1
        and all(map(_is_count, numbers))
    )
