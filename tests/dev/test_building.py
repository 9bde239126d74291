# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What ./dev prints when it builds."""

from __future__ import annotations

import pytest
from conftest import Machine


def ninja_steps(total: int) -> str:
    return "".join(f"[{step}/{total}] Building CXX object some/file{step}.cpp.o\n" for step in range(1, total + 1))


@pytest.mark.parametrize("total", [10, 11, 25, 286])
def test_a_log_gets_ten_lines_of_a_build(machine: Machine, total: int) -> None:
    machine.answers("ninja", ("*", "ninja: Entering directory `build/release'\n" + ninja_steps(total), 0))
    output = machine.dev("build").output.splitlines()
    assert output[:2] == ["== configuring, release", "== building, release"]
    assert output[-1] == f"building, release: {total} of {total}"
    assert len(output) == 12


def test_a_terminal_shows_all_lines_of_ninja(machine: Machine) -> None:
    machine.answers("ninja", ("*", ninja_steps(20), 0))
    output = machine.dev_on_terminal("build").output
    assert all(f"file{step}.cpp.o" in output for step in range(1, 21))


def test_all_messages_of_the_compiler_are_shown(machine: Machine) -> None:
    error = "FAILED: some/file.cpp.o\nfile.cpp:3:5: error: no such thing\n    3 | [1/2]\nninja: build stopped: subcommand failed.\n"
    machine.answers("ninja", ("*", ninja_steps(3) + error, 1))
    outcome = machine.dev("build")
    assert outcome.output.endswith(error)
    assert outcome.status == 1


def test_a_folder_is_configured_once(machine: Machine) -> None:
    machine.dev("build")
    machine.dev("build")
    assert machine.called("cmake") == ["--preset release"]
    assert len(machine.called("ninja")) == 2


@pytest.mark.parametrize(
    ("words", "called"),
    [("", "-C build/release"), ("asan", "-C build/asan"), ("debug usbdevctl", "-C build/debug usbdevctl")],
)
def test_preset_and_targets_can_be_named(machine: Machine, words: str, called: str) -> None:
    machine.dev("build", *words.split())
    assert machine.called("ninja") == [called]


def test_the_manual_is_a_target_of_the_release_build(machine: Machine) -> None:
    outcome = machine.dev("manual")
    assert machine.called("ninja") == ["-C build/release manual"]
    assert outcome.output.endswith("below build/release/manual/man/\n")


def test_ccache_is_used_if_it_is_installed(machine: Machine) -> None:
    machine.script("cmake", 'echo "launchers: $CMAKE_C_COMPILER_LAUNCHER $CMAKE_CXX_COMPILER_LAUNCHER" >&2')
    machine.answers("ccache")
    assert "launchers: ccache ccache\n" in machine.dev("build").output


def test_an_unknown_command_is_refused_with_the_help(machine: Machine) -> None:
    outcome = machine.dev("biuld")
    assert outcome.status == 2
    assert outcome.output.startswith("dev: no command 'biuld'\nusage: ./dev ")
