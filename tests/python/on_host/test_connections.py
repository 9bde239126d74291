# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Connections to a web server, and logins, as the server sees them; sizes and sockets that cannot be."""

from __future__ import annotations

import os
import re
import socket
import threading
from collections.abc import Iterator

import pytest
from usbdev import NasServer, UsbdevError, web

ADDRESS = "127.0.0.1"
PATIENCE_SECONDS = 20


class Server:
    """Answers each connection with the next reply."""

    def __init__(self, port: int, replies: list[str]) -> None:
        self.requests: list[str] = []
        self._replies = replies
        self._socket = socket.create_server((ADDRESS, port))
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    @property
    def port(self) -> int:
        return int(self._socket.getsockname()[1])

    def _serve(self) -> None:
        for reply in self._replies:
            connection, _ = self._socket.accept()
            with connection:
                connection.settimeout(PATIENCE_SECONDS)
                self.requests.append(self._request(connection))
                connection.sendall(reply.encode())

    @staticmethod
    def _request(connection: socket.socket) -> str:
        """All lines up to an empty one: the client sends them one by one, and a reply to the first would be too early."""
        text = ""
        while not re.search(r"\r?\n\r?\n$", text):
            line = connection.recv(4096).decode()
            assert line, text
            text += line
        return text

    def stop(self) -> None:
        self._thread.join(PATIENCE_SECONDS)
        self._socket.close()
        assert not self._thread.is_alive()


@pytest.fixture
def serve() -> Iterator:
    servers: list[Server] = []

    def start(*replies: str, port: int = 0) -> Server:
        servers.append(Server(port, list(replies)))
        return servers[-1]

    yield start
    for server in servers:
        server.stop()


@pytest.fixture
def closed_port() -> int:
    with socket.create_server((ADDRESS, 0)) as taken:
        return int(taken.getsockname()[1])


def test_a_page_is_requested_and_read(serve) -> None:
    server = serve("HTTP/1.0 200 OK\n\n\n\nline\nrest", port=80)
    sock = web.open_connection(ADDRESS)
    web.send_request(sock, ADDRESS, "/page", "ann", "secret")
    web.skip_head(sock)
    assert (web.read_line(sock), web.receive(sock, 9)) == (b"line", b"rest")
    web.close_connection(sock)
    with pytest.raises(UsbdevError):
        web.send(sock, "after the end")
    server.stop()
    assert "/page" in server.requests[0] and web.authorization("ann", "secret") in server.requests[0]


def test_a_host_that_does_not_answer_cannot_be_opened() -> None:
    with pytest.raises(UsbdevError, match="http_open returned -1"):
        web.open_connection(ADDRESS)


def test_a_request_with_a_text_that_is_too_long_is_not_sent() -> None:
    ours, theirs = socket.socketpair()
    with ours, theirs:
        for path, password in (("/" * 2048, ""), ("/", "x" * 129)):
            with pytest.raises(UsbdevError, match="http_send_cmd returned -1"):
                web.send_request(ours.fileno(), ADDRESS, path, "", password)
        theirs.setblocking(False)
        with pytest.raises(BlockingIOError):
            theirs.recv(1)


def test_a_reply_that_is_no_success_is_a_failure() -> None:
    ours, theirs = socket.socketpair()
    with ours, theirs:
        theirs.sendall(b"HTTP/1.0 404 Not Found\n\n\n\n")
        with pytest.raises(UsbdevError, match="http_skip_nvr_http_header returned -2"):
            web.skip_head(ours.fileno())


@pytest.mark.parametrize("size", [4, 9, 100])
def test_a_reply_is_cut_to_the_size(serve, size: int) -> None:
    web.set_request_path("/asked")
    reply = "the reply"
    server = serve(reply)
    assert web.connect(NasServer(ADDRESS, server.port), size) == reply.encode()[:size]
    server.stop()
    assert "/asked" in server.requests[0]


def test_a_session_is_opened_checked_and_closed(serve) -> None:
    opened, valid = "<authSid><![CDATA[s1d]]></authSid>", "<authPassed><![CDATA[1]]></authPassed>"
    server = serve(opened, valid, "no", "bye")
    host = NasServer(ADDRESS, server.port, "ann", "secret")
    assert web.log_in(host) == "s1d"
    assert (web.is_session(host, "s1d"), web.is_session(host, "other")) == (True, False)
    web.log_out(host, "s1d")
    server.stop()
    assert [next(word for word in ("authLogout", "sid=", "authLogin") if word in it) for it in server.requests] == [
        "authLogin", "sid=", "sid=", "authLogout"]  # fmt: skip


def test_without_a_server_nobody_logs_in_or_out(closed_port: int) -> None:
    host = NasServer(ADDRESS, closed_port, "ann", "secret")
    for call in (lambda: web.log_in(host), lambda: web.log_out(host, "s1d"), lambda: web.connect(host, 9)):
        with pytest.raises(UsbdevError, match="returned -1"):
            call()
    assert not web.is_session(host, "s1d")


def test_a_server_has_a_name_and_a_password_that_fit() -> None:
    for server in (NasServer("h" * 500, 80), NasServer(ADDRESS, 80, password="x" * 500)):
        with pytest.raises(ValueError, match="at most"):
            web.connect(server, 9)


@pytest.mark.parametrize("size", [-2, -1])
def test_a_size_below_zero_is_refused(size: int) -> None:
    ours, theirs = socket.socketpair()
    with ours, theirs:
        theirs.sendall(b"bytes")
        for call in (
            lambda: web.receive(ours.fileno(), size),
            lambda: web.read_line(ours.fileno(), size),
            lambda: web.connect(NasServer(ADDRESS, 80), size),
        ):
            with pytest.raises((ValueError, UsbdevError)):
                call()
        assert web.receive(ours.fileno(), 0) == b"" and web.receive(ours.fileno(), 9) == b"bytes"


def test_a_socket_that_is_closed_cannot_be_used() -> None:
    for call in (lambda: web.receive(-1, 9), lambda: web.read_line(-1), lambda: web.send(-1, "text"), lambda: web.skip_head(-1)):
        with pytest.raises(UsbdevError):
            call()
    web.close_connection(-1)


def test_an_error_of_the_library_ends_the_process_with_status_0(capfd: pytest.CaptureFixture[str]) -> None:
    if (child := os.fork()) == 0:
        try:
            web.exit_with_error("the end")
        finally:
            os._exit(1)
    assert os.waitpid(child, 0)[1] == 0
    assert capfd.readouterr().err.startswith("the end")
