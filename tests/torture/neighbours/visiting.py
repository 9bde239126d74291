# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Visits to the share page, of clients that do not keep to the protocol."""

from __future__ import annotations

import json
import re
import socket
import struct
import time
from collections.abc import Callable
from pathlib import Path

PORT = 8080
PATIENCE = 20
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")
STREAM = APPLICATION / "hls/channel1"
SSID, TOKEN, PASSWORD = "00004711", "5ecre7", "0pen-Sesame"
HASH = "0123456789abcdef0123456789abcdef"
SECRETS = (TOKEN, PASSWORD, HASH)
QUESTION = {"ssid": SSID, "token": TOKEN, "password": PASSWORD}
STATUS = re.compile(rb"HTTP/1\.[01] (\d\d\d) ")

# What a client does from an address, and all bytes that it was answered with.
Visit = Callable[[str], bytes]


def connect(address: str, seconds: float = PATIENCE) -> socket.socket:
    return socket.create_connection(("127.0.0.1", PORT), seconds, (address, 0))


def everything(connection: socket.socket) -> bytes:
    """Reads up to the end of the connection."""
    received = bytearray()
    try:
        while part := connection.recv(65536):
            received += part
    except ConnectionError:
        pass
    return bytes(received)


def sends(*words: bytes, half_closed: bool = False) -> Visit:
    """Sends the words, a packet each, and reads all answers."""

    def visit(address: str) -> bytes:
        with connect(address) as connection:
            try:
                for word in words:
                    connection.sendall(word)
                if half_closed:
                    connection.shutdown(socket.SHUT_WR)
            except ConnectionError:
                pass  # the page has had enough
            return everything(connection)

    return visit


def head(method: str, target: str, *lines: str, version: str = "HTTP/1.1") -> bytes:
    text = "\r\n".join([f"{method} {target} {version}", "Host: h", *lines, "Connection: close", "", ""])
    return text.encode("latin-1")


def gets(target: str, *lines: str, method: str = "GET") -> Visit:
    return sends(head(method, target, *lines))


def posts(body: bytes | str, *lines: str) -> Visit:
    content = body.encode() if isinstance(body, str) else body
    return sends(head("POST", "/share/open", f"Content-Length: {len(content)}", *lines) + content)


def asks(**question: object) -> Visit:
    return posts(json.dumps({**QUESTION, **question}))


def again(visit: Visit, times: int) -> Visit:
    return lambda address: b"".join(visit(address) for _ in range(times))


def never_ends(begin: bytes, piece: bytes) -> Visit:
    """Sends a piece every half second until the page closes the connection."""

    def visit(address: str) -> bytes:
        with connect(address, 0.5) as connection:
            connection.sendall(begin)
            deadline = time.monotonic() + PATIENCE
            while time.monotonic() < deadline:
                try:
                    connection.sendall(piece)
                    if not connection.recv(1):
                        return b""
                except TimeoutError:
                    continue
                except ConnectionError:
                    return b""
        raise AssertionError("the page keeps the connection")

    return visit


def crowd(size: int, words: bytes = b"", resets: bool = False) -> Visit:
    """Many connections at once, which stay until all are there."""

    def visit(address: str) -> bytes:
        connections = [connect(address) for _ in range(size)]
        for connection in connections:
            try:
                connection.sendall(words)
            except ConnectionError:
                pass  # the page keeps only the latest
        answer = honest_answers()
        for connection in connections:
            if resets:
                connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            connection.close()
        return answer

    return visit


def honest_answers() -> bytes:
    """What somebody is answered who asks for the page, for whether the link is valid, and for the playlist."""
    visits = (gets("/share"), asks(), gets(f"/{HASH}/playlist.m3u8"))
    return b"".join(visit("127.0.0.1") for visit in visits)


def statuses(answers: bytes) -> list[int]:
    return [int(status) for status in STATUS.findall(answers)]
