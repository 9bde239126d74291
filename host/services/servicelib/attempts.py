# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Limits wrong attempts to a few per minute, counted for each address and what it tries to open."""

from __future__ import annotations

import math
import time
from collections import deque
from collections.abc import Callable

ALLOWED = 5
SECONDS = 60
# Counting does not stop a visitor who has more addresses than that.
MOST_VISITORS = 1000

Visitor = tuple[str, str]  # address and, for example, share id


class Attempts:
    def __init__(self, clock: Callable[[], float] = time.monotonic) -> None:
        self._clock = clock
        self._wrong: dict[Visitor, deque[float]] = {}  # the visitor with the latest wrong attempt is the last

    def pause(self, visitor: Visitor) -> int:
        """Returns the seconds until the visitor may try again."""
        times = self._wrong.get(visitor, deque[float]())
        if len(times) < ALLOWED:
            return 0
        return max(0, math.ceil(times[0] + SECONDS - self._clock()))

    def add_wrong(self, visitor: Visitor) -> None:
        times = self._wrong.pop(visitor, deque(maxlen=ALLOWED))
        times.append(self._clock())
        if len(self._wrong) >= MOST_VISITORS:
            del self._wrong[next(iter(self._wrong))]
        self._wrong[visitor] = times
