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
from ownerlib.recorder import Recorder
from ownerlib.sessions import Sessions


class Host:
    def __init__(self) -> None:
        self.sessions = Sessions()
        self.logins = Logins()
        self.live = Live(self.sessions)
        self.recorder = Recorder()
        self.picture = Picture(self.live.tell, self.recorder.note)
        self.feeds: Feeds = {}  # the streams that owners watch

    async def follow(self) -> None:
        """Follows what changes, until cancelled."""
        sources.follow(self.picture.change, self.picture.log)
        await asyncio.gather(self.picture.follow(), self.recorder.follow())

    def end_session(self, session: str) -> None:
        self.sessions.end(session)
        self.live.drop(session)
