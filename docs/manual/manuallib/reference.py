# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the public headers declare and what their comments state."""

from __future__ import annotations

import re
from dataclasses import dataclass, field
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent.parent.parent


def version() -> str:
    """The one version number of the project."""
    return re.search(r"project\(usbdevlib VERSION ([\d.]+)", (REPOSITORY / "CMakeLists.txt").read_text())[1]


def sentences(text: str) -> list[str]:
    return re.split(r'(?<=\.) (?=[A-Z"])', text) if text else []


def spaced(kind: str, name: str) -> str:
    return f"{kind}{name}" if kind.endswith("*") else f"{kind} {name}"


@dataclass
class Parameter:
    names: list[str]
    direction: str
    text: str


@dataclass
class Function:
    """One exported function. Its group is the headline of the functions that it stands with."""

    name: str
    header: str
    group: str
    result_type: str
    arguments: list[tuple[str, str]]
    brief: str
    paragraphs: list[str]
    parameters: list[Parameter]
    returns: str

    @property
    def description(self) -> str:
        return " ".join([self.brief, *self.paragraphs])

    @property
    def prototype(self) -> str:
        arguments = ", ".join(spaced(kind, name) for kind, name in self.arguments)
        return f"{spaced(self.result_type, self.name)}({arguments or 'void'});"

    @property
    def takes_lock(self) -> bool:
        """As its comment states, or else its group."""
        stated = re.search(r"(takes? the|holds the|takes? no) lock", f"{self.description} {self.group}", re.IGNORECASE)
        return bool(stated) and not stated[1].endswith("no")

    @property
    def runs_commands(self) -> bool:
        stated = re.search(r"runs? (commands|nothing)", f"{self.description} {self.group}", re.IGNORECASE)
        return bool(stated) and stated[1] == "commands"


@dataclass
class Variable:
    """An exported variable, a field of a record, or a constant with its value as the array."""

    name: str
    header: str
    kind: str
    array: str
    text: str

    @property
    def declaration(self) -> str:
        return f"{spaced(self.kind, self.name)}{self.array};"


@dataclass
class Record:
    name: str
    text: str
    fields: list[Variable]


@dataclass
class Header:
    name: str
    paragraphs: list[str]
    lists: list[list[str]]


@dataclass
class Reference:
    headers: list[Header] = field(default_factory=list)
    functions: list[Function] = field(default_factory=list)
    variables: list[Variable] = field(default_factory=list)
    constants: list[Variable] = field(default_factory=list)
    records: list[Record] = field(default_factory=list)

    @property
    def terms(self) -> list[str]:
        """What the words of the comments mean."""
        return self._lists_of_all()[0]

    @property
    def turns(self) -> list[str]:
        """The calls that may not run at the same time."""
        return self._lists_of_all()[1]

    def _lists_of_all(self) -> list[list[str]]:
        return next(header for header in self.headers if header.name == "usbdev/usbdev.h").lists
