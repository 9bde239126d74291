# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the answers share: who is signed in, and what is known of the host."""

from __future__ import annotations

import asyncio
from typing import Any

from sharelib.feed import Feeds
from statelib import sources
from statelib.picture import Picture

from ownerlib import network
from ownerlib.guests import Guests
from ownerlib.live import Live
from ownerlib.login import Logins
from ownerlib.recorder import Recorder
from ownerlib.sessions import Sessions

Value = dict[str, Any]


class Host:
    def __init__(self, address: str, port: int, sessions: Sessions) -> None:
        """The address and the port at which the pages are served."""
        self._served = address, port
        self.sessions = sessions
        self.logins = Logins()
        self.live = Live(self.sessions)
        self.recorder = Recorder(lambda number: self.live.tell("happened", number))
        self.picture = Picture(self._tell, self.recorder.note)
        self.feeds = Feeds()  # the streams that owners watch
        self.guests = Guests(lambda counts: self.live.tell("viewers", counts))

    async def follow(self) -> None:
        """Follows what changes, until cancelled."""
        sources.follow(self.picture.change, self.picture.log)
        await asyncio.gather(self.picture.follow(), self.recorder.follow(), self.live.show_life(), self.sessions.keep_often())

    async def state(self) -> Value:
        """Returns the whole picture, with what the server itself knows. Raises Problem if it cannot be read."""
        return self._whole(await self.picture.state())

    def _tell(self, section: str, value: Any) -> None:
        self.live.tell(section, self._whole(value) if section == "state" else value)

    def _whole(self, state: Value) -> Value:
        """Adds how others reach the host, the guests, and the number of what happened last."""
        host = {**state["host"], "open": network.is_open(self._served[0]), "origin": network.origin(*self._served)}
        return {**state, "host": host, "viewers": self.guests.counts(), "happened": self.recorder.happened}

    def end_session(self, session: str) -> None:
        self.sessions.end(session)
        self.live.drop(session)
