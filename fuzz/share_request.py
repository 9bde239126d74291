# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The share page, without a network: what a visitor sends reaches the page's own server, and its answers are judged."""

from __future__ import annotations

import asyncio
import logging
import re
import sys
from collections.abc import Callable
from pathlib import Path
from typing import Any

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "host/share"), str(HERE.parent / "host/services")]
from servicelib.attempts import Attempts
from servicelib.http import Server
from sharelib import routes, service, streams, verdict
from sharelib.library import Link
from tornado.iostream import BaseIOStream
from usbdev import ViewerCode

SSID, TOKEN, PASSWORD = "00004711", "cafe", "open sesame"
STREAM = "0123456789abcdef0123456789abcdef"  # another link there leads out of the streams
SECRET = (HERE / "share_files/secret.m3u8").read_bytes()
CONTINUE = 100  # the body may be sent; this has no headers
STATUSES = {CONTINUE, 200, 206, 304, 400, 404, 405, 413, 416, 429}
HEAD = re.compile(rb"HTTP/1\.1 (\d{3}) [^\r\n]*\r\n(.*?)\r\n\r\n", re.DOTALL)
HEADERS = (b"X-Content-Type-Options: nosniff", b"frame-ancestors 'none'", b"Referrer-Policy: no-referrer")


class OneLink:
    """A library with one share link."""

    def open(self, ssid: str, token: str) -> tuple[int, Link | None]:
        if ssid != SSID:
            return ViewerCode.UNKNOWN_SHARE_ID, None
        if token != TOKEN:
            return ViewerCode.WRONG_TOKEN, None
        return ViewerCode.OPENS, Link("Door", STREAM, PASSWORD.encode())


class Visit(BaseIOStream):
    """A connection on which everything that the visitor sends has arrived."""

    socket = None

    def __init__(self, request: bytes) -> None:
        super().__init__()
        self.left, self.answer = request, b""

    def read_from_fd(self, buf: bytearray | memoryview) -> int | None:
        taken, self.left = self.left[: len(buf)], self.left[len(buf) :]
        buf[: len(taken)] = taken
        return len(taken) or None

    def write_to_fd(self, data: memoryview) -> int:
        self.answer += data
        return len(data)

    def is_over(self) -> bool:
        return self.closed() or (self.reading() and not self.left)

    def close_fd(self) -> None: ...

    def _add_io_state(self, state: int) -> None: ...


class Findings(logging.Handler):
    """What the page reports as an error of its own."""

    def __init__(self) -> None:
        super().__init__(logging.ERROR)
        self.found: list[str] = []

    def emit(self, record: logging.LogRecord) -> None:
        self.found.append(self.format(record))


async def at_once(function: Callable[..., Any], *arguments: Any) -> Any:
    """Takes the place of asyncio.to_thread."""
    return function(*arguments)


def judge(links: verdict.Links, ssid: str, token: str, password: str) -> verdict.Verdict:
    judged = decide(links, ssid, token, password)
    assert (judged.answer["outcome"] == "plays") == ((ssid, token, password) == (SSID, TOKEN, PASSWORD))
    return judged


async def answer_to(request: bytes) -> bytes:
    visit = Visit(request)
    server.handle_stream(visit, ("192.0.2.1", 4711))
    while not visit.is_over():
        await asyncio.sleep(0)
    visit.close()
    await server.close_all_connections()
    return visit.answer


def one_input(request: bytes) -> str:
    attempts._wrong.clear()
    answer = loop.run_until_complete(answer_to(request))
    assert not findings.found, findings.found
    for status, head in HEAD.findall(answer):
        assert int(status) in STATUSES, answer
        assert int(status) == CONTINUE or all(header in head for header in HEADERS), head
    assert SECRET not in answer, "only streams are served"
    return ""


decide, verdict.judge = verdict.judge, judge
asyncio.to_thread = at_once
streams.APPLICATION, streams.STREAMS = HERE / "share_files", HERE / "share_files/hls"
findings = Findings()
logging.getLogger().addHandler(findings)
logging.disable(logging.WARNING)  # what cannot be read is no error of the page
loop = asyncio.new_event_loop()
asyncio.set_event_loop(loop)
attempts = Attempts(lambda: 0.0)
routes.Attempts = lambda: attempts
server = Server(service.application(OneLink()), max_body_size=sys.maxsize)
