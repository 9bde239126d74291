# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A source file with its mutants: small mistakes, all of them written into one text, where each has a number."""

from __future__ import annotations

import re
from collections import defaultdict
from collections.abc import Iterator
from pathlib import Path
from typing import NamedTuple

from clang.cindex import Cursor


def span(cursor: Cursor) -> tuple[int, int]:
    return cursor.extent.start.offset, cursor.extent.end.offset


def shown(text: str) -> str:
    return re.sub(r"\s+", " ", text).strip()


class Mutant(NamedTuple):
    number: int
    file: str
    line: int
    function: str
    original: str
    mutated: str

    @property
    def name(self) -> str:
        """What stays the same when other lines of the file change."""
        return f"{self.file} {self.function}: {self.original} -> {self.mutated}"


class Scope(NamedTuple):
    """What surrounds a place."""

    function: str = ""
    compile_time: bool = False
    in_loop: bool = False  # and not in a switch inside it


class SourceFile:
    """One file, its mutants, and the text that has them all."""

    def __init__(self, path: Path, name: str, numbers: Iterator[int]) -> None:
        self.name, self.source = name, path.read_bytes()
        self.numbers = numbers
        self.mutants: list[Mutant] = []
        self.skipped = 0
        self.macros: list[tuple[int, int]] = []
        self.seen: set[tuple[int, int, str]] = set()
        self.opened: defaultdict[int, list[str]] = defaultdict(list)
        self.closed: defaultdict[int, list[str]] = defaultdict(list)
        self.replaced: dict[int, tuple[int, str]] = {}

    def slice(self, start: int, end: int) -> str:
        return self.source[start:end].decode()

    def text(self, cursor: Cursor) -> str:
        return self.slice(*span(cursor))

    def in_macro(self, start: int, end: int) -> bool:
        return any(first <= start and end <= last for first, last in self.macros)

    def add(self, cursor: Cursor, scope: Scope, *mutated: str) -> int | None:
        """Numbers the mutants of a place; returns the first number, or None where there can be none."""
        start, end = span(cursor)
        if scope.compile_time:
            self.skipped += len(mutated)
            return None
        line = self.source.count(b"\n", 0, start) + 1
        original = shown(self.slice(start, end))
        made = [Mutant(next(self.numbers), self.name, line, scope.function, original, shown(text)) for text in mutated]
        self.mutants += made
        return made[0].number

    def choose(self, cursor: Cursor, scope: Scope, *others: str) -> None:
        """Makes mutants that take other constants."""
        first = self.add(cursor, scope, *others)
        if first is not None:
            self.wrap(cursor, f"mutation::choose({first}, ", f", {{{', '.join(others)}}})")

    def wrap(self, cursor: Cursor, before: str, after: str) -> None:
        """Puts text around an expression, outside of what is put around its parts later."""
        start, end = span(cursor)
        self.opened[start].append(before)
        self.closed[end].insert(0, after)

    def mutated_text(self) -> str:
        result, at = [], 0
        for place in sorted({*self.opened, *self.closed, *self.replaced}):
            result.append(self.slice(at, place))
            at = max(at, place)
            result += self.closed.get(place, [])
            result += self.opened.get(place, [])
            if place in self.replaced:
                length, text = self.replaced[place]
                result.append(text)
                at = place + length
        return "".join([*result, self.slice(at, len(self.source))])
