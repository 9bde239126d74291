# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Signing in and out."""

from __future__ import annotations

from statelib.problems import Problem

from ownerlib.answers import COOKIE, OpenAnswer, SignedIn
from ownerlib.history import REFUSED, Act
from ownerlib.sessions import token


class SessionAnswer(SignedIn):
    async def prepare(self) -> None:  # type: ignore[override]
        if self.request.method == "POST":  # nobody has a session before
            OpenAnswer.prepare(self)
        else:
            await super().prepare()

    def get(self) -> None:
        self._tell(self.session_id, self.session.user)

    async def post(self) -> None:
        given = self.members({"user": str, "password": str})
        users = self.host.sessions.users()
        await self._check(given["user"], given["password"])
        self.host.end_session(self.get_cookie(COOKIE, "") or "")
        name = self.host.sessions.begin(given["user"], users)
        await self.host.sessions.keep()
        self.host.recorder.did(Act("signed_in", given["user"]))
        self.set_cookie(COOKIE, name, path="/", httponly=True, samesite="Strict")
        self._tell(name, given["user"])

    async def delete(self) -> None:
        self.host.end_session(self.session_id)
        await self.host.sessions.keep()  # before the user is told so
        self.host.recorder.did(Act("signed_out", self.session.user))
        self.clear_cookie(COOKIE, path="/")
        self.finish_empty()

    async def _check(self, user: str, password: str) -> None:
        address = self.request.remote_ip or ""
        try:
            await self.host.logins.check(address, user, password)
        except Problem as problem:
            if problem.answer["error"] == "wrong_password":  # without the name: some enter their password there
                self.host.recorder.did(Act(REFUSED, None, values={"address": address}))
            raise

    def _tell(self, name: str, user: str) -> None:
        self.finish({"user": user, "csrf": token(name)})
