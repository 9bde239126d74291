# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Which tests ./dev runs, and how it adds up their results."""

from __future__ import annotations

import os
import re
import signal
import subprocess
import time
from pathlib import Path

from conftest import Machine

PASSED = "100% tests passed, 0 tests failed out of 7\n"
FAILED = """\
 2/7 Test #3: Three ...........***Failed    0.07 sec
expected 1, found 2
71% tests passed, 2 tests failed out of 7
"""

# What ctest keeps of programs that say how many cases they ran.
RESULTS = """\
<testcase name="of GoogleTest" time="1" status="run"><system-out>[==========] 42 tests from 3 test suites ran. (8 ms total)
ERROR[  PASSED  ] 42 tests.
</system-out></testcase>
<testcase name="of pytest" time="1" status="run">
<system-out>.....                                                                [100%]
5 passed, 20 deselected in 96.51s (0:01:36)
</system-out></testcase>
<testcase name="of GoogleTest that fails" time="1" status="fail">
[  PASSED  ] 3 tests.
[  FAILED  ] 2 tests, listed below:
[  FAILED  ] Suite.Case
</system-out></testcase>
<testcase name="of pytest that fails" time="1" status="fail">
<system-out>1 failed, 4 passed, 2 errors in 3.20s
</system-out></testcase>
<testcase name="that ends early" time="1" status="fail">
</testcase>
<testcase name="another" time="1" status="run">
</testcase>
<testcase name="of GoogleTest that leaks" time="1" status="fail">
<system-out>[  PASSED  ] 2 tests.
</system-out></testcase>
"""


def last_line(output: str) -> str:
    return output.splitlines()[-1]


def test_the_last_line_adds_up_the_plain_build_and_both_sanitizer_builds(machine: Machine) -> None:
    outcome = machine.dev("test")
    assert outcome.status == 0 and last_line(outcome.output) == "21 passed, 0 failed"
    assert {call.split()[1] for call in machine.called("ctest")} == {"build/release", "build/asan", "build/tsan"}


def test_the_sanitizers_do_not_wait_for_the_plain_build_s_tests(machine: Machine) -> None:
    machine.tests_end_with(PASSED, first=(
        "case $* in *build/release*) until [ -e build/sanitizers.sums ]; do sleep 0.1; done ;; esac"))
    assert last_line(machine.dev("test").output) == "21 passed, 0 failed"


def test_temporary_files_are_in_memory_during_the_tests_if_there_is_enough(machine: Machine) -> None:
    for free, folder in (2048, r"/dev/shm/usbdev-tests\.\w+"), (2047, "unset"):
        machine.answers("df", ("*/dev/shm", f"Avail\n  {free}\n", 0))
        machine.tests_end_with(PASSED, first='echo "${TMPDIR-unset}" >>folders')
        assert machine.dev("test").status == 0
        seen = set((machine.tree / "folders").read_text().splitlines())
        assert len(seen) == 1 and all(re.fullmatch(folder, path) and not Path(path).exists() for path in seen)
        (machine.tree / "folders").unlink()


def test_an_interrupt_ends_the_sanitizers_too_and_leaves_no_files_in_memory(machine: Machine) -> None:
    machine.answers("df", ("*", "Avail\n  2048\n", 0))
    machine.script("ctest", 'echo "$TMPDIR" >"$2.new"; mv "$2.new" "$2.begun"; exec sleep 100')
    # Whoever starts the tests in the background of a script ignores interrupts, and with it all that it starts.
    process = subprocess.Popen(["env", "--default-signal=INT", machine.tree / "dev", "test"],
                               env={"PATH": str(machine.programs)}, stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True)
    while not all((machine.tree / f"build/{preset}.begun").exists() for preset in ("release", "asan")):
        time.sleep(0.1)
    os.killpg(process.pid, signal.SIGINT)
    process.communicate(timeout=30)  # every process of it has closed the output
    assert process.returncode != 0
    assert not Path((machine.tree / "build/release.begun").read_text().strip()).exists()


def test_sanitizers_that_end_without_their_sums_are_a_failure(machine: Machine) -> None:
    (machine.tree / "build/sanitizers.sums").parent.mkdir()
    (machine.tree / "build/sanitizers.sums").write_text("14 0\n")
    machine.tests_end_with(PASSED, first=(
        """case $* in *build/asan*) kill "$(awk '{ print $4 }' "/proc/$PPID/stat")"; exit ;; esac"""))
    assert machine.dev("test").status != 0


def test_failed_tests_are_counted_and_shown(machine: Machine) -> None:
    machine.tests_end_with(FAILED, status=8)
    outcome = machine.dev("test")
    assert outcome.status == 1 and last_line(outcome.output) == "15 passed, 6 failed"
    assert outcome.output.count("expected 1, found 2") == 3


def test_a_program_counts_as_the_cases_that_it_ran(machine: Machine) -> None:
    (machine.tree / "ran.xml").write_text(RESULTS)
    machine.tests_end_with("43% tests passed, 4 tests failed out of 7\n", status=8, first="mkdir -p build/release; cat ran.xml >build/release/results.xml")
    assert last_line(machine.dev("test", "Name").output) == "57 passed, 7 failed"


def test_results_of_an_earlier_run_are_not_counted(machine: Machine) -> None:
    (machine.tree / "build/release").mkdir(parents=True)
    (machine.tree / "build/release/results.xml").write_text(RESULTS)
    machine.tests_end_with(PASSED)
    assert last_line(machine.dev("test", "Name").output) == "7 passed, 0 failed"


def test_a_test_program_that_fails_without_a_failed_test_counts_as_one(machine: Machine) -> None:
    machine.tests_end_with(PASSED, status=8)
    assert last_line(machine.dev("test").output) == "18 passed, 3 failed"


def test_a_sanitizer_build_that_fails_is_shown_and_counts_as_a_failure(machine: Machine) -> None:
    machine.answers("ninja", ("*asan*", "file.cpp:3:5: error: no such thing\n", 1), ("*", "", 0))
    outcome = machine.dev("test")
    assert outcome.status == 1 and last_line(outcome.output) == "7 passed, 1 failed"
    assert "error: no such thing" in outcome.output


def test_a_log_gets_a_line_for_every_tenth_of_the_tests(machine: Machine) -> None:
    step = "      Start {0}: Name\n{0:3}/300 Test #{0}: Name ...   Passed    0.1 sec\n"
    steps = "".join(step.format(number) for number in range(1, 301))
    machine.tests_end_with(steps + PASSED)
    output = machine.dev("test", "Name").output
    assert [line for line in output.splitlines() if line.startswith("tests, release: ")] == [
        f"tests, release: {count} of 300" for count in range(30, 301, 30)]
    assert "Start" not in output and "Passed" not in output


def test_on_a_terminal_the_last_line_is_the_same(machine: Machine) -> None:
    assert last_line(machine.dev_on_terminal("test").output) == "21 passed, 0 failed"


def test_a_name_runs_the_tests_that_match_in_the_plain_build(machine: Machine) -> None:
    outcome = machine.dev("test", "AWaitingChannel")
    assert outcome.status == 0 and last_line(outcome.output) == "7 passed, 0 failed"
    calls = machine.called("ctest")
    assert all(call.endswith("--tests-regex AWaitingChannel") and "build/release" in call for call in calls)
    assert machine.called("ninja") == ["-C build/release"]


def test_a_quick_run_leaves_out_whole_hosts_torture_and_the_sanitizers(machine: Machine) -> None:
    outcome = machine.dev("test", "--quick")
    assert outcome.status == 0 and last_line(outcome.output) == "7 passed, 0 failed"
    (call,) = machine.called("ctest")
    assert call.endswith("--label-exclude system|torture|kernel|pages|^case$") and "build/release" in call
    assert machine.called("ninja") == ["-C build/release"]


def test_the_guest_runs_only_when_it_is_asked_for(machine: Machine) -> None:
    outcome = machine.dev("test", "--kernel")
    assert outcome.status == 0 and last_line(outcome.output) == "7 passed, 0 failed"
    (call,) = machine.called("ctest")
    assert "--label-regex ^kernel$" in call and "build/release" in call
    assert machine.dev("test").status == 0
    (call,) = (call for call in machine.called("ctest")[1:] if "build/release" in call)
    assert "--label-exclude ^(packages|kernel|kernel_short|pages|case)$" in call


def test_what_runs_as_part_of_another_test_does_not_run_twice(machine: Machine) -> None:
    assert machine.dev("test").status == 0
    for preset in ("release", "asan"):
        (call,) = (call for call in machine.called("ctest") if f"build/{preset} " in call)
        assert re.search(r"--label-exclude \^\S*\bcase\b\S*\$", call), preset


def test_the_pages_are_looked_at_when_that_is_asked_for(machine: Machine) -> None:
    assert machine.dev("test", "--pages").status == 0
    (call,) = machine.called("ctest")
    assert "--label-regex ^pages$" in call and "build/release" in call


def test_by_name_the_guest_gets_its_packages_too(machine: Machine) -> None:
    machine.lacks("mmdebstrap")
    assert "missing packages: mmdebstrap" in machine.dev("test", "kernel.short").output


def test_a_name_that_no_test_matches_gets_a_message(machine: Machine) -> None:
    machine.tests_end_with(PASSED, names="Total Tests: 0\n")
    outcome = machine.dev("test", "Nothing")
    assert outcome.status == 1
    assert "dev: no test matches 'Nothing'" in outcome.output


def test_two_names_are_refused(machine: Machine) -> None:
    outcome = machine.dev("test", "One", "Two")
    assert outcome.status == 2 and machine.called("ctest") == []


def test_torture_prints_the_figures_of_the_tests_with_that_label(machine: Machine) -> None:
    passing = (machine.programs / "ctest").read_text().partition("\n")[2].partition("\n")[2]
    machine.script("ctest", f'echo "disks: 12 ways to fail" >>"$USBDEV_TORTURE"\n{passing}')
    outcome = machine.dev("torture", "Disks")
    assert outcome.status == 0 and outcome.output.endswith("disks: 12 ways to fail\n7 passed, 0 failed\n")
    assert machine.called("ctest")[0].endswith("--label-regex torture --tests-regex Disks")
