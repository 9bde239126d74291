# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is kept over a restart of the service."""

from __future__ import annotations

import sqlite3
from collections.abc import Iterator
from contextlib import closing, contextmanager
from pathlib import Path

FILE = Path("/var/log/vl/fleet.db")
BUSY_SECONDS = 5
TABLES = (
    "CREATE TABLE IF NOT EXISTS backlog(sent INTEGER NOT NULL, dropped INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS request(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE, answer BLOB)",
)


@contextmanager
def opened(file: Path) -> Iterator[sqlite3.Connection]:
    """Commits at the end. The file may be removed at any time."""
    with closing(sqlite3.connect(file, timeout=BUSY_SECONDS)) as database, database:
        for table in TABLES:
            database.execute(table)
        yield database
