# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How long to wait before an encoder that failed is started again."""

from __future__ import annotations

SHORTEST_SECONDS = 1
LONGEST_SECONDS = 60
# An encoder that ran this long worked: it failed for another reason than the one before.
WELL_SECONDS = 60


class Pauses:
    """The pauses, which double with each failure."""

    def __init__(self) -> None:
        self._next = SHORTEST_SECONDS

    def after(self, ran_seconds: float) -> int:
        """Returns the pause after the failure of an encoder that ran for this time."""
        if ran_seconds >= WELL_SECONDS:
            self._next = SHORTEST_SECONDS
        pause = self._next
        self._next = min(2 * pause, LONGEST_SECONDS)
        return pause
