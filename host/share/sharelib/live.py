# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Sends a stream as it comes, over a WebSocket: its type as a text, then its begin and its fragments. The connection ends
when the stream, or the right to see it, ends."""

from __future__ import annotations

import os
from asyncio import Future
from collections.abc import Callable
from pathlib import Path
from typing import Any

from servicelib.places import APPLICATION, STREAMS
from tornado.web import HTTPError
from tornado.websocket import WebSocketClosedError, WebSocketHandler

from sharelib.answers import Answer
from sharelib.feed import Feeds

ROUTE = r"/([0-9a-f]{32})/live"
# A viewer for whom more is waiting has fallen behind; the page connects again and continues with what is new.
MOST_UNSENT = 2 << 20
# Without a sign of life from a viewer for three times as long, the connection ends.
PING_SECONDS = 10
LONGEST_SIGN = 125  # viewers only watch


class LiveAnswer(Answer, WebSocketHandler):
    """One who watches a shared stream."""

    def initialize(self, feeds: Feeds) -> None:
        self._feeds = feeds
        self._unsent = 0

    def folder(self) -> Path | None:
        """Returns the folder of the stream, if this visitor may see it now."""
        leads_to = Path(os.path.realpath(APPLICATION / self.path_args[0]))
        return leads_to if leads_to.parent == STREAMS else None

    @property
    def max_message_size(self) -> int:
        return LONGEST_SIGN

    @property
    def ping_interval(self) -> float:
        return PING_SECONDS

    async def get(self, *_: str) -> None:
        folder = self.folder()
        if folder is None:
            raise HTTPError(404)
        self._folder = folder
        await super().get()

    head = get

    def open(self, *_: str, **__: str) -> None:
        try:
            self._feeds.join(self._folder, self)
        except OSError:
            self.close()

    def send(self, message: str | bytes) -> None:
        """Sends a fragment; ends if the right to see it has ended, or too little of the last ones has arrived."""
        if self._unsent > MOST_UNSENT or self.folder() != self._folder:
            self.end()
            return
        try:
            sent = self.write_message(message, binary=isinstance(message, bytes))
        except WebSocketClosedError:
            return
        self._unsent += len(message)
        sent.add_done_callback(self._arrived(len(message)))

    def _arrived(self, size: int) -> Callable[[Future[None]], None]:
        def note(sent: Future[None]) -> None:
            self._unsent -= size
            sent.exception()  # the end of the connection is no news

        return note

    def end(self) -> None:
        self._feeds.leave(self._folder, self)
        self.close()

    def on_message(self, message: str | bytes) -> None:
        self.end()

    def on_close(self) -> None:
        self._feeds.leave(self._folder, self)


def routes(feeds: Feeds) -> list[Any]:
    return [(ROUTE, LiveAnswer, {"feeds": feeds})]
