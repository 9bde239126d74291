# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What ./dev fuzz runs and prints."""

from __future__ import annotations

import shutil

import pytest
from conftest import REPOSITORY, Machine

ENDED = "#2\tINITED cov: 20 ft: 25 corp: 2/8b exec/s: 0 rss: 40Mb\n#1000000\tDONE   cov: 345 ft: 678 corp: 90/1Kb lim: 4096 exec/s: {} rss: 45Mb\n"
FOUND = "#4711\tNEW    cov: 33 ft: 40 corp: 9/1Kb lim: 80 exec/s: 900 rss: 45Mb\nTest unit written to {}/two-crash-1\n"


@pytest.fixture
def targets(machine: Machine) -> Machine:
    """Two targets, one and two, that find nothing."""
    (machine.tree / "fuzz").mkdir()
    shutil.copy(REPOSITORY / "fuzz/run", machine.tree / "fuzz")
    for name, speed in (("one", 5000), ("two", 70)):
        (machine.tree / "fuzz/corpus" / name).mkdir(parents=True)
        ends_with(machine, name, ENDED.format(speed))
    return machine


def ends_with(machine: Machine, name: str, text: str, status: int = 0) -> None:
    machine.answers(f"fuzz_{name}", ("*", text, status))
    programs = machine.tree / "build/fuzz/fuzz"
    programs.mkdir(parents=True, exist_ok=True)
    shutil.move(machine.programs / f"fuzz_{name}", programs / f"fuzz_{name}")


def test_every_target_gets_a_million_inputs_and_its_figures_are_printed(targets: Machine) -> None:
    outcome = targets.dev("fuzz")
    assert targets.called("ninja") == ["-C build/fuzz fuzzers"]
    assert all("-runs=1000000 " in call for name in ("one", "two") for call in targets.called(f"fuzz_{name}"))
    lines = outcome.output.splitlines()
    assert any(line.split()[:7] == ["one", "1,000,000", "executions", "5,000/s", "345", "edges", "no"] for line in lines)
    assert (outcome.status, lines[-1]) == (0, "2 targets, 2,000,000 executions, 0 findings")


def test_a_finding_is_printed_with_the_path_of_its_input(targets: Machine) -> None:
    ends_with(targets, "two", FOUND.format("findings"), status=77)
    outcome = targets.dev("fuzz")
    assert "findings/two-crash-1" in outcome.output
    assert (outcome.status, outcome.output.splitlines()[-1]) == (1, "2 targets, 1,004,711 executions, 1 findings")


def test_a_name_runs_the_targets_that_match(targets: Machine) -> None:
    assert targets.dev("fuzz", "tw").status == 0
    assert (len(targets.called("fuzz_one")), len(targets.called("fuzz_two"))) == (0, 1)


def test_a_name_that_no_target_matches_gets_a_message(targets: Machine) -> None:
    outcome = targets.dev("fuzz", "three")
    assert outcome.status == 2 and "no target's name contains 'three'" in outcome.output


def test_inputs_are_added_to_the_corpus_only_on_request(targets: Machine) -> None:
    targets.dev("fuzz", "one")
    assert "-merge=1" not in targets.called("fuzz_one")[0]
    assert targets.dev("fuzz", "--keep", "one").status == 0
    corpus, new = targets.tree / "fuzz/corpus/one", targets.tree / "build/fuzz/corpus/one"
    assert f"-merge=1 -use_counters=0 {corpus} {new}" in targets.called("fuzz_one")[1]
