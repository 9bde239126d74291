# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Makes manual pages from Markdown."""

from __future__ import annotations

import re
import subprocess

from manuallib.reference import version

# Names of functions are not divided at the end of a line, and words are not moved apart.
RAGGED = ".nh\n.ad l"

# Characters of a table's row, without the gaps between columns; and what pandoc believes that it is.
ROOM, ROOM_OF_PANDOC = 58, 70
MARKER = '.\\" page '


def pandoc(text: str, *options: str) -> str:
    return subprocess.run(["pandoc", *options], input=text, capture_output=True, text=True, check=True).stdout


def marked(name: str, text: str) -> str:
    """A page that begins with its name and title, which pandoc copies."""
    stem, _, section = name.rpartition(".")
    title = f'.TH "{stem.upper()}" "{section}" "" "libusbdevlib {version()}" "Manual of libusbdevlib"'
    return f"```{{=man}}\n{MARKER}{name}\n{title}\n{RAGGED}\n```\n\n{text}\n"


def cells(row: str) -> list[str]:
    return re.split(r"(?<!\\)\|", row.strip().strip("|"))


def shared_room(columns: list[list[str]]) -> list[int]:
    """The columns' widths: the widest are made narrower, down to their longest words, until all of them fit a page."""
    widths = [max(len(cell.strip()) for cell in column) + 1 for column in columns]
    least = [max(len(word) for cell in column for word in cell.split() or [""]) + 1 for column in columns]
    while sum(widths) > ROOM and widths != least:
        spare = [(width, column) for column, width in enumerate(widths) if width > least[column]]
        widths[max(spare)[1]] -= 1
    return widths


def with_widths(text: str) -> str:
    """Gives the columns of tables widths after what they contain, which pandoc takes from the lines below the heads."""

    def measured(found: re.Match[str]) -> str:
        rows = [cells(row) for row in found[0].splitlines()]
        columns = zip(*(row for number, row in enumerate(rows) if number != 1))
        rows[1] = ["-" * width for width in shared_room([list(column) for column in columns])]
        return "".join(f"|{'|'.join(row)}|\n" for row in rows)

    return re.sub(r"^\|.*\n\|[-:| ]+\|\n(\|.*\n?)+", measured, text, flags=re.MULTILINE)


def polished(page: str) -> str:
    page = page.replace("\\f[V]", "\\fB")  # code
    page = re.sub(r"\\f\[C\w*\]", r"\\fR", page)  # a fixed-width font, which terminals do not have
    page = re.sub(r"\blw\(([\d.]+)n\)", lambda found: f"lw({float(found[1]) * ROOM / ROOM_OF_PANDOC:.1f}n)", page)
    page = re.sub(r"^(\.S[HS] .*)\n\.PP$", r"\1", page, flags=re.MULTILINE)
    page = page.replace("\\f[R]", "\\fR").replace("\\f[B]", "\\fB").replace("\\f[I]", "\\fI")
    # A dash alone is a hyphen, which nobody could paste into a command line.
    page = re.sub(r"^[^.'\n].*", lambda line: re.sub(r"(?<!\\)-", r"\\-", line[0]), page, flags=re.MULTILINE)
    # A table near the end of a sheet begins on the next one, because its cells are not divided.
    page = page.replace("\n.TS\n", "\n.ne 12v\n.TS\n")
    # A page with a table begins with the name of the program that draws it.
    return f"'\\\" t\n{page}" if ".TS\n" in page else page


def manual_pages(texts: dict[str, str]) -> dict[str, str]:
    """The pages in the language of man(7), by the names of their files. One run of pandoc makes all of them."""
    source = "\n".join(marked(name, with_widths(text)) for name, text in texts.items())
    everything = pandoc(source, "-f", "markdown-smart", "-t", "man")
    parts = everything.split(MARKER)[1:]
    return {name: polished(page) for name, page in (part.split("\n", 1) for part in parts)}
