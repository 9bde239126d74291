# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The WebSocket on which a page gets the state, and then what changes."""

from __future__ import annotations

from statelib.picture import AWAY
from statelib.problems import Problem
from tornado.iostream import IOStream, StreamBufferFullError
from tornado.websocket import WebSocketClosedError, WebSocketHandler

from ownerlib.answers import SignedInSocket
from ownerlib.live import message, sign

MOST_WAITING = 1 << 19  # bytes that a page has not taken yet; more than twice the largest message


class LiveAnswer(SignedInSocket, WebSocketHandler):
    async def open(self, *_: str, **__: str) -> None:
        assert self.ws_connection is not None
        self.set_nodelay(True)
        self._stream: IOStream = self.ws_connection.stream  # type: ignore[assignment] # until it is closed
        self._stream.max_write_buffer_size = MOST_WAITING
        try:
            first = message("state", await self.host.state())
        except Problem:
            first = message(AWAY, None)
        if not self._stream.closed():
            self.host.live.add(self)
            self.send(first)
            self.send(message(*sign()))

    def on_message(self, text: str | bytes) -> None:
        """A page has nothing to say here."""
        self.drop()

    def on_close(self) -> None:
        self.host.live.remove(self)

    def send(self, text: str) -> None:
        try:
            self.write_message(text)
        except (StreamBufferFullError, WebSocketClosedError):
            self.drop()

    def drop(self) -> None:
        self.host.live.remove(self)
        self._stream.close()
