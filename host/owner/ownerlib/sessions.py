# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Who is signed in. Sessions are kept in memory only, and end when they are not used."""

from __future__ import annotations

import secrets
import time
from collections.abc import Callable
from dataclasses import dataclass, field

IDLE_SECONDS = 30 * 60
MOST_SESSIONS = 100
ID_BYTES = 32


@dataclass
class Session:
    user: str
    last_used: float
    csrf: str = field(default_factory=lambda: secrets.token_urlsafe(ID_BYTES))


class Sessions:
    def __init__(self, clock: Callable[[], float] = time.monotonic) -> None:
        self._clock = clock
        self._sessions: dict[str, Session] = {}  # the one that began last is the last

    def begin(self, user: str) -> tuple[str, Session]:
        """Returns the id of a new session, which nobody had before, and the session. The oldest ends if there are too many."""
        self._end_idle()
        if len(self._sessions) >= MOST_SESSIONS:
            del self._sessions[next(iter(self._sessions))]
        name = secrets.token_urlsafe(ID_BYTES)
        self._sessions[name] = Session(user, self._clock())
        return name, self._sessions[name]

    def find(self, name: str) -> Session | None:
        """Returns the session with the id, which this is a use of."""
        self._end_idle()
        session = self._sessions.get(name)
        if session:
            session.last_used = self._clock()
        return session

    def is_open(self, name: str) -> bool:
        """Checks whether the session is open, without using it."""
        self._end_idle()
        return name in self._sessions

    def end(self, name: str) -> None:
        self._sessions.pop(name, None)

    def _end_idle(self) -> None:
        oldest = self._clock() - IDLE_SECONDS
        self._sessions = {name: session for name, session in self._sessions.items() if session.last_used > oldest}
