# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The requests that were carried out, or begun: one that is delivered again gets the first answer, and is not carried out
again, also after a restart of the service."""

from __future__ import annotations

from pathlib import Path

from fleetlib import database

MOST = 1000


class Requests:
    def __init__(self, file: Path = database.FILE) -> None:
        self._file = file

    def begin(self, name: str) -> bytes | None:
        """Returns the answer of a request that was seen before, which is empty if nobody knows how it ended; None for a new one."""
        with database.opened(self._file) as rows:
            row = rows.execute("SELECT ifnull(answer, x'') FROM request WHERE name = ?", (name,)).fetchone()
            if row is not None:
                return bytes(row[0])
            rows.execute("INSERT INTO request(name) VALUES(?)", (name,))
            rows.execute("DELETE FROM request WHERE id <= (SELECT max(id) FROM request) - ?", (MOST,))
        return None

    def end(self, name: str, answer: bytes) -> None:
        with database.opened(self._file) as rows:
            rows.execute("UPDATE request SET answer = ? WHERE name = ?", (answer, name))
