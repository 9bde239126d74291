# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The tables of docs/who-may-do-what.md, which are what this test expects."""

from __future__ import annotations

import re
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[3]
PAGE = REPOSITORY / "docs/who-may-do-what.md"
COMM_LENGTH = 15  # the kernel cuts the names of processes


def _table(heading: str) -> list[list[str]]:
    """Returns the cells of the rows below the heading of a section."""
    section = PAGE.read_text(encoding="utf-8").split(f"\n## {heading}\n")[1].split("\n## ")[0]
    rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in section.splitlines() if line.startswith("|")]
    return rows[2:]


def quoted(cell: str) -> list[str]:
    return re.findall(r"`([^`]+)`", cell)


def fits(path: str, pattern: str) -> bool:
    """Whether a path is one of a pattern's; the path of a folder ends with a slash."""
    expression = re.escape(pattern).replace(r"\*\*", ".+").replace(r"\*", "[^/]+")
    return path.endswith("/") == pattern.endswith("/") and re.fullmatch(expression, path) is not None


class Processes:
    def __init__(self) -> None:
        rows = _table("Processes")
        names = [quoted(row[0])[0] for row in rows]
        self.listening = {
            name[:COMM_LENGTH]: set(re.findall(r"`([\d.]+:\d+/\w+|/var/lock/[\w-]+)`", row[3]))
            for name, row in zip(names, rows)
            if "/tcp`" in row[3] or "/udp`" in row[3]
        }
        self.run_by = {name: {word.split()[0] for word in quoted(row[4])} for name, row in zip(names, rows)}
        for name, row in zip(names, rows):
            if row[4].endswith("`usbdevctl`, and what it runs"):
                self.run_by[name] |= self.run_by["usbdevctl"]


def file_rows() -> list[tuple[str, str]]:
    """Returns the pattern and the mode of each row."""
    return [(quoted(row[0])[0], row[1]) for row in _table("Files")]


class Secret:
    """Where a secret may be."""

    def __init__(self, row: list[str]) -> None:
        self.name, files, names, commands = row
        self.files, self.names, self.commands = quoted(files), quoted(names), quoted(commands)


def secrets() -> list[Secret]:
    return [Secret(row) for row in _table("Secrets")]
