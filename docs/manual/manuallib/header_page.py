# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pages of the site that describe the headers, in Markdown."""

from __future__ import annotations

import re
from collections.abc import Iterator

from manuallib.page_values import bullets, literal, page_of
from manuallib.reference import Function, Header, Record, Reference, Variable

EMPTY = "<!-- its name is enough -->"
USUAL_RESULT = "0, or -1 on failure"


def anchor(name: str) -> str:
    """An anchor begins with a letter."""
    return name.lstrip("_")


class Linker:
    """Makes links of the names that are followed by parentheses, or that are records or constants."""

    def __init__(self, reference: Reference) -> None:
        self._pages = {one.name: page_of(one.header) for one in [*reference.functions, *reference.variables]}
        self._records = {one.name: "records.html" for one in reference.records}

    def text(self, text: str) -> str:
        text = re.sub(r"(\w+(?:\\_\w+)*)\(\)", self._linked, literal(text))
        return re.sub(r"\\<usbdev/(\w+)\.h\\>", r"[usbdev/\1.h](\1.html)", text)

    def kind(self, kind: str) -> str:
        """A type in a declaration."""
        words = kind.split()
        linked = [f"[{word}](records.html#{anchor(word)})" if word in self._records else literal(word) for word in words]
        return " ".join(linked)

    def _linked(self, found: re.Match[str]) -> str:
        name = found[1].replace("\\", "")
        return f"[{found[1]}()]({self._pages[name]}#{name})" if name in self._pages else found[0]


def parameters(function: Function, link: Linker) -> Iterator[str]:
    kinds = dict((name, kind) for kind, name in function.arguments)
    for one in function.parameters:
        direction = {"in": "in", "out": "out", "inout": "in/out"}[one.direction]
        names = ", ".join(f"`{name}`" for name in one.names)
        records = sorted({word for name in one.names for word in re.findall(r"\w+", kinds[name])})
        of_record = next((f", {link.kind(word)}" for word in records if link.kind(word).startswith("[")), "")
        yield f"{names} ({direction}{of_record})\n:   {link.text(one.text) or EMPTY}"


def function_text(function: Function, link: Linker) -> Iterator[str]:
    yield f"### {function.name} {{#{function.name}}}"
    yield f"```c\n{function.prototype}\n```"
    first, *others = function.paragraphs or [""]
    yield link.text(f"{function.brief} {first}")
    yield from map(link.text, others)
    yield from parameters(function, link)
    if function.result_type != "void":
        yield f"**Returns** {link.text(function.returns or USUAL_RESULT).rstrip('.')}."


def variable_text(variable: Variable, link: Linker) -> Iterator[str]:
    yield f"### {variable.name} {{#{variable.name}}}"
    yield f"```c\nextern {variable.declaration}\n```"
    yield link.text(variable.text)


def record_text(record: Record) -> Iterator[str]:
    yield f"### {literal(record.name)} {{#{anchor(record.name)}}}"
    yield literal(record.text)
    rows = [f"| `{one.declaration}` | {literal(one.text)} |" for one in record.fields]
    yield "\n".join(["| Field | Meaning |", "|:--|:--|", *rows])


def constants_text(constants: list[Variable]) -> Iterator[str]:
    yield "## Constants"
    rows = [f"| `{one.name}` | {one.array} | {literal(one.text)} |" for one in constants]
    yield "\n".join(["| Constant | Value | Meaning |", "|:--|--:|:--|", *rows])


def members(header: Header, reference: Reference, link: Linker) -> Iterator[str]:
    if header.name == "usbdev/records.h":
        yield from constants_text(reference.constants)
        yield "## Records"
        for record in reference.records:
            yield from record_text(record)
    for variable in (one for one in reference.variables if one.header == header.name):
        yield from variable_text(variable, link)
    group = ""
    for function in (one for one in reference.functions if one.header == header.name):
        if function.group != group:
            group = function.group
            yield f"## {literal(group)}"
        yield from function_text(function, link)


def told(header: Header, link: Linker) -> Iterator[str]:
    """The paragraphs; after one that ends with a colon stands a list."""
    lists = iter(header.lists)
    for paragraph in header.paragraphs:
        yield link.text(paragraph)
        if paragraph.endswith(":"):
            yield bullets(next(lists))


def header_page(header: Header, reference: Reference) -> str:
    link = Linker(reference)
    parts = [f"# {header.name}", f"`#include <{header.name}>`", *told(header, link), *members(header, reference, link)]
    return "\n\n".join(parts)
