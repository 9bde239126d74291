# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What docs/costs.md, which a test compares with the library, states about each function."""

from __future__ import annotations

from dataclasses import dataclass

from manuallib.reference import REPOSITORY

COSTS = REPOSITORY / "docs/costs.md"


@dataclass
class Cost:
    """The most of each that a function needs in any of its situations."""

    commands: int = 0
    passes: int = 0
    keys: int = 0

    def or_more(self, commands: int, passes: int, keys: int) -> Cost:
        return Cost(max(self.commands, commands), max(self.passes, passes), max(self.keys, keys))


def read_costs() -> dict[str, Cost]:
    costs: dict[str, Cost] = {}
    for line in COSTS.read_text().splitlines():
        if not line.startswith("| `"):
            continue
        name, _, *numbers = (cell.strip() for cell in line.strip("|").split("|"))
        answers, effects, programs, reads, keys_read, writes, keys_written, *_ = (int(cell or 0) for cell in numbers)
        name = name.strip("`")
        costs[name] = costs.get(name, Cost()).or_more(
            answers + effects + programs, reads + writes, keys_read + keys_written
        )
    return costs
