# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A tree with `dev` in it, on a machine whose programs for installing, building and testing are fakes."""

from __future__ import annotations

import os
import pty
import shlex
import shutil
import subprocess
from pathlib import Path
from typing import NamedTuple

import pytest

REPOSITORY = Path(__file__).resolve().parent.parent.parent
TOOLS = "sh awk cat chmod dirname env find grep head mkdir mktemp mv nproc rm sed sleep sort stat tail tee tr uname"

APT_PLAN = """\
0 upgraded, 212 newly installed, 0 to remove and 3 not upgraded.
Need to get 332 MB of archives.
After this operation, 1203 MB of additional disk space will be used.
Do you want to continue? [Y/n] N
Abort.
"""


class Outcome(NamedTuple):
    status: int
    output: str


class Machine:
    """Everything is installed, every build works and every test passes, unless a test changes that."""

    def __init__(self, folder: Path) -> None:
        self.tree, self.programs, self.calls = folder / "tree", folder / "bin", folder / "calls"
        self.tree.mkdir()
        self.programs.mkdir()
        self.calls.touch()
        shutil.copy(REPOSITORY / "dev", self.tree)
        shutil.copytree(REPOSITORY / "tools/dev", self.tree / "tools/dev")
        for name in TOOLS.split():
            (self.programs / name).symlink_to(str(shutil.which(name)))
        self.lacks()
        self.answers("id", ("*", "0\n", 0))
        self.answers("setarch", ("*", "", 1))
        self.answers("apt-get", ("*--assume-no*", APT_PLAN, 0), ("*", "", 0))
        self.answers("df", ("*", "Avail\n  123\n", 0))
        self.script("cmake", 'mkdir -p "build/$2" && : >"build/$2/build.ninja"')
        self.answers("ninja", ("*", "", 0))
        self.tests_end_with("100% tests passed, 0 tests failed out of 7\n")

    def script(self, name: str, text: str) -> None:
        program = self.programs / name
        program.write_text(f'#!/bin/sh\necho "{name} $*" >>{shlex.quote(str(self.calls))}\n{text}\n')
        program.chmod(0o755)

    def answers(self, name: str, *answers: tuple[str, str, int]) -> None:
        """Makes a program: of the first pattern that matches its arguments, it prints the text and returns the status."""
        cases = (f"{pattern.replace(' ', '?')}) printf %s {shlex.quote(text)}; exit {status} ;;" for pattern, text, status in answers)
        self.script(name, "\n".join(['case "$*" in', *cases, "esac"]))

    def lacks(self, *packages: str) -> None:
        self.script("dpkg-query", f"""
for name; do
  case " {' '.join(packages)} " in
    *" $name "*) ;;
    *) echo "$name installed" ;;
  esac
done""")

    def tests_end_with(self, text: str, status: int = 0, names: str = "  Test #1: one\n", first: str = "") -> None:
        self.script("ctest", f"""
{first}
words="$*"
case $words in *--show-only*) printf %s {shlex.quote(names)}; exit ;; esac
log=${{words#*--output-log }}
printf %s {shlex.quote(text)} | tee "${{log%% *}}"
exit {status}""")

    def dev(self, *arguments: str, **variables: str) -> Outcome:
        """Runs `./dev` without a terminal."""
        ended = subprocess.run([self.tree / "dev", *arguments], env={"PATH": str(self.programs), **variables},
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return Outcome(ended.returncode, ended.stdout)

    def dev_on_terminal(self, *arguments: str, typed: str = "") -> Outcome:
        return self.on_terminal(str(self.tree / "dev"), *arguments, typed=typed)

    def on_terminal(self, *command: str, typed: str) -> Outcome:
        ours, its = pty.openpty()
        process = subprocess.Popen(command, env={"PATH": str(self.programs)}, stdin=its, stdout=its, stderr=its)
        os.close(its)
        os.write(ours, typed.encode())
        output = b""
        try:
            while chunk := os.read(ours, 4096):
                output += chunk
        except OSError:  # this is how a terminal reports that its last writer is gone
            pass
        os.close(ours)
        return Outcome(process.wait(), output.decode().replace("\r\n", "\n"))

    def called(self, name: str) -> list[str]:
        """Returns the arguments of every call of the program."""
        calls = (line.partition(" ") for line in self.calls.read_text().splitlines())
        return [arguments for program, _, arguments in calls if program == name]


@pytest.fixture
def machine(tmp_path: Path) -> Machine:
    return Machine(tmp_path)
