# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A page that is open: what it gets on its WebSocket."""

from __future__ import annotations

import asyncio
import json
import socket
from typing import Any

from client import API, Client, validate
from tornado.httpclient import HTTPClientError, HTTPRequest
from tornado.websocket import WebSocketClientConnection, websocket_connect

PATIENCE_SECONDS = 30
ADDRESS = f"ws://127.0.0.1:8080{API}/live"


class OpenPage:
    def __init__(self, connection: WebSocketClientConnection) -> None:
        self._connection = connection

    async def message(self) -> dict[str, Any] | None:
        """The next message, which is one that the document describes; None at the end. Signs of life come at any time."""
        while (found := await self.any_message()) and found["section"] == "alive":
            pass
        return found

    async def any_message(self) -> dict[str, Any] | None:
        text = await asyncio.wait_for(self._connection.read_message(), PATIENCE_SECONDS)
        if text is None:
            return None
        found = json.loads(text)
        validate(found, {"$ref": "schemas/state.yaml#/LiveMessage"})
        return dict(found)

    async def until(self, section: str) -> Any:
        """The value of the next message of that section."""
        while (found := await self.message()) is not None:
            if found["section"] == section:
                return found.get("value")
        raise AssertionError(f"no {section} came")

    async def send(self, text: str) -> None:
        await self._connection.write_message(text)


async def open_page(client: Client, **headers: str) -> OpenPage:
    return OpenPage(await websocket_connect(HTTPRequest(ADDRESS, headers={"Cookie": client.cookie, **headers})))


async def refusal(client: Client, **headers: str) -> int:
    """The status with which a page is refused."""
    try:
        await open_page(client, **headers)
    except HTTPClientError as problem:
        return problem.code
    raise AssertionError("it was not refused")


def silent_page(client: Client) -> socket.socket:
    """A page that takes nothing of what it is sent."""
    visit = socket.socket()
    visit.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
    visit.connect(("127.0.0.1", 8080))
    visit.settimeout(PATIENCE_SECONDS)
    visit.sendall((f"GET {API}/live HTTP/1.1\r\nHost: 127.0.0.1:8080\r\nCookie: {client.cookie}\r\nUpgrade: websocket\r\n"
                   "Connection: Upgrade\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\nSec-WebSocket-Version: 13\r\n\r\n").encode())
    return visit
