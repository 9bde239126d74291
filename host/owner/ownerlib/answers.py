# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the answers of the interface have in common: who may ask, what a body may have, and how a problem is told."""

from __future__ import annotations

import hmac
import json
from types import TracebackType, UnionType
from typing import Any, get_args
from urllib.parse import urlsplit

from sharelib.answers import HEADERS, Answer

from ownerlib import problems
from ownerlib.host import Host
from ownerlib.problems import Problem
from ownerlib.sessions import Session

COOKIE = "usbdev_session"
TOKEN = "X-CSRF-Token"
HARMLESS = ("GET", "HEAD")
Kind = type | UnionType
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

    def members(self, required: dict[str, Kind], optional: dict[str, Kind] | None = None) -> dict[str, Any]:
        """Returns the members of the body; raises Problem for one that is missing, unknown or of another kind."""
        kinds = {**required, **(optional or {})}
        found = self._object()
        if missing := [name for name in required if name not in found]:
            raise problems.invalid(f"The request lacks {missing[0]}.")
        for name, value in found.items():
            if name not in kinds or not _is(value, kinds[name]):
                raise problems.invalid(f"The request has no proper {name}." if name in kinds else "The request has a member too many.")
        return found

    def _object(self) -> dict[str, Any]:
        if self.request.headers.get("Content-Type", "").partition(";")[0].strip().lower() != "application/json":
            raise problems.invalid("The request is not JSON.")
        try:
            found = json.loads(self.body)
        except (ValueError, RecursionError):
            found = None
        if not isinstance(found, dict):
            raise problems.invalid("The request is not a JSON object.")
        return found

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

    def prepare(self) -> None:
        super().prepare()
        self.session_id = self.get_cookie(COOKIE, "") or ""
        session = self.host.sessions.find(self.session_id)
        if session is None:
            raise problems.signed_out()
        self.session = session
        given = self.request.headers.get(TOKEN, "")
        if self.request.method not in HARMLESS and not hmac.compare_digest(given.encode(), session.csrf.encode()):
            raise problems.forged()


class SignedInSocket(SignedIn):
    """A WebSocket for a user who is signed in."""

    def prepare(self) -> None:
        super().prepare()
        if self.request.headers.get("Upgrade", "").lower() != "websocket":
            raise problems.invalid("This is for a WebSocket.")


class NothingHere(OpenAnswer):
    def prepare(self) -> None:
        raise problems.not_found()


def _is(value: object, kind: Kind) -> bool:
    """Checks that a value has the kind, and that a text can be passed on. No truth value is a number."""
    if isinstance(kind, UnionType):
        return any(_is(value, one) for one in get_args(kind))
    if kind is str:
        return isinstance(value, str) and _can_be_passed_on(value)
    if kind is float:
        return isinstance(value, (int, float)) and not isinstance(value, bool)
    return type(value) is kind


def _can_be_passed_on(text: str) -> bool:
    try:
        text.encode()
    except UnicodeError:
        return False
    return "\0" not in text
