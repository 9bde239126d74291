# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the answers of the interface have in common: who may ask, what a body may have, and how a problem is told."""

from __future__ import annotations

import asyncio
import hmac
from types import TracebackType
from typing import Any
from urllib.parse import urlsplit

from sharelib.answers import HEADERS, Answer
from statelib import event_log, problems
from statelib.members import Kinds, members
from statelib.problems import Problem

from ownerlib import log_lines
from ownerlib.cameras import channel_of, identity, name_of
from ownerlib.history import Act
from ownerlib.host import Host
from ownerlib.sessions import Session, token

COOKIE = "usbdev_session"
TOKEN = "X-CSRF-Token"
HARMLESS = ("GET", "HEAD")
POLICY = (
    "default-src 'self'",
    "img-src 'self' data:",
    "media-src 'self' blob:",
    "connect-src 'self'",
    "frame-ancestors 'none'",
    "base-uri 'none'",
    "form-action 'self'",
)
OWNERS_HEADERS = {**HEADERS, "Content-Security-Policy": "; ".join(POLICY)}


def is_from_elsewhere(origin: str | None, host: str) -> bool:
    """Checks whether a browser says that another site's page asks."""
    return origin is not None and urlsplit(origin).netloc.lower() != host.lower()


class OwnersAnswer(Answer):
    """Has the headers of the owner's pages."""

    def set_default_headers(self) -> None:
        for name, value in OWNERS_HEADERS.items():
            self.set_header(name, value)


class OpenAnswer(OwnersAnswer):
    """An answer of the interface that needs no session."""

    def initialize(self, host: Host) -> None:
        self.host = host

    def set_default_headers(self) -> None:
        super().set_default_headers()
        self.set_header("Cache-Control", "no-store")

    def prepare(self) -> None:
        super().prepare()
        if is_from_elsewhere(self.request.headers.get("Origin"), self.request.host):
            raise problems.forged()

    def members(self, required: Kinds, optional: Kinds | None = None) -> dict[str, Any]:
        """Returns the members of the body."""
        if self.request.headers.get("Content-Type", "").partition(";")[0].strip().lower() != "application/json":
            raise problems.invalid("The request is not JSON.")
        return members(self.body, required, optional)

    def finish_empty(self) -> None:
        self.set_status(204)
        self.finish()

    def log_exception(
        self, kind: type[BaseException] | None, problem: BaseException | None, trace: TracebackType | None
    ) -> None:
        if not isinstance(problem, Problem):
            super().log_exception(kind, problem, trace)

    def write_error(self, status_code: int, **details: Any) -> None:
        problem = details.get("exc_info", (None, None, None))[1]
        if not isinstance(problem, Problem):
            self.finish(problems.of_status(status_code))
            return
        self.set_status(problem.status)
        if "seconds" in problem.answer:
            self.set_header("Retry-After", problem.answer["seconds"])
        self.finish(problem.answer)


class SignedIn(OpenAnswer):
    """An answer for a user who is signed in. What changes something needs the session's token, which no other site knows."""

    session_id: str
    session: Session

    async def prepare(self) -> None:  # type: ignore[override]
        super().prepare()
        self.session_id = self.get_cookie(COOKIE, "") or ""
        session = self.host.sessions.find(self.session_id)
        if session is None:
            raise problems.signed_out()
        self.session = session
        given = self.request.headers.get(TOKEN, "")
        if self.request.method in HARMLESS:
            return
        if not hmac.compare_digest(given.encode(), token(self.session_id).encode()):
            raise problems.forged()
        self._before = self.host.picture.known  # what is changed may have another name afterwards, or none
        self._logged_before = await asyncio.to_thread(event_log.newest_id)

    async def did(self, act: str, where: dict[str, int], switched: dict[str, int] | None = None, **values: Any) -> None:
        """Keeps for the list of events what the user did, and of which channel or profile; `switched` is where else something
        has changed for it. Every change leaves one."""
        channel, changed = (channel_of(self._before, **one) for one in (where, switched or where))
        profile = where.get("profile", values.get("profile", changed and changed["profile"]))
        lines = await asyncio.to_thread(self._logged, changed["port"] if changed else None, profile)
        self.host.recorder.did(Act(act, self.session.user, identity(channel) if channel else None, values, lines))

    def camera(self, **where: int) -> dict[str, str] | None:
        """Returns what the camera of a channel or of a profile was called before the request, and its port."""
        channel = channel_of(self._before, **where)
        return channel and {"name": name_of(channel), "port": channel["port"]}

    def _logged(self, port: str | None, profile: int | None) -> list[dict[str, Any]]:
        """Returns what the library has logged of the camera since the request came. A warning stays an event of its own."""
        if self._logged_before is None:
            return []
        found = event_log.following(self._logged_before, event_log.MOST_EVENTS)
        return [one for one in found if one["severity"] == "information" and log_lines.is_about(one["text"], port, profile)]


class SignedInSocket(SignedIn):
    """A WebSocket for a user who is signed in."""

    async def prepare(self) -> None:  # type: ignore[override]
        await super().prepare()
        if self.request.headers.get("Upgrade", "").lower() != "websocket":
            raise problems.invalid("This is for a WebSocket.")


class NothingHere(OpenAnswer):
    def prepare(self) -> None:
        raise problems.not_found()
