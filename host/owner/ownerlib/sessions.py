# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Who is signed in. Sessions end when they are not used, and when the host's users change; they outlive the server in a file
with which nobody gets in: it has the hash of each session's id, and not the id."""

from __future__ import annotations

import asyncio
import hashlib
import hmac
import secrets
import time
from collections.abc import Awaitable, Callable
from dataclasses import dataclass
from pathlib import Path

from servicelib import lifecycle

from ownerlib.sessions_file import Kept, KeptSession, SessionsFile

IDLE_SECONDS = 30 * 60
MOST_SESSIONS = 100
ID_BYTES = 32
KEEP_SECONDS = 5 * 60  # after a crash a session ends earlier by at most this

UsersStamp = int | None  # another one after each change of the host's users


def stamp(users: Path) -> UsersStamp:
    """Returns when the file or its folder was changed: what is in it is for the login service only."""
    try:
        return users.stat().st_mtime_ns
    except OSError:
        return None


@dataclass
class Session:
    user: str
    users: UsersStamp
    last_used: float


def _hash(name: str) -> str:
    """An id has so much chance in it that a plain hash hides it."""
    return hashlib.sha256(name.encode()).hexdigest()


def token(name: str) -> str:
    """Returns the token of the session with the id, without which no other site's page changes anything."""
    return hmac.new(name.encode(), b"csrf", hashlib.sha256).hexdigest()


class Sessions:
    def __init__(
        self,
        file: SessionsFile | None = None,
        users: Callable[[], UsersStamp] = lambda: None,
        clock: Callable[[], float] = time.monotonic,
        now: Callable[[], float] = time.time,
    ) -> None:
        """`now` is the time of day, which goes on while the machine is off; the clock is never set."""
        self._file = file
        self.users = users
        self._clock = clock
        self._now = now
        self._turn = asyncio.Lock()
        self._sessions = self._kept()  # by the hashes of their ids; the one that began last is the last

    def begin(self, user: str, users: UsersStamp) -> str:
        """Returns the id of a new session, which nobody had before; `users` is from before the user was accepted. The oldest
        ends if there are too many."""
        self._end_old()
        if len(self._sessions) >= MOST_SESSIONS:
            del self._sessions[next(iter(self._sessions))]
        name = secrets.token_urlsafe(ID_BYTES)
        self._sessions[_hash(name)] = Session(user, users, self._clock())
        return name

    def find(self, name: str) -> Session | None:
        """Returns the session with the id, which this is a use of."""
        self._end_old()
        session = self._sessions.get(_hash(name))
        if session:
            session.last_used = self._clock()
        return session

    def is_open(self, name: str) -> bool:
        """Checks whether the session is open, without using it."""
        self._end_old()
        return _hash(name) in self._sessions

    def end(self, name: str) -> None:
        self._sessions.pop(_hash(name), None)

    async def keep(self) -> None:
        """Stores which sessions are open. One that has ended is not in the file, even if nothing can be stored."""
        if self._file is None:
            return
        async with self._turn:
            try:
                await asyncio.to_thread(self._file.write, self._to_keep())
            except OSError as problem:
                lifecycle.say(f"who is signed in cannot be stored: {problem.strerror}")

    async def keep_often(self, pause: Callable[[float], Awaitable[None]] = asyncio.sleep) -> None:
        """Stores again and again when they were used, until cancelled."""
        while True:
            kept = self._to_keep()
            await pause(KEEP_SECONDS)
            if self._to_keep() != kept:
                await self.keep()

    def _end_old(self) -> None:
        oldest, users = self._clock() - IDLE_SECONDS, self.users()
        self._sessions = {name: one for name, one in self._sessions.items() if one.last_used > oldest and one.users == users}

    def _to_keep(self) -> Kept:
        self._end_old()
        began = self._now() - self._clock()
        return Kept(self.users(), [KeptSession(name, one.user, round(began + one.last_used)) for name, one in self._sessions.items()])

    def _kept(self) -> dict[str, Session]:
        """One that was used in the future has a time that nobody can judge."""
        users, now, began = self.users(), self._now(), self._now() - self._clock()
        kept = self._file.read() if self._file else None
        if kept is None or kept.users != users:
            return {}
        sessions = [it for it in kept.sessions if now - IDLE_SECONDS < it.used <= now + 1][-MOST_SESSIONS:]
        return {it.hash: Session(it.user, users, it.used - began) for it in sessions}
