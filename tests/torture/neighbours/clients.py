# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hostile clients of the share page."""

from __future__ import annotations

import gzip
import json
import os
import socket
import threading
from collections.abc import Sequence
from itertools import chain
from unittest.mock import call, patch

from row import Outcome, Row
from sharelib import verdict
from sharelib.library import Link
from thoroughness import times
from usbdev import ViewerCode
from visiting import (
    HASH, PASSWORD, QUESTION, SSID, STREAM, TOKEN, Visit, again, asks, connect, crowd, everything, gets, head,
    never_ends, posts, sends,
)  # fmt: skip

THOUSANDS, MANY = times(1000, 3000), times(450, 3000)
SEGMENT = f"/{HASH}/7.ts"
PLAYLIST = f"/{HASH}/playlist.m3u8"
TEXT = json.dumps(QUESTION)

SHOWN = Outcome("200", 200)
TAKEN = Outcome("200, the question is answered", 200)
BAD = Outcome("400", 400)
NOT_THERE = Outcome("404", 404)
NOT_ALLOWED = Outcome("405", 405)
NO_ANSWER = Outcome("the connection is closed without an answer", None)
GIVEN_UP = Outcome("the connection is closed after ten seconds", None)
HONEST = Outcome("an honest client is answered meanwhile", 200, "200 200 200")


def rows(meets: str, *stated: tuple) -> list[Row]:  # type: ignore[type-arg]
    return [Row(name, meets, visit, *rest) for name, visit, *rest in stated]


def outgoing(*words: bytes) -> Visit:
    """Says the words and leaves without waiting for an answer."""

    def visit(address: str) -> bytes:
        with connect(address) as connection:
            for word in words:
                connection.sendall(word)
        return b""

    return visit


def lets_ask(address: str) -> bytes:
    """Wants to be asked for its body, and leaves when it is."""
    with connect(address) as connection:
        connection.sendall(head("POST", "/share/open", "Content-Length: 9", "Expect: 100-continue"))
        asked = connection.recv(1000)
        connection.shutdown(socket.SHUT_WR)
        return asked + everything(connection)


def reads_nothing(address: str) -> bytes:
    """Asks for what does not fit into the sockets, on many connections."""
    connections = [connect(address) for _ in range(times(20, 100))]
    for connection in connections:
        connection.sendall(head("GET", f"/{HASH}/large.ts"))
    answer = gets("/share")("127.0.0.1")
    for connection in connections:
        connection.close()
    return answer


def revokes_meanwhile(address: str) -> bytes:
    """Begins to read a large file; meanwhile its link is taken away."""
    link = STREAM.parents[1] / HASH
    with connect(address) as connection:
        connection.sendall(head("GET", f"/{HASH}/large.ts"))
        begin = connection.recv(1000)
        link.unlink()
        whole = begin + everything(connection)
        after = gets(f"/{HASH}/large.ts")(address)
    link.symlink_to(STREAM)
    assert len(whole) > (STREAM / "large.ts").stat().st_size
    return begin + after


def changes_meanwhile(size: int) -> Visit:
    """Begins to read a large file, whose size is then another one."""

    def visit(address: str) -> bytes:
        changing = STREAM / "changing.ts"
        changing.write_bytes(bytes(8 << 20))
        with connect(address) as connection:
            connection.sendall(head("GET", f"/{HASH}/changing.ts"))
            begin = connection.recv(1000)
            os.truncate(changing, size)
            everything(connection)
        return begin

    return visit


def from_many_addresses(_: str) -> bytes:
    """One wrong password from each of many addresses."""
    guess = asks(password="wrong")
    for number in range(times(300, 3000)):
        guess(f"127.{number % 5 + 1}.{number // 5 // 250}.{number // 5 % 250 + 1}")
    return gets("/share")("127.0.0.1")


class _Link:
    """The library, for which every share id and token opens the link with the password."""

    def open(self, ssid: str, token: str) -> tuple[int, Link]:
        return ViewerCode.OPENS, Link("Camera", HASH, PASSWORD.encode())


def measures_time(address: str) -> bytes:
    """The page has to take as long for each wrong password: it compares all of them in one way."""
    with patch.object(verdict.hmac, "compare_digest", wraps=verdict.hmac.compare_digest) as compare:
        guesses = ("x", PASSWORD[:-1] + "x", "x" + PASSWORD[1:], PASSWORD * 2)
        for guess in guesses:
            verdict.judge(_Link(), SSID, TOKEN, guess)
    assert compare.call_args_list == [call(PASSWORD.encode(), guess.encode()) for guess in guesses]
    return asks(password="x")(address)


def at_once(visit: Visit, number: int) -> Visit:
    def all_of_them(address: str) -> bytes:
        answers: list[bytes] = []
        threads = [threading.Thread(target=lambda: answers.append(visit(address))) for _ in range(number)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        return b"".join(sorted(answers, reverse=True))

    return all_of_them


SLOW = rows(
    "any",
    ("a head that comes byte by byte and never ends", never_ends(b"GET /share HTTP/1.1\r\nX: ", b"x"), GIVEN_UP, 20),
    ("a head whose lines never end", never_ends(b"GET /share HTTP/1.1\r\n", b"X: y\r\n"), GIVEN_UP, 20),
    ("a body that comes byte by byte", never_ends(head("POST", "/share/open", "Content-Length: 4000"), b" "), GIVEN_UP,
     20),
    ("a body that is promised and never sent", never_ends(head("POST", "/share/open", "Content-Length: 40"), b""),
     GIVEN_UP, 20),
    ("a client that says nothing", never_ends(b"", b""), GIVEN_UP, 20),
    ("a client that asks once and stays", never_ends(b"HEAD /nowhere HTTP/1.1\r\nHost: h\r\n\r\n", b""), Outcome(
        "one answer; the connection is closed after ten seconds", None), 20),
)  # fmt: skip

CROWDS = rows(
    "any",
    ("thousands of connections that say nothing", crowd(THOUSANDS), HONEST, 30, 64),
    ("thousands of heads that do not end", crowd(MANY, b"GET /share HTTP/1.1\r\nX: "), HONEST, 30, 64),
    ("thousands of bodies that do not come", crowd(MANY, head("POST", "/share/open", "Content-Length: 4000")), HONEST,
     30, 64),
    ("thousands of connections that break", crowd(MANY, resets=True), HONEST, 30, 64),
    ("thousands of requests on one connection", sends(b"GET /share HTTP/1.1\r\nHost: h\r\n\r\n" * 1000 + head("GET",
     "/nowhere")),
     Outcome("each is answered in its turn", 200, " ".join(["200"] * 1000 + ["404"])), 30, 16),
    ("clients that read nothing of a large file", reads_nothing, SHOWN, 20, 64),
)  # fmt: skip

TRAVERSING = rows(
    "a file",
    ("a path that climbs", gets(f"/{HASH}/../../../../../etc/passwd"), NOT_THERE),
    ("a path that climbs in escapes", gets(f"/{HASH}/%2e%2e/%2e%2e/%2e%2e/etc/passwd"), NOT_THERE),
    ("a path that climbs in escapes of escapes", gets(f"/{HASH}/%252e%252e/%252e%252e/etc/passwd"), NOT_THERE),
    ("a path that climbs with backslashes", gets(f"/{HASH}/..\\..\\..\\..\\etc\\passwd"), NOT_THERE),
    ("a path that climbs in too many bytes", gets(f"/{HASH}/%c0%ae%c0%ae/%c0%ae%c0%ae/etc/passwd"), NOT_THERE),
    ("a path with an escaped slash", gets(f"/{HASH}/..%2f..%2f..%2fetc%2fpasswd"), NOT_THERE),
    ("a path that climbs within the page's own files", gets("/share/../share-page"), NOT_THERE),
    ("a path with a zero byte", gets(f"/{HASH}/7%00.ts"), NOT_THERE),
    ("a path with a line end", gets(f"/{HASH}/7.ts%0d%0aX:y"), NOT_THERE),
    ("a path with an escape that is none", gets(f"/{HASH}/%zz.ts"), NOT_THERE),
    ("a path that begins with two slashes", gets("//etc/passwd"), NOT_THERE),
    ("a path with a parameter", gets(f"{SEGMENT};/../x"), NOT_THERE),
    ("a path with another host in it", gets("http://elsewhere/share"), NOT_THERE),
    ("a path of sixty thousand characters", gets("/" + "a" * 60000), NOT_THERE),
    ("a path of more than the head may have", gets("/" + "a" * 70000), NO_ANSWER),
    ("a segment that is a link out of the stream", gets(f"/{HASH}/out.ts"), NOT_THERE),
    ("a segment that is a link to itself", gets(f"/{HASH}/circle.ts"), NOT_THERE),
    ("a segment that is a pipe", gets(f"/{HASH}/pipe.ts"), NOT_THERE),
    ("a segment that is a folder", gets(f"/{HASH}/folder.ts"), NOT_THERE),
    ("a segment whose file may not be read", gets(f"/{HASH}/device.ts"), NOT_THERE),
    ("a hash in capital letters", gets(f"/{HASH.upper()}/7.ts"), NOT_THERE),
    ("a file of the application beside the streams", gets("/hls/channel1/7.ts"), NOT_THERE),
    ("a link that is revoked while a file is read", revokes_meanwhile, Outcome(
        "the file is read to its end; the next request gets 404", 200, "200 404")),
    ("a segment that becomes shorter while it is read", changes_meanwhile(1), Outcome("the connection ends early",
     200)),
    ("a segment that becomes longer while it is read", changes_meanwhile(9 << 20), Outcome("the connection ends early",
     200)),
)  # fmt: skip

HEADS = rows(
    "any",
    ("an unknown method", gets("/share", method="BREW"), NOT_ALLOWED),
    ("a method that asks for an echo", gets("/share", "X-Secret: y", method="TRACE"), NOT_ALLOWED),
    ("a method for proxies", gets("elsewhere:443", method="CONNECT"), NOT_ALLOWED),
    ("a method in small letters", gets("/share", method="get"), NOT_ALLOWED),
    ("a method of a megabyte", sends(b"G" * (1 << 20)), NO_ANSWER),
    ("a segment that is to be deleted", gets(SEGMENT, method="DELETE"), NOT_ALLOWED),
    ("a segment that is to be replaced", gets(SEGMENT, "Content-Length: 0", method="PUT"), NOT_ALLOWED),
    ("a header that states another method", gets(SEGMENT, "X-HTTP-Method-Override: DELETE"), SHOWN),
    ("a thousand headers", gets("/share", *(f"X-{i}: {i}" for i in range(1000))), SHOWN),
    ("headers of more than the head may have", gets("/share", *(f"X-{i}: {'y' * 60}" for i in range(1000))), NO_ANSWER),
    ("a header with a zero byte", gets("/share", "X: a\0b"), BAD),
    ("a header without a colon", gets("/share", "nonsense"), BAD),
    ("a header with a blank before its colon", gets("/share", "Content-Length : 5"), BAD),
    ("a header without a name", gets("/share", ": y"), BAD),
    ("a header that continues in the next line", gets("/share", "X: a", " b"), SHOWN),
    ("lines that end with a line feed only", sends(b"GET /share HTTP/1.1\nHost: h\nConnection: close\n\n"), SHOWN),
    ("lines that end with a carriage return only", sends(b"GET /share HTTP/1.1\rHost: h\r\r", half_closed=True),
     NO_ANSWER),
    ("two lengths that differ", posts(TEXT, "Content-Length: 1"), BAD),
    ("a length that is negative", gets("/share/open", "Content-Length: -1", method="POST"), BAD),
    ("a length with a sign", gets("/share/open", "Content-Length: +5", method="POST"), BAD),
    ("a length in hexadecimal digits", gets("/share/open", "Content-Length: 0x5", method="POST"), BAD),
    ("a length beyond any number", sends(head("POST", "/share/open", "Content-Length: " + "9" * 30)), BAD),
    ("a body in chunks", gets("/share/open", "Transfer-Encoding: chunked", method="POST"), BAD),
    ("a body in chunks and of a length", posts(b"0\r\n\r\n", "Transfer-Encoding: chunked"), BAD),
    ("a body in an encoding that is almost chunks", posts(b"0\r\n\r\n", "Transfer-Encoding: xchunked"), BAD),
    ("a body that is asked for and never sent", lets_ask, Outcome("100, and then the connection is closed", 100, "100")),
    ("an upgrade to another protocol", gets("/share", "Upgrade: websocket", "Sec-WebSocket-Key: x"), SHOWN),
    ("a request of HTTP/0.9", sends(b"GET /share\r\n\r\n"), BAD),
    ("a request of HTTP/2", sends(b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"), BAD),
    ("a request of HTTP/9.9", sends(head("GET", "/share", version="HTTP/9.9")), BAD),
    ("a TLS hello", sends(b"\x16\x03\x01\x02\0\x01\0\x01\xfc\x03\x03" + bytes(500) + b"\r\n\r\n"), BAD),
    ("a request for the host of another site",
     sends(b"GET /share HTTP/1.1\r\nHost: elsewhere\r\nConnection: close\r\n\r\n"), SHOWN),
    ("a request for two hosts", gets("/share", "Host: elsewhere"), SHOWN),
    ("a cookie that is forged", gets("/share", "Cookie: sid=1; link=" + HASH), SHOWN),
    ("cookies of sixty kilobytes", gets("/share", *(f"Cookie: {i}={'c' * 6000}" for i in range(10))), SHOWN),
    ("a range that is reversed", gets(SEGMENT, "Range: bytes=5-2"), Outcome("416", 416)),
    ("a range beyond any number", gets(SEGMENT, "Range: bytes=0-" + "9" * 300), SHOWN),
    ("a range that begins after the end", gets(SEGMENT, "Range: bytes=99999999-"), Outcome("416", 416)),
    ("a thousand ranges", gets(SEGMENT, "Range: bytes=" + ",".join(f"{i}-{i}" for i in range(1000))), SHOWN),
    ("a range of nothing", gets(SEGMENT, "Range: bytes=-0"), Outcome("416", 416)),
    ("a range in words", gets(SEGMENT, "Range: bytes=first-last"), SHOWN),
    ("a moment that is none", gets(SEGMENT, "If-Modified-Since: never"), SHOWN),
    ("a moment on the 32nd of a month", gets(SEGMENT, "If-Modified-Since: Mon, 32 Jan 2024 00:00:00 GMT"), SHOWN),
    ("a moment before all time", gets(SEGMENT, "If-Modified-Since: Mon, 01 Jan 0001 00:00:00 GMT"), SHOWN),
    ("ten thousand versions", gets("/share/share.css", "If-None-Match: " + '"a",' * 10000), SHOWN),
)  # fmt: skip

BODIES = rows(
    "POST /share/open",
    ("a question that is nested", posts('{"ssid":' * 500), BAD),
    ("a question in brackets without end", posts("[" * 4096), BAD),
    ("a question that is a list", posts(json.dumps([QUESTION])), BAD),
    ("a question with a key twice", posts(TEXT.replace("{", '{"token": "wrong", ')), TAKEN),
    ("a question with a number that is none", posts(TEXT.replace(f'"{SSID}"', "NaN")), BAD),
    ("a question with a number of thousands of digits", posts(TEXT.replace(f'"{SSID}"', "9" * 3900)), BAD),
    ("a question with a number for a text", asks(ssid=4711), BAD),
    ("a question with a zero byte", asks(token="a\0b"), BAD),
    ("a question with half a character", asks(token="\ud800"), BAD),
    ("a question that is not UTF-8", posts(b'{"ssid": "\xff\xfe"}'), BAD),
    ("a question without its end", posts(TEXT[:-1]), BAD),
    ("a question with text after it", posts(TEXT + "}"), BAD),
    ("a question with other keys", asks(__proto__={"admin": 1}, constructor="x"), TAKEN),
    ("a question of one byte too many", posts(TEXT.ljust(4097)), Outcome("413", 413)),
    ("a question of megabytes", posts(b" " * (8 << 20)), Outcome("413", 413)),
    ("a question that is compressed", posts(gzip.compress(bytes(4 << 20)), "Content-Encoding: gzip"), Outcome("413",
     413)),
    ("a question as a form with a name of line ends", posts('name="\r\nX: y"',
     "Content-Type: multipart/form-data; boundary=x"), BAD),
    ("a question that is shorter than promised", sends(head("POST", "/share/open",
     "Content-Length: 400") + TEXT.encode(),
     half_closed=True), NO_ANSWER),
    ("a question and more after it",
     sends(b"POST /share/open HTTP/1.1\r\nHost: h\r\nContent-Length: %d\r\n\r\n" % len(TEXT)
     + TEXT.encode() + b"nonsense\r\n\r\n"), Outcome("200 for the question, 400 for the rest", 200, "200 400")),
    ("a question whose asker has gone", outgoing(head("POST", "/share/open",
     f"Content-Length: {len(TEXT)}") + TEXT.encode()),
     NO_ANSWER),
    ("a password with line ends and a header", asks(password="x\r\nSet-Cookie: a=b"), TAKEN),
    ("a password as long as fits", asks(password="x" * 3900), TAKEN),
)  # fmt: skip

GUESSES = rows(
    "POST /share/open",
    ("guesses of a password", again(asks(password="wrong"), 8), Outcome("five are answered, the others have to pause",
     200,
     "200 200 200 200 200 429 429 429")),
    ("guesses of a token", again(asks(token="wrong"), 8), Outcome("five are answered, the others have to pause", 200,
     "200 200 200 200 200 429 429 429")),
    ("guesses at once", at_once(asks(password="wrong"), 16), Outcome("five are answered, the others have to pause",
     429)),
    ("guesses after a forged address", again(posts(json.dumps({**QUESTION, "password": "x"}),
     "X-Forwarded-For: 9.9.9.9",
     "X-Real-Ip: 9.9.9.9"), 7), Outcome("five are answered, the others have to pause", 200,
     "200 200 200 200 200 429 429")),
    ("the right password after five wrong ones", lambda address: again(asks(password="wrong"),
     5)(address) + asks()(address),
     Outcome("it has to pause too", 200, "200 200 200 200 200 429")),
    ("guesses of share ids", again(asks(ssid="00000000"), 100), Outcome("each is answered as unknown", 200)),
    ("guesses of a stream's hash", lambda address: b"".join(gets(f"/{i:032x}/7.ts")(address) for i in range(100)),
     NOT_THERE),
    ("guesses from many addresses", from_many_addresses, SHOWN, 120, 8),
    ("guesses whose time is measured", measures_time, Outcome("each is compared as a whole", 200)),
    ("a password that is a part of the right one", asks(password=PASSWORD[:-1]), TAKEN),
)  # fmt: skip

TABLE: Sequence[Row] = list(chain(CROWDS, TRAVERSING, HEADS, BODIES, GUESSES, SLOW))
