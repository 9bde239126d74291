# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The public headers as doxygen reads them: functions with their texts."""

from __future__ import annotations

import re
import subprocess
import xml.etree.ElementTree as ElementTree
from collections.abc import Iterator
from dataclasses import dataclass, field
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent.parent.parent
DOXYFILE = REPOSITORY / "docs/manual/Doxyfile"


class Undocumented(Exception):
    """What doxygen complains about, line by line."""


def run_doxygen(output: Path, *settings: str) -> None:
    """Runs doxygen in the top folder; a warning is an error."""
    config = "\n".join([DOXYFILE.read_text(), f'OUTPUT_DIRECTORY = "{output}"', *settings])
    output.mkdir(parents=True, exist_ok=True)
    done = subprocess.run(["doxygen", "-"], input=config, cwd=REPOSITORY, text=True, capture_output=True)
    if done.returncode or done.stderr:
        raise Undocumented(done.stderr)


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
    paragraphs: list[str] = field(default_factory=list)
    parameters: list[Parameter] = field(default_factory=list)
    returns: str = ""

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


def spaced(kind: str, name: str) -> str:
    return f"{kind}{name}" if kind.endswith("*") else f"{kind} {name}"


def plain(element: ElementTree.Element | None) -> str:
    return " ".join("".join(element.itertext()).split()) if element is not None else ""


def read_parameters(details: ElementTree.Element) -> list[Parameter]:
    return [
        Parameter(
            names=[plain(name) for name in item.iter("parametername")],
            direction=item.find(".//parametername").get("direction", ""),
            text=plain(item.find("parameterdescription")),
        )
        for item in details.iter("parameteritem")
    ]


def read_paragraphs(details: ElementTree.Element) -> Iterator[str]:
    """The description alone, without what has a list of its own."""
    for paragraph in details.findall("para"):
        for listed in [*paragraph.findall("parameterlist"), *paragraph.findall("simplesect")]:
            paragraph.remove(listed)
        if text := plain(paragraph):
            yield text


def read_function(member: ElementTree.Element, header: str, group: str) -> Function:
    details = member.find("detaileddescription")
    arguments = [(plain(one.find("type")), plain(one.find("declname"))) for one in member.findall("param")]
    return Function(
        name=plain(member.find("name")),
        header=header,
        group=group,
        result_type=plain(member.find("type")),
        arguments=[argument for argument in arguments if argument[1]],
        brief=plain(member.find("briefdescription")),
        parameters=read_parameters(details),
        returns=plain(details.find(".//simplesect[@kind='return']")),
        paragraphs=list(read_paragraphs(details)),
    )


def read_functions(output: Path) -> list[Function]:
    """All functions, in the order of the headers, from what run_doxygen has written."""
    functions = []
    for path in sorted((output / "xml").glob("*_8h.xml")):
        header = ElementTree.parse(path).getroot().find("compounddef")
        for section in header.findall("sectiondef"):
            functions += [
                read_function(member, plain(header.find("compoundname")), plain(section.find("header")))
                for member in section.findall("memberdef[@kind='function']")
            ]
    return functions


def read_data(output: Path) -> set[str]:
    """The names of the exported variables."""
    return {
        plain(member.find("name"))
        for path in (output / "xml").glob("*_8h.xml")
        for member in ElementTree.parse(path).getroot().iterfind(".//memberdef[@kind='variable']")
    }
