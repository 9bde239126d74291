# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The events, in pieces for a page and as a file for other programs."""

from __future__ import annotations

import asyncio
import csv
import io

from statelib import event_log, problems

from ownerlib.answers import SignedIn

COLUMNS = ("id", "time", "severity", "text")
FORMULA = ("=", "+", "-", "@", "\t", "\r")
USUAL = 50
LARGEST_ID = 1 << 62
MOST_EXPORTED = 100_000


class Events(SignedIn):
    async def get(self) -> None:
        before = self._number("before", None, LARGEST_ID)
        limit = self._number("limit", USUAL, event_log.MOST_EVENTS)
        severity = self.get_query_argument("severity", None)
        if severity is not None and severity not in event_log.SEVERITIES:
            raise problems.invalid("The request has no proper severity.")
        search = self.get_query_argument("search", "") or ""
        found = await asyncio.to_thread(event_log.newest, limit or USUAL, before, search, severity)
        self.finish({"events": found})

    def _number(self, name: str, usual: int | None, most: int) -> int | None:
        text = self.get_query_argument(name, None)
        if text is None:
            return usual
        if not (text.isascii() and text.isdigit() and len(text) < 20 and 1 <= int(text) <= most):
            raise problems.invalid(f"The request has no proper {name}.")
        return int(text)


class EventsFile(SignedIn):
    async def get(self) -> None:
        self.set_header("Content-Type", "text/csv; charset=utf-8")
        self.set_header("Content-Disposition", "attachment; filename=events.csv")
        self.finish(table(await asyncio.to_thread(event_log.newest, MOST_EXPORTED)))


def table(events: list[event_log.Event]) -> str:
    """Returns the events as CSV. A text with which a formula begins stays a text, because cameras choose their names."""
    file = io.StringIO()
    lines = csv.writer(file)
    lines.writerow(COLUMNS)
    for event in events:
        cells = [str(event[name]) for name in COLUMNS]
        lines.writerow([f"'{cell}" if cell.startswith(FORMULA) else cell for cell in cells])
    return file.getvalue()
