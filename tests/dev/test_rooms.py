# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A folder of the code uses only folders that stand above it in the documents' tables."""

from __future__ import annotations

import re
from pathlib import Path

import pytest

REPOSITORY = Path(__file__).resolve().parents[2]
ROW = re.compile(r"^\| `([^`]+)/` \|", re.M)
INCLUDE = re.compile(r'^#include "([a-z_]+)/', re.M)


def listed(document: str, parent: str) -> list[str]:
    """Returns the parent's folders in the order of a document's table, which names them with the parent or without."""
    rows = map(Path, ROW.findall((REPOSITORY / document).read_text()))
    return [row.name for row in rows if str(row.parent) in (parent, ".") and (REPOSITORY / parent / row.name).is_dir()]


def uses_against_the_order(parent: str, order: list[str]) -> list[str]:
    found = []
    for file in sorted((REPOSITORY / parent).rglob("*")):
        if file.suffix not in {".h", ".cpp"} or file.parent.name not in order:
            continue
        used = set(INCLUDE.findall(file.read_text())) & set(order)
        found += [f"{file.relative_to(REPOSITORY)} uses {name}" for name in used if order.index(name) > order.index(file.parent.name)]
    return found


@pytest.mark.parametrize(("document", "parent"), [("README.md", "src"), ("docs/usbdevctl.md", "tools/usbdevctl")])
def test_a_folder_uses_only_those_above_it_in_the_table(document: str, parent: str) -> None:
    order = listed(document, parent)
    assert sorted(order) == sorted(folder.name for folder in (REPOSITORY / parent).iterdir() if folder.is_dir())
    assert uses_against_the_order(parent, order) == []
