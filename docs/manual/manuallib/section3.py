# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Manual pages of section 3, in the language of man(7)."""

from __future__ import annotations

import re
import textwrap

from manuallib.pandoc import RAGGED
from manuallib.reference import Function, Record, Reference, Variable, sentences, spaced, version

# The C library has pages of the same names as some functions, so the pages have a section of their own. `man 3 NAME`
# finds them too.
SECTION = "3usbdev"
LINE = 78  # characters, on a terminal of 80
OF_THE_LOCK = re.compile(
    r"(takes? (the|no)|holds the) lock|\bruns? (commands|nothing)|^Notifies|^Logs an event", re.IGNORECASE
)
OF_FAILURE = re.compile(r"^(Fails|When it fails|When the .* cannot be stored)\b")
USUAL_RESULT = "0 on success and -1 on failure. On failure the outputs are untouched, unless this page states otherwise."


def escaped(text: str) -> str:
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("^", "\\(ha").replace("~", "\\(ti")
    return re.sub(r"^(['.])", r"\\&\1", text)


def filled(text: str) -> list[str]:
    """Input lines of at most 80 characters."""
    return [escaped(line) for line in textwrap.wrap(text, 72, break_long_words=False, break_on_hyphens=False)]


def title(name: str) -> str:
    # The first line shows the name at both ends; if the text between them is too long, groff prints one over the other.
    room = LINE - 2 * len(f"{name}({SECTION}) ")
    between = next(text for text in ("Manual of libusbdevlib", "libusbdevlib", "") if len(text) <= room or not text)
    return f'.TH "{name.upper()}" "{SECTION}" "" "libusbdevlib {version()}" "{between}"\n{RAGGED}'


def name_line(names: str, brief: str) -> list[str]:
    short = re.split(r"[:;] ", brief)[0].rstrip(".")
    return [".SH NAME", f"{names} \\- {escaped(short[:1].lower() + short[1:])}"]


def synopsis(function: Function) -> list[str]:
    # A line ends between arguments only.
    arguments = ", ".join(spaced(kind, f"\\fI{name}\\fB").replace(" ", "\\ ") for kind, name in function.arguments)
    return [
        ".SH SYNOPSIS",
        f".B #include <{function.header}>",
        ".PP",
        f"\\fB{spaced(function.result_type, function.name)}({arguments or 'void'});\\fP",
        ".PP",
        "Link with",
        ".IR \\-lusbdevlib .",
    ]


def section(heading: str, text: str) -> list[str]:
    return [f".SH {heading}", *filled(text)] if text else []


def parameters(function: Function) -> list[str]:
    lines = []
    for one in function.parameters:
        direction = {"in": "in", "out": "out", "inout": "in/out"}[one.direction]
        lines += [".TP", f"\\fI{', '.join(one.names)}\\fP ({direction})", *(filled(one.text) or ["\\&"])]
    return lines


def returned(function: Function) -> list[str]:
    if function.result_type == "void":
        return []
    result = (function.returns or USUAL_RESULT).rstrip(".") + "."
    return [".SH RETURN VALUE", f".BR {function.name} ()", *filled(f"returns {result}")]


def threads(turns: list[str]) -> list[str]:
    first, *others = turns or [""]
    return section("THREADS AND PROCESSES", first) + [line for turn in others for line in [".PP", *filled(turn)]]


def see_also(names: list[str]) -> list[str]:
    lines = [".SH SEE ALSO"] + [f".BR {name} ({SECTION})," for name in names]
    return lines + [".BR usbdevlib (7)"]


def function_page(function: Function, reference: Reference) -> str:
    told = [sentence for paragraph in function.paragraphs for sentence in sentences(paragraph)]
    # The first sentence is what the page is about, but it may state the lock, too.
    about_lock = [one for one in told if OF_THE_LOCK.search(one)]
    about_failure = [one for one in told if OF_FAILURE.search(one)]
    others = [one for one in told if one not in about_lock and one not in about_failure]
    group = [f"{function.group}."] if ": " in function.group else []
    turns = [turn for turn in reference.turns if re.search(rf"\b{function.name}\b", turn)]
    lines = [
        title(function.name),
        *name_line(function.name, function.brief),
        *synopsis(function),
        *section("DESCRIPTION", " ".join([function.brief, *others])),
        *parameters(function),
        *returned(function),
        *section("ERRORS", " ".join(about_failure)),
        *section("LOCK AND COMMANDS", " ".join([*about_lock, *group])),
        *threads(turns),
        *see_also([one.name for one in reference.functions if one.group == function.group and one is not function]),
    ]
    return "\n".join(lines) + "\n"


def variable_page(variable: Variable, reference: Reference) -> str:
    lines = [
        title(variable.name),
        *name_line(variable.name, variable.text.split(". ")[0]),
        ".SH SYNOPSIS",
        f".B #include <{variable.header}>",
        ".PP",
        f".B {variable.declaration}",
        *section("DESCRIPTION", variable.text),
        *see_also(["connect_host"]),
    ]
    return "\n".join(lines) + "\n"


def record_page(record: Record, reference: Reference) -> str:
    rows = [
        line
        for one in record.fields
        for line in [".TP", f".BI \"{one.kind} \" {one.name} \"{one.array};\"", *filled(one.text)]
    ]
    users = [one.name for one in reference.functions if any(record.name in kind.split() for kind, _ in one.arguments)]
    lines = [
        title(record.name),
        *name_line(record.name, record.text),
        ".SH SYNOPSIS",
        ".B #include <usbdev/records.h>",
        *section("DESCRIPTION", f"{record.text} The fields are, in this order:"),
        *rows,
        *see_also(users),
    ]
    return "\n".join(lines) + "\n"


def pages(reference: Reference) -> dict[str, str]:
    """The text of each page, by the name of its file."""
    texts = {one.name: function_page(one, reference) for one in reference.functions}
    texts |= {one.name: variable_page(one, reference) for one in reference.variables}
    texts |= {one.name: record_page(one, reference) for one in reference.records}
    return {f"{name}.{SECTION}": text for name, text in texts.items()}
