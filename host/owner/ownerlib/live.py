# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pages that are open: each is sent what changes, as long as its session is open and it reads."""

from __future__ import annotations

import asyncio
import json
from collections.abc import Awaitable, Callable
from typing import Any, Protocol

from ownerlib.sessions import Sessions

SIGN_SECONDS = 4  # between two signs of life


class OpenPage(Protocol):
    session_id: str

    def send(self, text: str) -> None:
        """Sends the text, or drops the page if it does not take what it was sent before."""

    def drop(self) -> None:
        """Ends the connection without waiting for the page."""


class Live:
    def __init__(self, sessions: Sessions) -> None:
        self._sessions = sessions
        self._pages: set[OpenPage] = set()

    def add(self, page: OpenPage) -> None:
        self._pages.add(page)

    def remove(self, page: OpenPage) -> None:
        self._pages.discard(page)

    def tell(self, section: str, value: Any) -> None:
        text = message(section, value)
        for page in list(self._pages):
            if self._sessions.is_open(page.session_id):
                page.send(text)
            else:
                page.drop()

    async def show_life(self, pause: Callable[[float], Awaitable[None]] = asyncio.sleep) -> None:
        """Sends each page a sign of life again and again, until cancelled: browsers hide pings from pages."""
        while True:
            await pause(SIGN_SECONDS)
            self.tell(*sign())

    def drop(self, session: str) -> None:
        """Drops the pages of a session that has ended."""
        for page in list(self._pages):
            if page.session_id == session:
                page.drop()


def sign() -> tuple[str, int]:
    """Returns the section and the value of a sign of life."""
    return "alive", SIGN_SECONDS


def message(section: str, value: Any) -> str:
    return json.dumps({"section": section} if value is None else {"section": section, "value": value})
