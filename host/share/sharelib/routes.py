# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the share page answers to its visitors, who have no account."""

from __future__ import annotations

import asyncio
import json
from pathlib import Path
from typing import Any

from servicelib.attempts import Attempts
from servicelib.places import APPLICATION
from tornado.web import HTTPError

from sharelib import live, streams, verdict
from sharelib.answers import Answer, PageFile
from sharelib.feed import Feeds
from sharelib.library import Library
from sharelib.verdict import Verdict

HERE = Path(__file__).resolve().parent.parent
PAGE = HERE / "page"
WEB = HERE.parent / "web"  # what all web pages share


class Page(Answer):
    """Sends the page, which is the same for every link; its script reads the link and asks."""

    def get(self) -> None:
        self.write((PAGE / "share.html").read_bytes())

    head = get


class Question(Answer):
    """Answers whether the link is valid; the request is a JSON object with ssid, token and password."""

    def initialize(self, library: Library, attempts: Attempts, turn: asyncio.Lock) -> None:
        self.library = library
        self.attempts = attempts
        self.turn = turn

    async def post(self) -> None:
        ssid, token, password = self._texts("ssid", "token", "password")
        # A wrong attempt is counted before the next one is checked; the library answers one question at a time anyway.
        async with self.turn:
            judged = await self._judge(ssid, token, password)
        self.set_header("Cache-Control", "no-store")
        if judged.pause:
            self.set_status(429)
            self.set_header("Retry-After", judged.pause)
        self.write(judged.answer)

    async def _judge(self, ssid: str, token: str, password: str) -> Verdict:
        visitor = (self.request.remote_ip or "", ssid)
        pause = self.attempts.pause(visitor)
        if pause:
            return verdict.paused(pause)
        # The library may have to wait for the configuration; files are served meanwhile.
        judged = await asyncio.to_thread(verdict.judge, self.library, ssid, token, password)
        if judged.is_wrong:
            self.attempts.add_wrong(visitor)
        return judged

    def _texts(self, *names: str) -> list[str]:
        try:
            question = json.loads(self.body)
            return [_text(question[name]) for name in names]
        except (ValueError, TypeError, KeyError, RecursionError) as problem:
            raise HTTPError(400) from problem


def _text(value: object) -> str:
    """Raises ValueError unless the value is a text that can be sent."""
    if not isinstance(value, str) or "\0" in value:
        raise ValueError
    value.encode()
    return value


def routes(library: Library, feeds: Feeds) -> list[Any]:
    question = {"library": library, "attempts": Attempts(), "turn": asyncio.Lock()}
    return [
        (r"/share", Page),
        (r"/share/open", Question, question),
        (r"/share/(colours\.js|design\.css|favicon\.svg|live-player\.js|texts\.js)", PageFile, {"path": WEB}),
        (r"/share/(share\.(?:css|js)|texts/[a-z]+\.json)", PageFile, {"path": PAGE}),
        *live.routes(feeds),
        (streams.ROUTE, streams.StreamFile, {"path": APPLICATION}),
    ]
