# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A row of a table of neighbours: what one of them does, and what has to come of it."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any


@dataclass(frozen=True)
class Outcome:
    """What comes of a call of the library: in words, and what is compared."""

    words: str
    result: int | None = None  # None: the call ends the program
    text: str | None = None  # None: not compared
    waits: bool = False  # until the neighbour goes
    locks: bool = False  # and the others wait too

    def later(self) -> Outcome:
        """The same, after the neighbour has gone."""
        return Outcome(f"the call waits while others go on; then: {self.words}", self.result, self.text, waits=True)

    def later_for_all(self) -> Outcome:
        """The same for a call that by its description holds the lock while commands run."""
        words = f"the call waits and holds the lock, as described; then: {self.words}"
        return Outcome(words, self.result, self.text, waits=True, locks=True)


@dataclass(frozen=True)
class Row:
    """The memory is what the process that meets the neighbour may grow by."""

    name: str
    meets: str
    neighbour: Any
    outcome: Outcome
    seconds: int = 10
    megabytes: int = 4


def named(rows: list[Row]) -> dict[str, Any]:
    """The rows as the parameters of a test, each case named after its row."""
    return {"argnames": "row", "argvalues": rows, "ids": [row.name for row in rows]}
