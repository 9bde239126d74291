# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Reads the public headers with doxygen."""

from __future__ import annotations

import subprocess
import tempfile
import xml.etree.ElementTree as ElementTree
from collections.abc import Iterator
from pathlib import Path

from manuallib.reference import REPOSITORY, Function, Header, Parameter, Record, Reference, Variable

DOXYFILE = REPOSITORY / "docs/manual/Doxyfile"


class Undocumented(Exception):
    """What doxygen complains about, line by line."""


def run_doxygen(output: Path) -> None:
    """Runs doxygen in the top folder; a warning is an error."""
    config = f'{DOXYFILE.read_text()}\nOUTPUT_DIRECTORY = "{output}"\n'
    done = subprocess.run(["doxygen", "-"], input=config, cwd=REPOSITORY, text=True, capture_output=True)
    if done.returncode or done.stderr:
        raise Undocumented(done.stderr)


def plain(element: ElementTree.Element | None) -> str:
    return " ".join("".join(element.itertext()).split()) if element is not None else ""


def header_name(element: ElementTree.Element) -> str:
    return f"usbdev/{plain(element.find('compoundname'))}"


def paragraphs_of(details: ElementTree.Element) -> Iterator[str]:
    """The description alone, without what has a list of its own."""
    for paragraph in details.findall("para"):
        for listed in [child for child in paragraph if child.tag in ("parameterlist", "simplesect", "itemizedlist")]:
            paragraph.remove(listed)
        if text := plain(paragraph):
            yield text


def text_of(member: ElementTree.Element) -> str:
    return " ".join(filter(None, [plain(member.find("briefdescription")), plain(member.find("detaileddescription"))]))


def without_full_stop(text: str) -> str:
    """Doxygen adds one to some texts that are not sentences."""
    return text if ". " in text else text.removesuffix(".")


def parameters_of(details: ElementTree.Element) -> list[Parameter]:
    return [
        Parameter(
            names=[plain(name) for name in item.iter("parametername")],
            direction=item.find(".//parametername").get("direction", ""),
            text=plain(item.find("parameterdescription")),
        )
        for item in details.iter("parameteritem")
    ]


def function_of(member: ElementTree.Element, header: str, group: str) -> Function:
    details = member.find("detaileddescription")
    arguments = [(plain(one.find("type")), plain(one.find("declname"))) for one in member.findall("param")]
    return Function(
        name=plain(member.find("name")),
        header=header,
        group=group,
        result_type=plain(member.find("type")),
        arguments=[argument for argument in arguments if argument[1]],
        brief=plain(member.find("briefdescription")),
        parameters=parameters_of(details),
        returns=plain(details.find(".//simplesect[@kind='return']")),
        paragraphs=list(paragraphs_of(details)),
    )


def variable_of(member: ElementTree.Element, header: str) -> Variable:
    array = member.find("argsstring")
    return Variable(
        name=plain(member.find("name")),
        header=header,
        kind=plain(member.find("type")),
        array=plain(array if array is not None else member.find("initializer")),
        text=without_full_stop(text_of(member)),
    )


def add_header(element: ElementTree.Element, reference: Reference) -> None:
    name = header_name(element)
    details = element.find("detaileddescription")
    lists = [[plain(item) for item in one.findall("listitem")] for one in details.iter("itemizedlist")]
    brief = plain(element.find("briefdescription"))
    reference.headers.append(Header(name, [brief, *paragraphs_of(details)], lists))
    for section in element.findall("sectiondef"):
        group = plain(section.find("header"))
        for member in section.findall("memberdef"):
            match member.get("kind"):
                case "function":
                    reference.functions.append(function_of(member, name, group))
                case "variable":
                    reference.variables.append(variable_of(member, name))
                case "define":
                    reference.constants.append(variable_of(member, name))


def record_of(element: ElementTree.Element) -> Record:
    fields = [variable_of(member, "usbdev/records.h") for member in element.iter("memberdef")]
    return Record(plain(element.find("compoundname")), text_of(element), fields)


def compounds(output: Path, pattern: str) -> Iterator[ElementTree.Element]:
    for path in sorted((output / "xml").glob(pattern)):
        yield ElementTree.parse(path).getroot().find("compounddef")


def line_of(element: ElementTree.Element) -> int:
    return int(element.find("location").get("line"))


def read_reference() -> Reference:
    """All that the headers declare, in their order."""
    reference = Reference()
    with tempfile.TemporaryDirectory() as folder:
        run_doxygen(Path(folder))
        for element in compounds(Path(folder), "*_8h.xml"):
            add_header(element, reference)
        records = sorted(compounds(Path(folder), "struct*.xml"), key=line_of)
    reference.records = [record_of(element) for element in records]
    return reference
