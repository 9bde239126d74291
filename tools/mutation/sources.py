# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Reads the project's sources with the compiler's own parser, and writes a tree in which they contain their mutants."""

from __future__ import annotations

import itertools
import json
import shlex
from collections.abc import Iterator
from pathlib import Path

from clang.cindex import Cursor, CursorKind, Index, TranslationUnit
from source_file import Scope, SourceFile, span
from walk import visit

OPTIONS = ("-I", "-isystem", "-D", "-std=")


def commands(build: Path, folders: list[Path]) -> Iterator[tuple[Path, list[str]]]:
    """Returns how each source in the folders is compiled, as far as it matters for parsing."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = Path(entry["file"])
        if any(folder in source.parents for folder in folders):
            words = shlex.split(entry["command"])
            options = [word for word in words if word.startswith(OPTIONS)]
            options.insert(0, "-std=gnu++17")  # not in the command where it is the default of the compiler
            options += [option for pair in zip(words, words[1:]) if pair[0] == "-isystem" for option in pair]
            yield source, options


def read_sources(root: Path, build: Path, folders: list[Path]) -> list[SourceFile]:
    """Finds the mutants of all sources, and of the headers that they include."""
    files: dict[str, SourceFile] = {}
    numbers = itertools.count(1)
    for source, options in sorted(commands(build, folders)):
        unit = Index.create().parse(str(source), options, options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        errors = [str(problem) for problem in unit.diagnostics if problem.severity >= 3]
        if errors:
            raise SystemExit("\n".join(errors))
        new: dict[str, SourceFile] = {}
        for cursor in unit.cursor.get_children():
            path = str(cursor.location.file)
            if path in files or Path(path).suffix not in {".h", ".cpp"} or not any(folder in Path(path).parents for folder in folders):
                continue
            file = new.setdefault(path, SourceFile(Path(path), str(Path(path).relative_to(root)), numbers))
            if cursor.kind == CursorKind.MACRO_INSTANTIATION:
                file.macros.append(span(cursor))
            else:
                visit(file, cursor, Scope())
        files |= new
    return list(files.values())


def write_tree(root: Path, tree: Path, files: list[SourceFile], folders: list[Path]) -> None:
    """Makes a tree like the project's: the folders are copied, with the mutants, everything else is linked."""
    texts = {root / file.name: file.mutated_text() for file in files}
    tree.mkdir(parents=True, exist_ok=True)
    for path in sorted(root.iterdir()):
        link(path, tree / path.name, texts, folders)


def link(path: Path, copy: Path, texts: dict[Path, str], folders: list[Path]) -> None:
    if path.name in {"build", ".git"}:
        return
    copied = path in folders or any(folder in path.parents for folder in folders)
    if path.is_dir() and (copied or any(path in folder.parents for folder in folders)):
        copy.mkdir(parents=True, exist_ok=True)
        for child in sorted(path.iterdir()):
            link(child, copy / child.name, texts, folders)
    elif copied:
        write_if_new(copy, texts.get(path) or path.read_text())
    elif not copy.exists():
        copy.symlink_to(path)


def write_if_new(path: Path, text: str) -> None:
    """Leaves a file alone that would not change, so that it is not compiled again."""
    if not path.exists() or path.read_text() != text:
        path.write_text(text)
