# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The commands of usbdevctl, as its help describes them."""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator
from dataclasses import dataclass
from pathlib import Path

# A line of a list begins with two blanks. What it explains stands in this column, of the same line or of the next.
TEXT_AT = 30
GROUPS_OF_ARGUMENTS = ("Options", "Positionals")


@dataclass
class Command:
    words: list[str]
    description: str
    usage: str
    arguments: list[tuple[str, str]]
    # By the headline of the help under which they stand.
    commands: dict[str, list[Command]]
    ending: str

    @property
    def name(self) -> str:
        return " ".join(self.words)

    @property
    def below(self) -> list[Command]:
        return [one for group in self.commands.values() for one in group]


def help_of(program: Path, words: list[str]) -> str:
    return subprocess.run([program, *words, "--help"], capture_output=True, text=True, check=True).stdout


def entries(lines: list[str]) -> Iterator[tuple[str, str]]:
    """The names and texts of a list in the help."""
    name = ""
    for line in lines:
        head, text = line[:TEXT_AT], line[TEXT_AT:]
        if line.startswith("  ") and line[2] != " ":
            name, text = (head.strip(), text) if head.endswith(" ") else (line.strip(), "")
        if text:
            yield name, text.strip()


def command_of(program: Path, words: list[str]) -> Command:
    text = help_of(program, words)
    description, rest = text.split("\nUsage: ", 1)
    usage, *blocks = rest.split("\n\n")
    command = Command(words, description, usage.strip(), [], {}, blocks[-1].strip())
    for block in blocks[:-1]:
        headline, *lines = block.strip("\n").split("\n")
        headline = headline.rstrip(":")
        if headline in GROUPS_OF_ARGUMENTS:
            command.arguments += entries(lines)
        else:
            command.commands[headline] = [command_of(program, [*words, name]) for name, _ in entries(lines)]
    return command


def read_program(program: Path) -> Command:
    """The program and all its commands."""
    return command_of(program, [])
