# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The code blocks of the documents.

What a block is for is its language: `sh` (commands), `console` (commands with what they print), `c`, `cpp`, `python`,
`cmake` (sources), `toml`, `json`, `xml` (data), `usage` (how usbdevctl is called), `text` (nothing of this, with a
reason). A comment before a block
can state what is done before it, `<!-- before: COMMANDS -->`, or why it is not run, `<!-- not run: REASON -->`.
"""

from __future__ import annotations

import re
from dataclasses import dataclass
from pathlib import Path

from conftest import REPOSITORY

LANGUAGES = {"sh", "console", "c", "cpp", "python", "cmake", "toml", "json", "xml", "usage", "text"}
BLOCK = re.compile(r"(?:<!-- (before|not run): (.*?) -->\n+)?^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


@dataclass
class Block:
    document: Path
    line: int
    language: str
    text: str
    before: str
    reason: str

    @property
    def place(self) -> str:
        return f"{self.document.relative_to(REPOSITORY)}:{self.line}"


@dataclass
class Command:
    """A command of a block, and what it prints, if the document shows it."""

    place: str
    text: str
    printed: list[str] | None = None


def documents() -> list[Path]:
    everywhere = [REPOSITORY.glob("*.md"), REPOSITORY.glob("docs/**/*.md"), REPOSITORY.glob("examples/**/*.md")]
    return sorted(path for paths in everywhere for path in paths)


def blocks_of(document: Path) -> list[Block]:
    text = document.read_text(encoding="utf-8")
    return [
        Block(
            document=document,
            line=text[: found.start(3)].count("\n") + 1,
            language=found[3],
            text=found[4],
            before=found[2] if found[1] == "before" else "",
            reason=found[2] if found[1] == "not run" else "",
        )
        for found in BLOCK.finditer(text)
    ]


def without_comment(line: str) -> str:
    return re.sub(r"\s+#\s.*$", "", line)


def commands_of(block: Block) -> list[Command]:
    """The commands of an `sh` block are its lines, or the whole block if it contains a loop."""
    if block.language == "sh":
        if re.search(r"^for ", block.text, re.MULTILINE):
            return [Command(block.place, block.text)]
        joined = block.text.replace("\\\n", " ")
        return [Command(block.place, line) for line in map(without_comment, joined.splitlines()) if line.strip()]
    commands: list[Command] = []
    for line in block.text.splitlines():
        if line.startswith("$ "):
            commands.append(Command(block.place, line[2:], []))
        elif commands and commands[-1].printed is not None:
            commands[-1].printed.append(line)
    return commands
