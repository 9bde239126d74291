# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page of the neighbours lists what the tests make, and nothing else."""

from __future__ import annotations

from collections import Counter

import page

FEWEST = {"Servers": 60, "Tools": 60, "Configuration files": 40, "Clients of the share page": 60}


def test_the_page_is_made_of_the_tables() -> None:
    assert (page.REPOSITORY / "docs/neighbours.md").read_text() == page.page(), "page.py prints the right one"


def test_every_behaviour_has_a_name_of_its_own() -> None:
    names = Counter(row.name for _, rows in page.TABLES.values() for row in rows)
    assert [name for name, count in names.items() if count > 1] == []


def test_no_table_is_shorter_than_it_has_to_be() -> None:
    lengths = {title: len(rows) for title, (_, rows) in page.TABLES.items()}
    assert [title for title, length in lengths.items() if length < FEWEST[title]] == []
