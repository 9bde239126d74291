# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The events, in pieces for a page and as a file for other programs."""

from __future__ import annotations

import asyncio
import csv
import io
from dataclasses import replace
from typing import Any

from statelib import event_log, problems

from ownerlib import happenings
from ownerlib.answers import SignedIn
from ownerlib.happenings import Wish
from ownerlib.history import Known
from ownerlib.texts import LANGUAGES

COLUMNS = ("id", "time", "severity", "text", "camera", "port", "line", "user")
FORMULA = ("=", "+", "-", "@", "\t", "\r")
USUAL = 50
LARGEST_ID = 1 << 62
MOST_EXPORTED = 100_000


class Events(SignedIn):
    async def get(self) -> None:
        before, turn, act = (self._number(name, None, LARGEST_ID) for name in ("before", "before_turn", "before_act"))
        limit = self._number("limit", USUAL, event_log.MOST_EVENTS) or USUAL
        self.finish({"events": await self.found(Wish(limit, before, Known(turn, act)))})

    async def found(self, wish: Wish) -> list[dict[str, Any]]:
        severity = self.get_query_argument("severity", None)
        if severity is not None and severity not in event_log.SEVERITIES:
            raise problems.invalid("The request has no proper severity.")
        language = self.get_query_argument("language", "en") or ""
        if language not in LANGUAGES:
            raise problems.invalid("The request has no proper language.")
        search = self.get_query_argument("search", "") or ""
        zone = self.get_query_argument("zone", "UTC") or ""
        wish = replace(wish, search=search, severity=severity, language=language, zone=zone)
        return await asyncio.to_thread(happenings.newest, self.host.recorder.history, self.host.picture.known, wish)

    def _number(self, name: str, usual: int | None, most: int) -> int | None:
        text = self.get_query_argument(name, None)
        if text is None:
            return usual
        if not (text.isascii() and text.isdigit() and len(text) < 20 and 1 <= int(text) <= most):
            raise problems.invalid(f"The request has no proper {name}.")
        return int(text)


class EventsFile(Events):
    async def get(self) -> None:
        self.set_header("Content-Type", "text/csv; charset=utf-8")
        self.set_header("Content-Disposition", "attachment; filename=events.csv")
        self.finish(table(await self.found(Wish(MOST_EXPORTED))))


def table(events: list[dict[str, Any]]) -> str:
    """Returns what happened as CSV, for what is not of the log without an id. A text with which a formula begins stays a text, because cameras choose their names."""
    file = io.StringIO()
    lines = csv.writer(file)
    lines.writerow(COLUMNS)
    for event in events:
        camera = event["camera"] or {"name": "", "port": ""}
        number = event["id"] if event["kind"] == "log" else ""
        values = {**event, "camera": camera["name"], "port": camera["port"], "id": number, "line": "\n".join(event["lines"])}
        cells = [str(values[name] or "") for name in COLUMNS]
        lines.writerow([f"'{cell}" if cell.startswith(FORMULA) else cell for cell in cells])
    return file.getvalue()
