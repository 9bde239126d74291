"""The HTTP server of the services."""

from __future__ import annotations

from collections.abc import Awaitable

from tornado.httpserver import HTTPServer
from tornado.httputil import HTTPHeaders, HTTPMessageDelegate, RequestStartLine
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


class Server(HTTPServer):
    """Refuses bodies in chunks, because tornado hangs for all clients at one of negative length."""

    def handle_stream(self, stream: IOStream, address: tuple[str, int]) -> None:
        write = stream.write
        stream.write = lambda data: write(REFUSAL if data == BARE_REFUSAL else data)  # no handler runs for these
        super().handle_stream(stream, address)

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
