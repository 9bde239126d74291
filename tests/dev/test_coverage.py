# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What ./dev coverage demands and prints, and what ./dev mutate runs."""

from __future__ import annotations

import pytest
from conftest import Machine

SUMS = "lines: 100.0% (9 out of 9)\nfunctions: 100.0% (3 out of 3)\nbranches: 99.5% (199 out of 200)\n"
TABLE = """\
------------------------------------------------------------------------------
                           GCC Code Coverage Report
File                                       Lines    Exec  Cover   Missing
src/core/text.cpp                             60      60   100%
src/core/text.h                                0       0    --%
src/web/login.cpp                             12      11    91%   17
TOTAL                                         72      71    98%
"""


def test_files_that_are_covered_in_part_are_printed_and_then_the_sums(machine: Machine) -> None:
    machine.answers("gcovr", ("*--branches*", TABLE + SUMS, 0), ("*", "", 0))
    outcome = machine.dev("coverage")
    assert outcome.status == 0
    assert outcome.output.splitlines()[-4:] == [TABLE.splitlines()[5], *SUMS.splitlines()]


def test_every_line_and_99_of_100_branches_are_demanded(machine: Machine) -> None:
    machine.answers("gcovr", ("*", TABLE + SUMS, 0))
    machine.dev("coverage")
    lines, branches = machine.called("gcovr")
    assert "--fail-under-line 100 " in lines and "--fail-under-branch 99 " in branches


@pytest.mark.parametrize("arguments", ["*--fail-under-line*", "*--fail-under-branch*"])
def test_it_fails_below_that(machine: Machine, arguments: str) -> None:
    machine.answers("gcovr", (arguments, TABLE + SUMS, 2), ("*", TABLE + SUMS, 0))
    assert machine.dev("coverage").status == 1


def test_it_fails_if_a_function_is_never_called(machine: Machine) -> None:
    machine.answers("gcovr", ("*", TABLE + SUMS.replace("functions: 100.0%", "functions: 99.9%"), 0))
    assert machine.dev("coverage").status == 1


def test_it_fails_with_the_output_of_a_test_that_fails(machine: Machine) -> None:
    program = machine.tree / "build/release/tests/contract/core/contract_core"
    program.parent.mkdir(parents=True)
    program.write_text("#!/bin/sh\necho expected 1, found 2\nexit 1\n")
    program.chmod(0o755)
    outcome = machine.dev("coverage")
    assert outcome.status == 1 and "expected 1, found 2" in outcome.output
    assert machine.called("gcovr") == []


def test_mistakes_are_made_after_the_tests_are_built(machine: Machine) -> None:
    tool = machine.tree / "tools/mutation/mutate"
    tool.parent.mkdir()
    tool.write_text('#!/bin/sh\necho "made mistakes in $*"\n')
    tool.chmod(0o755)
    outcome = machine.dev("mutate", "src/core/text.cpp")
    assert outcome.output.endswith("made mistakes in build/release src/core/text.cpp\n")
    assert machine.called("ninja") == ["-C build/release tests/contract/all tests/unit/all tests/host/all torture_host_calls_libraries"]
