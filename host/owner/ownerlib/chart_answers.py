# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the charts show."""

from __future__ import annotations

import asyncio
import sqlite3

from statelib import problems

from ownerlib.answers import SignedIn
from ownerlib.history import MOST_DAYS

USUAL_DAYS = "7"


class Charts(SignedIn):
    async def get(self) -> None:
        days = self.get_query_argument("days", USUAL_DAYS) or ""
        if days not in map(str, range(1, MOST_DAYS + 1)):
            raise problems.invalid("The request has no proper days.")
        try:
            self.finish(await asyncio.to_thread(self.host.recorder.history.since, int(days)))
        except sqlite3.Error:
            raise problems.host_away("The history cannot be read.") from None
