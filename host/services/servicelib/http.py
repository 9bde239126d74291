"""The HTTP server of the services."""

from __future__ import annotations

from collections.abc import Awaitable

from tornado.httpserver import HTTPServer
from tornado.httputil import HTTPHeaders, HTTPMessageDelegate, RequestStartLine


class Server(HTTPServer):
    """Refuses bodies in chunks: tornado reads a chunk of a negative length for ever, and serves nobody meanwhile."""

    def start_request(self, *connection: object) -> HTTPMessageDelegate:
        return _WithoutChunks(super().start_request(*connection))


class _WithoutChunks(HTTPMessageDelegate):
    def __init__(self, request: HTTPMessageDelegate) -> None:
        self._request = request

    def headers_received(self, start_line: RequestStartLine, headers: HTTPHeaders) -> Awaitable[None] | None:
        if "Transfer-Encoding" in headers:
            # tornado answers a head that has both with status 400, and closes the connection.
            headers["Content-Length"] = "0"
            self._request = HTTPMessageDelegate()  # which does nothing
        return self._request.headers_received(start_line, headers)

    def data_received(self, chunk: bytes) -> Awaitable[None] | None:
        return self._request.data_received(chunk)

    def finish(self) -> None:
        self._request.finish()

    def on_connection_close(self) -> None:
        self._request.on_connection_close()
