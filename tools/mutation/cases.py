# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The test cases: which mutants each would notice, and which one kills a mutant."""

from __future__ import annotations

import json
import subprocess
import time
from collections import defaultdict
from dataclasses import dataclass, field
from pathlib import Path

from programs import run

SLOW = 0.2  # seconds
LONGEST = 600  # seconds that a case may take without a mutant
ROOMS = ("contract_", "unit_", "host_", "torture_host_calls_")  # how the names of the programs begin


@dataclass
class Case:
    program: str
    name: str
    seconds: float = 0
    noticed: set[int] = field(default_factory=set)


@dataclass
class Judge:
    release: Path
    mutated: Path  # the build folder of the mutated tree
    patience: float = 2  # how many seconds of a processor more than usual, and times as many, a mutant may need

    def cases(self, whole_suites: bool) -> list[Case]:
        """Finds out what there is to run. A suite as one case is recorded sooner, but takes longer for each mutant."""
        listed = subprocess.run(["ctest", "--test-dir", self.release, "--show-only=json-v1"], check=True, capture_output=True).stdout
        commands = [test["command"] for test in json.loads(listed)["tests"] if "command" in test]
        found = [
            (self.program(command[0]), command[1].removeprefix("--gtest_filter="))
            for command in commands
            if Path(command[0]).name.startswith(ROOMS) and command[1].startswith("--gtest_filter=")
        ]
        if whole_suites:
            found = list(dict.fromkeys((program, name.partition(".")[0] + ".*") for program, name in found))
        return [Case(program, name) for program, name in found]

    def program(self, built: str) -> str:
        """Unit tests contain the library, so they are built with its mutants; the others load it."""
        path = Path(built)
        return str(self.mutated / path.relative_to(self.release) if path.name.startswith("unit_") else path)

    def record(self, case: Case, mutants: int) -> bool:
        """Runs a case without a mutant; returns whether it passes."""
        noticed = self.mutated.parent / "noticed" / str(id(case))
        noticed.parent.mkdir(exist_ok=True)
        noticed.write_bytes(bytes(mutants + 1))
        start = time.monotonic()
        passed = run([case.program, f"--gtest_filter={case.name}"], LONGEST, self.mutated, noticed=noticed)
        case.seconds = time.monotonic() - start
        case.noticed = {number for number, byte in enumerate(noticed.read_bytes()) if byte}
        noticed.unlink()
        return passed is True

    def judge(self, mutant: int, noticing: list[Case]) -> str:
        """Runs the cases that notice the mutant, a program's quick ones together, until one of them fails."""
        groups: defaultdict[tuple[str, bool], list[Case]] = defaultdict(list)
        for case in noticing:
            groups[case.program, case.seconds > SLOW].append(case)
        for (program, _), cases in sorted(groups.items(), key=lambda item: sum(case.seconds for case in item[1])):
            names = ":".join(case.name for case in cases)
            usual = sum(case.seconds for case in cases)
            passed = run([program, "--gtest_fail_fast", f"--gtest_filter={names}"], self.patience * (1 + usual), self.mutated, mutant=mutant)
            if not passed:
                return "hangs" if passed is None else "killed"
        return "survived" if noticing else "unnoticed"
