# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs the commands of a document on a sandboxed host, one after the other, as somebody would who follows it."""

from __future__ import annotations

import os
import re
import shlex
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

from blocks import Command
from conftest import BUILD, REPOSITORY

MARK = "\x1e"
# Programs that run until they are stopped. They are stopped as soon as they have printed something.
ENDLESS = re.compile(r"^(share-page|owner-page|tail -f|usbdevctl watch$)")


# A part of a program may wait for something outside a function, as in an interactive Python.
RUN_PYTHON = """/usr/bin/python3 -B -c '
import ast, asyncio, inspect
block = eval(compile(open("block.py").read(), "block.py", "exec", ast.PyCF_ALLOW_TOP_LEVEL_AWAIT))
if inspect.iscoroutine(block):
    asyncio.run(block)
'"""


@dataclass
class Result:
    command: Command
    printed: list[str]
    status: int


@dataclass
class Host:
    """A host as a document starts it, and what is done on it."""

    options: list[str] = field(default_factory=list)
    steps: list[str | Command] = field(default_factory=list)

    def add_file(self, name: str, text: str) -> None:
        self.steps.append(f"cat >{name} <<'END_OF_FILE'\n{text}END_OF_FILE")

    def run(self, prefix: Path) -> list[Result]:
        """Runs all steps in one shell; `prefix` is where the library is installed."""
        script = "\n".join(["cd \"$(mktemp -d)\"", *map(self._shell, range(len(self.steps)))])
        installed = next(prefix.glob("lib/**/pkgconfig"))
        command = [REPOSITORY / "host/sandbox/sandbox", "run", "--build", BUILD, *self.options, "--"]
        done = subprocess.run(
            [*command, "bash", "-c", script],
            env=os.environ | {"PKG_CONFIG_PATH": str(installed)},
            stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", timeout=250,
        )
        parts = done.stdout.split(MARK)[1:]
        assert parts, done.stderr
        return [self._result(part) for part in parts]

    def _shell(self, number: int) -> str:
        step = self.steps[number]
        if isinstance(step, str):
            return f"{step}"
        return f"printf '{MARK}{number}\\n'\n{{ {stopped(step.text)}\n}} 2>&1\nprintf '\\nstatus %d' $?"

    def _result(self, part: str) -> Result:
        number, _, text = part.partition("\n")
        printed, _, status = text.rstrip().rpartition("\nstatus ")
        command = self.steps[int(number)]
        assert isinstance(command, Command)
        return Result(command, printed.rstrip("\n").splitlines(), int(status) if status.isdigit() else -1)


def stopped(command: str) -> str:
    if not ENDLESS.search(command):
        return command
    return (
        f"{command} >endless.txt 2>&1 & running=$!\n"
        "for i in $(seq 200); do [ -s endless.txt ] && break; sleep 0.1; done\n"
        "kill $running; wait $running; test -s endless.txt"
    )


def started_host(command: str) -> list[str] | None:
    """The options of a command that opens a shell on a host."""
    found = re.fullmatch(r"host/sandbox/sandbox run ?(.*?) ?-- sh", command.strip())
    return shlex.split(found[1]) if found else None


# What differs from run to run.
VARYING = [
    (re.compile(r"\b[0-9a-f]{32}\b"), "HASH"),
    (re.compile(r"\b\d{8}\b"), "SSID"),
    (re.compile(r"\b\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\b"), "TIME"),
    (re.compile(r"127\.0\.0\.1:\d{4,5}\b"), "ADDRESS"),
]


def comparable(line: str) -> str:
    for pattern, word in VARYING:
        line = pattern.sub(word, line)
    return line.rstrip()


def agrees(shown: list[str], printed: list[str]) -> bool:
    """A line of three dots in a document stands for any number of lines."""
    parts = "\n".join(map(comparable, shown)).rstrip("\n").split("\n")
    pattern = "".join(r"(?:.*\n)*" if line == "..." else re.escape(line) + r"\n" for line in parts)
    text = "".join(f"{comparable(line)}\n" for line in printed) or "\n"
    return re.fullmatch(pattern, text) is not None
