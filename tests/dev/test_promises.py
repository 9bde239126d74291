# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Where a page promises something, the last column of its table names files and commands; all of them are there."""

from __future__ import annotations

import re
import subprocess
from pathlib import Path

import pytest

REPOSITORY = Path(__file__).resolve().parents[2]
STATES = {"met", "not met", "does not apply"}
PRACTICES = (REPOSITORY / "docs/openssf.md").read_text()


def rows(text: str) -> list[list[str]]:
    """The cells of each row of three columns, without the headings."""
    lines = re.findall(r"^\| (.*) \|$(?!\n\|---)", text, re.MULTILINE)
    return [cells for cells in (line.split(" | ") for line in lines) if len(cells) == 3]


def commands() -> set[str]:
    shown = subprocess.run([REPOSITORY / "dev", "help"], check=True, capture_output=True, text=True).stdout
    return {f"./dev {name}" for name in re.findall(r"^  ([a-z]+)\b", shown, re.MULTILINE)}


@pytest.mark.parametrize("page", ["SECURITY.md", "docs/openssf.md"])
def test_every_file_and_command_is_there(page: str) -> None:
    named = [name for row in rows((REPOSITORY / page).read_text()) for name in re.findall(r"`(.*?)`", row[-1])]
    assert len(named) > 10
    known = commands()
    assert [name for name in named if name not in known and not (REPOSITORY / name).exists()] == []


def test_every_criterion_has_a_state_and_a_place() -> None:
    assert {state for _, state, _ in rows(PRACTICES)} == STATES
    assert [row for row in rows(PRACTICES) if not row[-1].strip()] == []
    assert [row[0] for row in rows(PRACTICES) if not re.match(r"[a-z0-9_]+(, [a-z0-9_]+)*: \w", row[0])] == []


def test_no_criterion_is_twice_in_one_level() -> None:
    for level in PRACTICES.split("\n## ")[1:]:
        names = ", ".join(row[0].split(":")[0] for row in rows(level)).split(", ")
        assert len(names) == len(set(names)), level.splitlines()[0]
