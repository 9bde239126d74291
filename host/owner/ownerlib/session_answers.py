# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Signing in and out."""

from __future__ import annotations

from ownerlib.answers import COOKIE, OpenAnswer, SignedIn
from ownerlib.sessions import Session


class SessionAnswer(SignedIn):
    def prepare(self) -> None:
        if self.request.method == "POST":  # nobody has a session before
            OpenAnswer.prepare(self)
        else:
            super().prepare()

    def get(self) -> None:
        self._tell(self.session)

    async def post(self) -> None:
        given = self.members({"user": str, "password": str})
        await self.host.logins.check(self.request.remote_ip or "", given["user"], given["password"])
        self.host.end_session(self.get_cookie(COOKIE, "") or "")
        name, session = self.host.sessions.begin(given["user"])
        self.set_cookie(COOKIE, name, path="/", httponly=True, samesite="Strict")
        self._tell(session)

    def delete(self) -> None:
        self.host.end_session(self.session_id)
        self.clear_cookie(COOKIE, path="/")
        self.finish_empty()

    def _tell(self, session: Session) -> None:
        self.finish({"user": session.user, "csrf": session.csrf})
