# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the sentences of the documents name exists: files, commands and tests."""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator
from fnmatch import fnmatch
from functools import cache

from blocks import documents
from conftest import BUILD, REPOSITORY

FOLDERS = {path.name for path in REPOSITORY.iterdir() if path.is_dir()} - {"build"}
# A word in capitals stands for something that a reader chooses.
CHOSEN = re.compile(r"\b(?!README|CONTRIBUTING|CMakeLists|LLVM)[A-Z]{3,}\b|\bN\b")
TEST = re.compile(r"(abi|contract|torture|unit)_[a-z_*]+|(dev|docs|share|services|packaging|usbdevctl|system)\.[a-z_.*]+")


def words() -> Iterator[tuple[str, str]]:
    """The words in code letters, with the document that has them."""
    for document in documents():
        sentences = re.sub(r"^```.*?^```", "", document.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
        for word in re.findall(r"`([^`\n]+)`", sentences):
            yield str(document.relative_to(REPOSITORY)), word


@cache
def help_of(*command: str) -> str:
    return subprocess.run([BUILD / "usbdevctl", *command, "--help"], capture_output=True, text=True).stdout


def is_unknown(command: str) -> bool:
    """Does usbdevctl not have these words, or one of the options?"""
    named = re.match(r"usbdevctl((?: [a-z]+)*)", command)[1].split()
    path: list[str] = []
    for word in named:
        if not re.search(rf"^  {word}\b", help_of(*path), re.MULTILINE):
            return "Commands:" in help_of(*path) or not path
        path.append(word)
    return any(option not in help_of(*path) for option in re.findall(r"--[a-z-]+", command))


def test_files_exist() -> None:
    named = [(place, path[0]) for place, word in words() if (path := re.match(r"[\w.-]+/[\w./*-]*", word))]
    ours = [(place, path) for place, path in named if path.split("/")[0] in FOLDERS and not CHOSEN.search(path)]
    assert len(ours) > 100
    assert [one for one in ours if not list(REPOSITORY.glob(one[1].rstrip("/")))] == []


def test_commands_of_usbdevctl_exist_with_their_options() -> None:
    commands = [(place, word) for place, word in words() if word.startswith("usbdevctl ")]
    assert len(commands) > 10
    assert [one for one in commands if is_unknown(one[1])] == []


def test_tests_exist() -> None:
    listing = subprocess.run(["ctest", "--test-dir", BUILD, "--show-only"], capture_output=True, text=True, check=True).stdout
    tests = set(re.findall(r"Test +#\d+: (\S+)", listing))
    targets = subprocess.run(["ninja", "-C", BUILD, "-t", "targets", "all"], capture_output=True, text=True, check=True).stdout
    programs = set(re.findall(r"^tests/\S*?(\w+): ", targets, re.MULTILINE))
    named = [(place, word) for place, word in words() if TEST.fullmatch(word)]
    assert [one for one in named if not any(fnmatch(test, one[1]) for test in tests | programs)] == []
