# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints docs/neighbours.md, which is made of the tables: /usr/bin/python3 tests/torture/neighbours/page.py"""

from __future__ import annotations

import sys
from collections.abc import Sequence
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[3]
sys.path[:0] = [str(REPOSITORY / folder) for folder in ("tests/torture", "host/share", "host/services")]

import clients  # noqa: E402
import files  # noqa: E402
import servers  # noqa: E402
import tools  # noqa: E402
from row import Row  # noqa: E402

INTRODUCTION = """\
<!-- SPDX-FileCopyrightText: 2026 The libusbdevlib authors
     SPDX-License-Identifier: Apache-2.0 -->

# Hostile neighbours

What the library talks to may misbehave: the servers that it asks, the tools that it runs, its configuration file; and
so may the visitors of the share page. Each row is one behaviour, made for real by a test of its name in
`tests/torture/neighbours/`: a server on the loopback address, a program in a tool's place, a file, a client. It
states what the call does meanwhile, what comes of it, and what it may take: the seconds of the call, with the start
of its process, and the megabytes by which the process that meets the neighbour grows. No call crashes, writes beyond
a buffer, leaves the lock taken, or runs what it read.

Where a row says that the call waits, the interface does not limit the time there: a call that reads from a
tool or from the login service lasts as long as these do. The test then makes another call in the same process, which
has to be answered, lets the neighbour go, and compares what comes of it. A few operations hold the lock while their
commands run (CONTRIBUTING.md names them); beside them others wait too.

`/usr/bin/python3 tests/torture/neighbours/page.py` prints this page, and a test compares the two.
"""
TABLES: dict[str, tuple[str, Sequence[Row]]] = {
    "Servers": ("Calls that talk to a login, camera or streaming server, or to the manager.", servers.TABLE),
    "Tools": ("Calls that run commands of the host.", tools.TABLE),
    "Configuration files": (
        "Each file is read and written; one that cannot be used stays as it is.",
        [*files.TABLE, *files.LOCKED],
    ),
    "Clients of the share page": (
        "After each of them somebody else is answered within twenty seconds, and no secret and no trace is in the log.",
        clients.TABLE,
    ),
}


def page() -> str:
    return INTRODUCTION + "".join(_section(title, *table) for title, table in TABLES.items())


def _section(title: str, about: str, rows: Sequence[Row]) -> str:
    lines = "".join(_line(row) for row in rows)
    head = "| Neighbour | Call or request | What comes of it | Seconds | MB |\n|---|---|---|---|---|\n"
    return f"\n## {title}\n\n{about} {len(rows)} behaviours.\n\n{head}{lines}"


def _line(row: Row) -> str:
    return f"| {row.name} | {row.meets} | {row.outcome.words} | {row.seconds} | {row.megabytes} |\n"


if __name__ == "__main__":
    print(page(), end="")
