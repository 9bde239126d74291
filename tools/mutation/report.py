# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What came of the mutants: a table for each room, the survivors, and those that were reviewed."""

from __future__ import annotations

from collections import Counter
from pathlib import Path
from typing import NamedTuple

from source_file import Mutant

LEAST = 95  # percent that the tests have to kill
LEAST_OF_SAMPLE = 90  # of a hundred at random, which vary by two or three
REVIEWED = Path(__file__).with_name("reviewed.txt")
KILLED = ("killed", "hangs")


class Verdict(NamedTuple):
    mutant: Mutant
    word: str  # killed, hangs, survived or unnoticed


def reviewed_names() -> set[str]:
    """Lines that begin with # state the reason of those that follow."""
    lines = REVIEWED.read_text().splitlines()
    return {line for line in lines if line and not line.startswith("#")}


def report(verdicts: list[Verdict], skipped: int, survivors: Path, least: int) -> int:
    """Prints the figures and lists the survivors; returns the status to exit with."""
    reviewed = reviewed_names()
    alive = [verdict.mutant for verdict in verdicts if verdict.word not in KILLED]
    survivors.write_text("".join(
        f"{'reviewed' if mutant.name in reviewed else 'survived'}\t{mutant.line}\t{mutant.name}\n" for mutant in alive))
    rooms = Counter((str(Path(verdict.mutant.file).parent), verdict.word) for verdict in verdicts)
    words = ["killed", "hangs", "survived", "unnoticed"]
    print(f"{'':24}" + "".join(f"{word:>10}" for word in words))
    for room in sorted({room for room, _ in rooms}):
        print(f"{room:24}" + "".join(f"{rooms[room, word]:10}" for word in words))
    killed = len(verdicts) - len(alive)
    left = sum(mutant.name in reviewed for mutant in alive)
    percent = 100 * killed / max(len(verdicts), 1)
    print(f"{len(verdicts)} mutants, {killed} killed ({percent:.1f} %), {len(alive)} not, of which {left} were reviewed; "
          f"{skipped} places are computed by the compiler or made by macros; survivors: {survivors}")
    return 0 if percent >= least else 1
