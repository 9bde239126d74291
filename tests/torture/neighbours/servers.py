# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hostile login, camera and streaming servers, and the manager."""

from __future__ import annotations

from collections.abc import Sequence
from itertools import chain
from typing import Any

from row import Outcome, Row
from serving import (
    NeverAccepts, Nobody, Receiver, Server, close_for_writing, echo, flood, go_away, hear, hear_a_little, hold, pause,
    reset, say, say_slowly, shout,
)  # fmt: skip

CUT = b"<authSid><![CDATA["
SESSION = CUT + b"s1d]]></authSid>"
PASSED = b"<authPassed><![CDATA[1]]></authPassed>"
BOTH = SESSION + PASSED
OK = b"HTTP/1.0 200 OK\r\n"
LINE_OF_256 = b"HTTP/1.0 200 OK".ljust(256, b"!")

LOGGED_IN = Outcome("the session is found", 0, "s1d")
NOT_LOGGED_IN = Outcome("the login fails", -1, "")
ENDS = Outcome("the program ends with status 0 and reports the socket's error, as described")
OPEN = Outcome("the session counts as open", 0)
NOT_OPEN = Outcome("the session counts as closed", -1)
ACCEPTED = Outcome("the user is accepted", 0)
REFUSED = Outcome("the user is refused", -1)
TIMED_OUT = Outcome("the call fails when its 120 seconds are over", -1)
SENT = Outcome("the signal counts as sent", 0)


def says(reply: bytes) -> Server:
    """Hears the request, answers at once and closes."""
    return Server([hear, say(reply)])


def replies(headers: bytes, body: bytes = BOTH) -> Server:
    return says(OK + headers + b"\r\n" + body)


def rows(meets: str, *stated: tuple[Any, ...]) -> list[Row]:
    return [Row(name, meets, neighbour, *rest) for name, neighbour, *rest in stated]


CONNECTING = rows(
    "log in",
    ("a server that is not there", Nobody(), NOT_LOGGED_IN),
    ("a server that never accepts", NeverAccepts(), NOT_LOGGED_IN.later()),
    ("a server that accepts and says nothing", Server([hear, hold]), NOT_LOGGED_IN.later()),
    ("a server that closes without a reply", Server([hear]), NOT_LOGGED_IN),
    ("a server that closes for writing only", Server([hear, close_for_writing]), NOT_LOGGED_IN),
    ("a server that breaks the connection, the request unread", Server([hold, reset]), Outcome(
        "the call waits while others go on; then the program ends with status 0, as described", waits=True)),
    ("a server that breaks the connection after the request", Server([hear, reset]), ENDS),
    ("a server that breaks the connection within its reply", Server([hear, say(SESSION[:20]), pause(0.05), reset]),
     ENDS),
    ("a server that replies after a second", Server([hear, pause(1), say(BOTH)]), LOGGED_IN),
    ("a server that sends before it is asked", Server([say(BOTH), hear]), LOGGED_IN),
    ("a server that keeps the connection after its reply", Server([hear, say(BOTH), hold]), LOGGED_IN.later()),
    ("a server that sends an urgent byte within its reply", Server([hear, shout(BOTH)]), LOGGED_IN),
    ("a server that repeats the request", Server([echo]), NOT_LOGGED_IN),
    ("a server that greets and waits for a command", Server([hear, say(b"220 mail ready\r\n"), hold]),
     NOT_LOGGED_IN.later()),
    ("a server that sends one byte a second", Server([hear, hold, say_slowly(BOTH, 0.001)]), LOGGED_IN.later()),
)  # fmt: skip

STOPPING = rows(
    "log in",
    ("a reply that stops after one byte", says(b"H"), NOT_LOGGED_IN),
    ("a reply that stops within its status line", says(OK[:9]), NOT_LOGGED_IN),
    ("a reply that stops within its head", says(OK + b"Server"), NOT_LOGGED_IN),
    ("a reply that stops within the session's mark", says(CUT[:9]), NOT_LOGGED_IN),
    ("a reply that stops within the session", says(SESSION[:20]), NOT_LOGGED_IN),
    ("a reply whose mark comes in two packets", Server([hear, say(BOTH[:9]), pause(0.05), say(BOTH[9:])]), LOGGED_IN),
    ("a reply that comes byte by byte", Server([hear, say_slowly(BOTH, 0)]), LOGGED_IN),
    ("a head without end", Server([hear, say(OK), flood(b"X-Header: value\r\n")]), NOT_LOGGED_IN),
    ("a line without end", Server([hear, say(OK), flood(b"x" * 4096)]), NOT_LOGGED_IN),
    ("line ends without end", Server([hear, flood(b"\r\n" * 999)]), NOT_LOGGED_IN),
    ("zero bytes without end", Server([hear, flood(bytes(4096))]), NOT_LOGGED_IN),
    ("a session that is found and then replies without end", Server([hear, say(BOTH), flood(b"more ")]), LOGGED_IN),
    ("a head of a megabyte before the session", replies(b"X: " + b"y" * 2**20 + b"\r\n"), NOT_LOGGED_IN),
    ("a session of 128 characters", says(CUT + b"s" * 128 + b"]]></authSid>"), NOT_LOGGED_IN),
    ("a session of a megabyte", says(CUT + b"s" * 2**20 + b"]]></authSid>"), NOT_LOGGED_IN),
)  # fmt: skip

LYING = rows(
    "log in",
    ("a reply whose length header is negative", replies(b"Content-Length: -1\r\n"), LOGGED_IN),
    ("a reply whose length header is beyond any number", replies(b"Content-Length: 99999999999999999999\r\n"),
     LOGGED_IN),
    ("a reply whose length header is too small", replies(b"Content-Length: 1\r\n"), LOGGED_IN),
    ("a reply whose length header is a word", replies(b"Content-Length: many\r\n"), LOGGED_IN),
    ("a reply with two length headers that differ", replies(b"Content-Length: 1\r\nContent-Length: 2\r\n"), LOGGED_IN),
    ("a reply in chunks, cut within the mark", replies(b"Transfer-Encoding: chunked\r\n",
     b"5\r\n<auth\r\n40\r\n" + BOTH[5:]),
     NOT_LOGGED_IN),
    ("a reply with a chunk of negative length", replies(b"Transfer-Encoding: chunked\r\n", b"-5\r\n" + BOTH),
     LOGGED_IN),
    ("a reply with a chunk longer than memory", replies(b"Transfer-Encoding: chunked\r\n",
     b"fffffffffffffff\r\n" + BOTH),
     LOGGED_IN),
    ("a reply with a chunk whose length is garbage", replies(b"Transfer-Encoding: chunked\r\n", b"0xzz;\r\n" + BOTH),
     LOGGED_IN),
    ("a reply with chunks without line ends", replies(b"Transfer-Encoding: chunked\r\n", b"5" + BOTH + b"0"),
     LOGGED_IN),
    ("a reply that redirects", says(b"HTTP/1.0 302 Found\r\nLocation: http://127.0.0.1:1/\r\n\r\n"), NOT_LOGGED_IN),
    ("a reply that asks for authorization again and again",
     Server(*[[hear, say(b"HTTP/1.0 401 Again\r\nWWW-Authenticate: Basic\r\n\r\n")]] * 9), NOT_LOGGED_IN),
    ("two replies in one", says(OK + b"\r\n" + BOTH + OK + b"\r\n" + CUT + b"other]]></authSid>"), LOGGED_IN),
    ("a reply after another that only says to go on", says(b"HTTP/1.1 100 Continue\r\n\r\n" + OK + b"\r\n" + BOTH),
     LOGGED_IN),
    ("a reply with a zero byte before the session", says(b"\0" + BOTH), NOT_LOGGED_IN),
    ("a reply with a zero byte within the session", says(CUT + b"s\0d]]></authSid>"), NOT_LOGGED_IN),
    ("a reply in bytes above 127", says(b"\xff\xfe" + BOTH + b"\x80"), LOGGED_IN),
    ("a reply in characters of two bytes", says(BOTH.decode().encode("utf-16")), NOT_LOGGED_IN),
    ("a reply that is compressed", replies(b"Content-Encoding: gzip\r\n", b"\x1f\x8b\x08" + bytes(range(200))),
     NOT_LOGGED_IN),
    ("a reply whose session is an entity that opens a file",
     says(b'<!DOCTYPE r [<!ENTITY f SYSTEM "/etc/passwd">]><authSid>&f;</authSid>'), NOT_LOGGED_IN),
    ("a reply whose session is written for printf", says(CUT + b"%s%n%99999d]]></authSid>"),
     Outcome("the session is found as it is", 0, "%s%n%99999d")),
    ("a reply whose session drives a terminal", says(CUT + b"\x1b[2J\a]]></authSid>"),
     Outcome("the session is found as it is", 0, r"\x1b[2J\x07")),
    ("a page for people in place of the reply", replies(b"Content-Type: text/html\r\n",
     b"<html><body>Log in</body></html>"),
     NOT_LOGGED_IN),
    ("a TLS alert in place of the reply", says(b"\x15\x03\x03\x00\x02\x02\x28"), NOT_LOGGED_IN),
    ("another protocol's banner in place of the reply", says(b"SSH-2.0-server\r\n"), NOT_LOGGED_IN),
    ("frames of HTTP/2 in place of the reply", says(b"\0\0\x06\x04\0\0\0\0\0\0\x03\0\0\0\x64"), NOT_LOGGED_IN),
)  # fmt: skip

CHECKING = rows(
    "check a session",
    ("a check that is answered with a failure status and an open session", says(b"HTTP/1.0 500 No\r\n\r\n" + PASSED),
     OPEN),
    ("a check that is answered with nothing after its mark", says(b"<authPassed><![CDATA["), NOT_OPEN),
    ("a check that is answered with two marks that differ", says(PASSED.replace(b"1", b"0") + PASSED), NOT_OPEN),
    ("a check that is not answered", Server([hear, hold]), NOT_OPEN.later()),
) + rows(
    "log out",
    ("a logout that is answered without end", Server([hear, flood(b"bye " * 999)]), Outcome("4096 bytes count", 4096)),
    ("a logout that is not answered", Server([hear]), Outcome("0 bytes count", 0)),
) + rows(
    "accept a user",
    ("a host that logs in and is gone for the logout", Server([hear, go_away, say(BOTH)]), ACCEPTED),
    ("a host that logs in and never answers the logout", Server([hear, say(BOTH)], [hear, hold]), ACCEPTED.later()),
    ("a host that logs in and breaks the logout", Server([hear, say(BOTH)], [hear, reset]), ENDS),
    ("a host whose session would add a line to the logout", Server([hear, say(CUT + b"a\r\nX: b]]></authSid>")],
     [hear]),
     ACCEPTED),
    ("a host that is not there", Nobody(), REFUSED),
)  # fmt: skip

HEADS = rows(
    "read a head",
    ("a camera that says nothing", Server([hear, hold]), TIMED_OUT),
    ("a camera that stops after its status line", Server([hear, say(OK), hold]), TIMED_OUT),
    ("a camera whose status line never ends", Server([hear, flood(b"200 NO " * 99)]),
     Outcome("the status counts as wrong", -2)),
    ("a camera whose status is right in 256 bytes without end", Server([hear, say(LINE_OF_256), flood(b"x")]),
     Outcome("the head is too long", 0)),
    ("a camera that closes within its status line", says(OK[:10]), Outcome("the status counts as wrong", -2)),
    ("a camera that answers 404", says(b"HTTP/1.1 404 Not Found\r\n\r\n"), Outcome("the status counts as wrong", -2)),
    ("a camera whose head never ends", Server([hear, say(OK), flood(b"X: y\r\n")]), Outcome("the head is too long", 0)),
    ("a camera that closes within its head", says(OK + b"X: y"), Outcome("the head is too long", 0)),
    ("a camera that breaks the connection within its head", Server([hear, say(OK), pause(0.05), reset]),
     Outcome("the call fails", -1)),
    ("a camera that sends line ends without end", Server([hear, say(OK), flood(b"\n")]), Outcome("the head is over",
     1)),
) + rows(
    "read a line",
    ("a line that never ends", Server([flood(b"x" * 999)]), Outcome("63 bytes are taken", 63, "x" * 63)),
    ("a line that ends with the connection", Server([say(b"abc")]),
     Outcome("zero bytes fill the line", 63, "abc" + r"\x00" * 60)),
    ("a line with a byte every six seconds", Server([say_slowly(b"slow\n", 0.25)]), Outcome("the line is read", 4,
     "slow")),
    ("a line that stops", Server([say(b"abc"), hold]), TIMED_OUT),
) + rows(
    "read once",
    ("a peer that says nothing", Server([hold]), Outcome("the read ends after 120 seconds", -2)),
    ("a peer that breaks the connection", Server([reset]), Outcome("the read fails", -3)),
    ("a peer that sends more than is asked for", Server([flood(b"x" * 999)]), Outcome("63 bytes are taken", 63,
     "x" * 63)),
) + rows(
    "write on",
    ("a peer that never reads", Server([hold]), Outcome("the write ends after 120 seconds", -2)),
    ("a peer that breaks the connection while it is written to", Server([hear_a_little, reset]), Outcome(
        "the write fails", -3)),
) + rows(
    "open a connection",
    ("a camera that is not there", Nobody(), Outcome("no connection is opened", -1)),
)  # fmt: skip

SIGNALLED = rows(
    "signal",
    ("a streaming service that is not there", Nobody(), Outcome("the signal fails", -1)),
    ("a streaming service that never accepts", NeverAccepts(), Outcome("the signal fails", -1).later()),
    ("a streaming service that never reads", Server([hold]), SENT),
    ("a streaming service that answers without end", Server([flood(b"noise")]), SENT),
) + rows(
    "notify",
    ("a manager who is not there", Nobody(), Outcome("every notification counts as sent", 0)),
    ("a manager who never reads", Receiver(), Outcome("every notification counts as sent", 0)),
    ("a manager who answers with a flood", Receiver(answers=100), Outcome("every notification counts as sent", 0)),
)  # fmt: skip

TABLE: Sequence[Row] = list(chain(CONNECTING, STOPPING, LYING, CHECKING, HEADS, SIGNALLED))
