# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The HTTP server of the services."""

from __future__ import annotations

import re
import resource
from collections import deque
from collections.abc import Awaitable, Iterable
from socket import socket
from typing import Any

from tornado.http1connection import HTTP1ServerConnection
from tornado.httpserver import HTTPServer
from tornado.httputil import HTTPHeaders, HTTPMessageDelegate, RequestStartLine, ResponseStartLine
from tornado.iostream import IOStream


# What tornado answers to a request that it cannot read, and the same answer with the headers of all others.
BARE_REFUSAL = b"HTTP/1.1 400 Bad Request\r\n\r\n"
REFUSAL = (
    b"HTTP/1.1 400 Bad Request\r\n"
    b"X-Content-Type-Options: nosniff\r\n"
    b"Content-Security-Policy: frame-ancestors 'none'\r\n"
    b"Referrer-Policy: no-referrer\r\n"
    b"Content-Length: 0\r\n"
    b"Connection: close\r\n"
    b"\r\n"
)
# Of those with requests, and of those that have become WebSockets; the pages of many viewers load without ending others.
MOST_CONNECTIONS = 400
# Each may have a file open too. Without descriptors nobody would be accepted.
DESCRIPTORS = 4 * MOST_CONNECTIONS
# The kernel lets no more wait on most hosts. When its queue is full, a visitor tries again only after a second.
MOST_WAITING = 4096
HEADER_NAME = re.compile(r"[!#$%&'*+.^_`|~0-9A-Za-z-]+")
LENGTH = re.compile(r"[0-9]+(,[0-9]+)*")  # of two that are the same tornado makes one text


class Server(HTTPServer):
    """Keeps the latest connections, and refuses what programs in between could understand otherwise: bodies in chunks,
    at which tornado also hangs for all clients if a length is negative, and heads that HTTP forbids."""

    def initialize(self, *arguments: Any, **settings: Any) -> None:
        super().initialize(*arguments, **settings)
        self._with_requests = _Latest()
        self._upgraded = _Latest()

    def listen(self, port: int, address: str) -> None:  # type: ignore[override]
        super().listen(port, address, backlog=MOST_WAITING)

    def add_sockets(self, sockets: Iterable[socket]) -> None:
        now, most = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (max(now, min(DESCRIPTORS, most)), most))
        super().add_sockets(sockets)

    def handle_stream(self, stream: IOStream, address: tuple[Any, ...]) -> None:
        self._with_requests.add(stream)
        write = stream.write
        # No handler runs for these.
        stream.write = lambda data: write(REFUSAL if data == BARE_REFUSAL else data)  # type: ignore[assignment]
        super().handle_stream(stream, address)

    def on_close(self, connection: HTTP1ServerConnection) -> None:  # type: ignore[override]
        """Notes that no more requests come. A connection that is still open has become a WebSocket."""
        super().on_close(connection)
        self._with_requests.remove(connection.stream)
        if not connection.stream.closed():
            self._upgraded.add(connection.stream)

    def start_request(self, *connection: Any) -> HTTPMessageDelegate:
        return _OrRefusal(super().start_request(*connection))


class _Latest:
    """Connections, of which it keeps the latest, because whoever opens thousands of them keeps others out otherwise."""

    def __init__(self) -> None:
        self._streams: deque[IOStream] = deque()  # the oldest is the first

    def add(self, stream: IOStream) -> None:
        if len(self._streams) >= MOST_CONNECTIONS:
            self._streams = deque(stream for stream in self._streams if not stream.closed())
        if len(self._streams) >= MOST_CONNECTIONS:
            self._streams.popleft().close()
        self._streams.append(stream)

    def remove(self, stream: IOStream) -> None:
        if stream in self._streams:
            self._streams.remove(stream)


def _is_proper(headers: HTTPHeaders) -> bool:
    """Checks that every reader of the head finds the same names and the same end of the body."""
    return (
        "Transfer-Encoding" not in headers
        and LENGTH.fullmatch(headers.get("Content-Length", "0")) is not None
        and all(HEADER_NAME.fullmatch(name) and "\0" not in value for name, value in headers.get_all())
    )


class _OrRefusal(HTTPMessageDelegate):
    def __init__(self, request: HTTPMessageDelegate) -> None:
        self._request = request

    def headers_received(
        self, start_line: RequestStartLine | ResponseStartLine, headers: HTTPHeaders
    ) -> Awaitable[None] | None:
        if not _is_proper(headers):
            # tornado answers a head that has both with status 400, and closes the connection.
            headers["Content-Length"], headers["Transfer-Encoding"] = "0", "chunked"
            self._request = HTTPMessageDelegate()  # which does nothing
        return self._request.headers_received(start_line, headers)

    def data_received(self, chunk: bytes) -> Awaitable[None] | None:
        return self._request.data_received(chunk)

    def finish(self) -> None:
        self._request.finish()

    def on_connection_close(self) -> None:
        self._request.on_connection_close()
