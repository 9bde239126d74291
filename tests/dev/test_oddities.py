# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page on what is odd on purpose lists exactly the places that are marked in the code."""

from __future__ import annotations

import re
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
ENTRY = re.compile(r"^- \*\*(.+?)\*\*.*?\(`(src/[^`]+)`\):", re.M | re.S)
MARK = re.compile(r"// Intended: (.+)")


def listed() -> list[tuple[str, str]]:
    """Returns the file and the name of each entry of the page."""
    return sorted((file, name) for name, file in ENTRY.findall((REPOSITORY / "docs/oddities.md").read_text()))


def marked() -> list[tuple[str, str]]:
    """Returns the file and the name of each mark in the code."""
    files = [path for path in (REPOSITORY / "src").rglob("*") if path.suffix in {".h", ".cpp"}]
    return sorted((str(path.relative_to(REPOSITORY)), name) for path in files for name in MARK.findall(path.read_text()))


def test_every_mark_has_an_entry_and_every_entry_a_mark() -> None:
    assert marked() and marked() == listed()


def test_every_entry_of_the_page_is_read() -> None:
    page = (REPOSITORY / "docs/oddities.md").read_text()
    assert len(listed()) == page.count("\n- ")


