# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Logins, which the host's login service decides. The program asks it, because the library's function for that ends the
process that calls it when the connection breaks."""

from __future__ import annotations

import asyncio

from servicelib.attempts import Attempts
from statelib import problems, program

LONGEST = 64  # bytes of a user's name or password, as for login-users


class Logins:
    """One login at a time, and a few wrong ones per minute from an address."""

    def __init__(self) -> None:
        self._attempts = Attempts()
        self._turn = asyncio.Lock()

    async def check(self, address: str, user: str, password: str) -> None:
        """Raises Problem unless the host accepts the user."""
        # A wrong attempt is counted before the next one is checked.
        async with self._turn:
            pause = self._attempts.pause((address, ""))
            if pause:
                raise problems.too_many(pause)
            if not await _is_user(user, password):
                self._attempts.add_wrong((address, ""))
                raise problems.wrong_password()


async def _is_user(user: str, password: str) -> bool:
    if not all(_is_line(text) for text in (user, password)):
        return False
    done = await program.run("login", "--", user, secret=password)
    return done.status == program.OK


def _is_line(text: str) -> bool:
    """Checks that a text is one line that the login service could accept."""
    return 0 < len(text.encode()) <= LONGEST and not set(text) & {"\0", "\n", "\r"}
