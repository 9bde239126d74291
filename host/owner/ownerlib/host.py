# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the answers share: who is signed in, and what is known of the host."""

from __future__ import annotations

import asyncio

from sharelib.live import Feeds

from ownerlib import sources
from ownerlib.live import Live
from ownerlib.login import Logins
from ownerlib.picture import Picture
from ownerlib.sessions import Sessions


class Host:
    def __init__(self) -> None:
        self.sessions = Sessions()
        self.logins = Logins()
        self.live = Live(self.sessions)
        self.picture = Picture(self.live.tell)
        self.feeds: Feeds = {}  # the streams that owners watch

    def follow(self) -> asyncio.Task[None]:
        """Begins to follow what changes, and returns the task of that."""
        sources.follow(self.picture.change)
        return asyncio.create_task(self.picture.follow())

    def end_session(self, session: str) -> None:
        self.sessions.end(session)
        self.live.drop(session)
