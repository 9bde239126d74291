# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the share page stands: bodies of all kinds, guesses, slow visitors, other sites that would frame it."""

from __future__ import annotations

import json
import socket
from collections.abc import Iterator
from signal import SIGCONT, SIGSTOP

import pytest
from conftest import APPLICATION, share, store
from host_service import Service
from requests_to_page import request
from servicelib.attempts import ALLOWED, MOST_VISITORS, SECONDS, Attempts
from servicelib.http import MOST_CONNECTIONS
from sharelib.answers import LONGEST_BODY

QUESTION = {"ssid": "00004711", "token": "cafe", "password": ""}
LINK = {
    "sharelink.shrenable": 1,
    "sharelink.ssid": "00004711",
    "sharelink.token": "cafe",
    "sharelink.hash_string": "0123456789abcdef0123456789abcdef",
}
CHUNKED = b"POST /share/open HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n"
PROTECTED = {**LINK, "sharelink.pwdenable": 1, "sharelink.shrpwd": "pass"}

pytestmark = pytest.mark.usefixtures("page")


def of_size(size: int) -> str:
    """A question of that many bytes."""
    empty = len(json.dumps(QUESTION))
    return json.dumps({**QUESTION, "password": (size - empty) * "x"})


class TestABody:
    @pytest.mark.parametrize(
        "body",
        [
            b"", b"{", b"[]", b"{}", b"null", b"4711", b'"text"', b"\xff\xfe\x00", "{}".encode("utf-16"),
            b"[" * LONGEST_BODY, b'{"a":' * (LONGEST_BODY // 5), b"9" * LONGEST_BODY, b"ssid=1&token=2&password=3",
            json.dumps({**QUESTION, "ssid": 4711}), json.dumps({**QUESTION, "password": None}),
            json.dumps({**QUESTION, "token": ["cafe"]}), json.dumps({**QUESTION, "token": "cafe\0"}),
            json.dumps({**QUESTION, "token": "\ud800"}), json.dumps([QUESTION]),
        ],
        ids=lambda body: repr(body)[:40],
    )  # fmt: skip
    def test_that_is_not_a_question_is_refused(self, body: str | bytes) -> None:
        store(**LINK)
        assert request("POST", "/share/open", body)[0].status == 400

    @pytest.mark.parametrize(
        "headers",
        [
            {"Content-Type": "application/x-www-form-urlencoded"},
            {"Content-Type": "multipart/form-data"},
            {"Content-Encoding": "gzip"},
            {"Content-Encoding": "gzip", "Content-Type": "multipart/form-data; boundary="},
        ],
    )
    def test_is_taken_for_what_it_is_whatever_its_headers_say(self, headers: dict[str, str]) -> None:
        store(**LINK)
        answer, content = request("POST", "/share/open", json.dumps(QUESTION), **headers)
        assert (answer.status, json.loads(content)["outcome"]) == (200, "plays")

    def test_has_a_largest_size(self) -> None:
        store(**LINK)
        for size in (LONGEST_BODY - 1, LONGEST_BODY):
            assert request("POST", "/share/open", of_size(size))[0].status == 200
        assert request("POST", "/share/open", of_size(LONGEST_BODY + 1))[0].status == 413

    @pytest.mark.parametrize("size", [b"2", b"-1", b"-7fffffff", b"none", b""])
    @pytest.mark.parametrize("path", [b"/share", b"/share/open", b"/nowhere"])
    def test_in_chunks_is_refused_whatever_their_size(self, path: bytes, size: bytes) -> None:
        head = b"POST " + path + b" HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n"
        with socket.create_connection(("127.0.0.1", 8080), timeout=20) as visit:
            visit.sendall(head + size + b"\r\n{}\r\n0\r\n\r\n")
            assert visit.makefile("rb").read().startswith(b"HTTP/1.1 400 Bad Request\r\n")
        assert request("GET", "/share")[0].status == 200

    @pytest.mark.parametrize(
        "header",
        [b"Content-Length: +2", b"Content-Length: 0x2", b"Content-Length: 2_0", b"Content-Length : 2", b"X: a\0b", b": a"],
    )  # fmt: skip
    def test_whose_end_others_could_see_elsewhere_is_refused(self, header: bytes) -> None:
        with socket.create_connection(("127.0.0.1", 8080), timeout=5) as visit:
            visit.sendall(b"POST /share/open HTTP/1.1\r\nHost: h\r\n" + header + b"\r\n\r\n{}")
            assert visit.makefile("rb").read().startswith(b"HTTP/1.1 400 Bad Request\r\n")

    @pytest.mark.parametrize("path", ["/share", "/share/share.css", "/nowhere"])
    def test_is_of_no_use_elsewhere(self, path: str) -> None:
        assert request("POST", path, of_size(LONGEST_BODY + 1))[0].status in (404, 405, 413)


class TestEveryAnswer:
    @pytest.fixture(autouse=True)
    def stream(self) -> Iterator[str]:
        store()
        link = share("on", "0", "--json")["hash"]
        playlist = APPLICATION / "hls/channel1/playlist.m3u8"
        playlist.write_text("#EXTM3U\n")
        yield f"/{link}/playlist.m3u8"
        playlist.unlink()

    @pytest.fixture(
        params=["/share", "/share/design.css", "/share/share.css", "/share/share.js", "/share/live-player.js",
                "/share/favicon.svg", "/share/nothing", "/", "/share/open", "a stream",
                "/0123456789abcdef0123456789abcdef/0.ts", "/0123456789abcdef0123456789abcdef/live"],
    )  # fmt: skip
    def path(self, request: pytest.FixtureRequest, stream: str) -> str:
        return stream if request.param == "a stream" else str(request.param)

    @pytest.mark.parametrize("method", ["GET", "HEAD", "POST", "PUT", "DELETE", "OPTIONS"])
    def test_cannot_be_framed_and_sends_no_referrer(self, method: str, path: str) -> None:
        headers = request(method, path)[0].headers
        assert headers["X-Content-Type-Options"] == "nosniff"
        assert "frame-ancestors 'none'" in headers["Content-Security-Policy"]
        assert headers["Referrer-Policy"] == "no-referrer"

    def test_without_its_body_is_the_same(self, path: str) -> None:
        get, body = request("GET", path)
        head, nothing = request("HEAD", path)
        same = ("Content-Length", "Content-Type", "Cache-Control", "Content-Security-Policy")
        assert (head.status, nothing) == (get.status, b"")
        assert [head.headers[name] for name in same] == [get.headers[name] for name in same]
        assert int(head.headers["Content-Length"]) == len(body)

    def test_to_what_was_not_modified_has_the_headers_too(self) -> None:
        etag = request("GET", "/share/share.css")[0].headers["Etag"]
        answer = request("GET", "/share/share.css", **{"If-None-Match": etag})[0]
        assert (answer.status, answer.headers["X-Content-Type-Options"]) == (304, "nosniff")

    @pytest.mark.parametrize("date", ["Sun, 32 Nov 2026 07:47:14 GMT", "Sun, 22 Nov 2026 25:47:14 GMT", f"1 Nov {10**20} 1:1:1"])
    def test_is_the_whole_file_whatever_date_the_visitor_has_it_from(self, date: str, stream: str) -> None:
        for path in ("/share/share.css", stream):
            assert request("GET", path, **{"If-Modified-Since": date})[0].status == 200

    def test_to_a_body_that_is_too_long_has_the_headers_too(self) -> None:
        answer = request("POST", "/share/open", (LONGEST_BODY + 1) * "x")[0]
        assert (answer.status, answer.headers["X-Content-Type-Options"]) == (413, "nosniff")

    @pytest.mark.parametrize(
        "nonsense", [b"nonsense\r\n\r\n", b"GET /share HTTP/1.1\r\nContent-Length: 1, 2\r\n\r\n", CHUNKED, b"\xff\r\n\r\n"]
    )
    def test_to_what_cannot_be_read_has_the_headers_too(self, nonsense: bytes) -> None:
        with socket.create_connection(("127.0.0.1", 8080), timeout=20) as visit:
            visit.sendall(nonsense)
            status, *headers = visit.makefile("rb").read().split(b"\r\n")
        assert status == b"HTTP/1.1 400 Bad Request"
        assert b"X-Content-Type-Options: nosniff" in headers
        assert b"Content-Security-Policy: frame-ancestors 'none'" in headers
        assert b"Referrer-Policy: no-referrer" in headers


def ask_from(address: str, **question: str) -> tuple[int, dict[str, object]]:
    answer, content = request("POST", "/share/open", json.dumps({**QUESTION, **question}), address)
    told = json.loads(content)
    if answer.status == 429:
        assert answer.headers["Retry-After"] == str(told["seconds"])
    return answer.status, told


@pytest.fixture
def forgetful(page: Service) -> None:
    """The share page, which has not been asked yet."""
    page.end()
    page.start()


@pytest.mark.usefixtures("forgetful")
class TestAVisitor:
    @pytest.mark.parametrize("guess", [{"password": "wrong"}, {"token": "beef"}], ids=["password", "token"])
    def test_is_wrong_five_times_and_then_has_to_pause(self, guess: dict[str, str]) -> None:
        store(**PROTECTED)
        for _ in range(ALLOWED):
            assert ask_from("127.0.0.1", **guess)[0] == 200
        for question in (guess, {"password": "pass"}, {}):
            status, told = ask_from("127.0.0.1", **question)
            assert (status, told["outcome"], told["sentence"]) == (429, "paused", "There were too many wrong attempts.")
            assert 0 < int(str(told["seconds"])) <= SECONDS

    def test_at_another_address_does_not_pause(self) -> None:
        store(**PROTECTED)
        for _ in range(ALLOWED):
            ask_from("127.0.0.1", password="wrong")
        assert ask_from("127.0.0.2", password="pass")[1]["outcome"] == "plays"

    def test_of_another_link_does_not_pause(self) -> None:
        store(**PROTECTED)
        for _ in range(ALLOWED):
            ask_from("127.0.0.1", password="wrong")
        store(**{**PROTECTED, "sharelink.ssid": "00004712"})
        assert ask_from("127.0.0.1", ssid="00004712", password="pass")[1]["outcome"] == "plays"

    def test_who_was_not_wrong_does_not_pause(self) -> None:
        store(**PROTECTED)
        for _ in range(2 * ALLOWED):
            assert ask_from("127.0.0.1")[1]["outcome"] == "password"
            assert ask_from("127.0.0.1", password="pass")[1]["outcome"] == "plays"
            assert ask_from("127.0.0.1", ssid="00004712")[1]["outcome"] == "refused"

    def test_cannot_guess_more_often_by_guessing_at_once(self) -> None:
        store(**PROTECTED)
        body = json.dumps({**QUESTION, "password": "wrong"}).encode()
        head = f"POST /share/open HTTP/1.1\r\nHost: h\r\nConnection: close\r\nContent-Length: {len(body)}\r\n\r\n".encode()
        visits = [socket.create_connection(("127.0.0.1", 8080), timeout=20) for _ in range(4 * ALLOWED)]
        for visit in visits:
            visit.sendall(head + body)
        statuses = [visit.makefile("rb").read().split()[1] for visit in visits]
        assert (statuses.count(b"200"), statuses.count(b"429")) == (ALLOWED, 3 * ALLOWED)


class TestTheAttempts:
    def setup_method(self) -> None:
        self.now = 1000.0
        self.attempts = Attempts(lambda: self.now)

    def be_wrong(self, address: str = "a") -> None:
        self.attempts.add_wrong((address, "link"))

    def pause(self, address: str = "a") -> int:
        return self.attempts.pause((address, "link"))

    def test_allow_one_more_a_minute_after_the_first_of_five(self) -> None:
        for _ in range(ALLOWED):
            assert self.pause() == 0
            self.be_wrong()
            self.now += 1
        assert self.pause() == SECONDS - ALLOWED
        self.now += SECONDS - ALLOWED - 0.5
        assert self.pause() == 1
        self.now += 0.5
        assert self.pause() == 0
        self.be_wrong()
        assert self.pause() == 1

    def test_are_forgotten_where_there_are_too_many_visitors(self) -> None:
        for number in range(MOST_VISITORS):
            for _ in range(ALLOWED):
                self.be_wrong(str(number))
        assert self.pause("0") > 0
        self.be_wrong("one more")
        assert (self.pause("0"), self.pause("1") > 0) == (0, True)
        assert len(self.attempts._wrong) == MOST_VISITORS


def still_open(visit: socket.socket) -> bool:
    """Sends one more byte to it."""
    try:
        visit.sendall(b"x")
        return visit.recv(1) != b""
    except TimeoutError:
        return True
    except ConnectionError:
        return False


def test_the_latest_connections_are_kept_when_there_are_too_many() -> None:
    visits = [socket.create_connection(("127.0.0.1", 8080), timeout=20) for _ in range(MOST_CONNECTIONS + 1)]
    assert request("GET", "/share")[0].status == 200
    assert [visit.recv(1) for visit in visits[:2]] == [b"", b""]
    visits[2].sendall(b"HEAD /share HTTP/1.1\r\nHost: h\r\n\r\n")
    assert visits[2].recv(12) == b"HTTP/1.1 200"
    for visit in visits:
        visit.close()


def test_a_thousand_visitors_may_wait_while_the_page_is_busy(page: Service) -> None:
    page.send(SIGSTOP)
    try:
        # Whom the kernel cannot queue it lets try again, after a second.
        visits = [socket.create_connection(("127.0.0.1", 8080), timeout=0.9) for _ in range(1000)]
    finally:
        page.send(SIGCONT)
    assert request("GET", "/share")[0].status == 200
    for visit in visits:
        visit.close()


def test_a_head_or_body_that_never_ends_does_not_hold_its_connection() -> None:
    head = b"GET /share HTTP/1.1\r\nHost: h\r\nX: "
    body = b"POST /share/open HTTP/1.1\r\nHost: h\r\nContent-Length: 4000\r\n\r\n"
    visits = [socket.create_connection(("127.0.0.1", 8080), timeout=0.2) for _ in range(2)]
    for visit, begin in zip(visits, (head, body)):
        visit.sendall(begin)
    for visit in visits:
        assert any(not still_open(visit) for _ in range(300))
