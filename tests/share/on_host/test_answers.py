# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the share page answers, and which files it gives out."""

from __future__ import annotations

import json
import os
import socket
import time
from collections.abc import Iterator
from pathlib import Path
from typing import Any
from unittest.mock import patch

import pytest
from conftest import APPLICATION, CONFIGURATION, STREAM, share, store
from host_service import Service
from requests_to_page import request
from sharelib.library import Library
from sharelib.streams import ROUTE, StreamFile
from tornado.testing import AsyncHTTPTestCase
from tornado.web import Application
from usbdev import ShareLink, ViewerCode, web

HASH = "0123456789abcdef0123456789abcdef"
LINK = {
    "sharelink.shrenable": 1,
    "sharelink.ssid": "00004711",
    "sharelink.token": "cafe",
    "sharelink.hash_string": HASH,
}
QUESTION = {"ssid": "00004711", "token": "cafe", "password": ""}

pytestmark = pytest.mark.usefixtures("page")


def ask(**question: str) -> dict[str, Any]:
    answer, content = request("POST", "/share/open", json.dumps({**QUESTION, **question}))
    assert (answer.status, answer.headers["Cache-Control"]) == (200, "no-store")
    return json.loads(content)


def refusal(reason: str, sentence: str) -> dict[str, str]:
    return {"outcome": "refused", "reason": reason, "sentence": sentence}


def test_a_link_that_opens_leads_to_the_playlist() -> None:
    store(**LINK, profilename="Door")
    assert ask() == {"outcome": "plays", "name": "Door", "playlist": f"/{HASH}/playlist.m3u8", "changed": None}


def test_a_link_that_opens_says_when_its_playlist_changed(stream_link: Path) -> None:
    link = share("show", "0", "--json")
    os.utime(STREAM / "playlist.m3u8", (1000, 1000.5))
    assert ask(ssid=link["ssid"], token=link["token"])["changed"] == 1000.5


def test_a_profile_without_a_name_gets_none() -> None:
    store(**LINK, profile=2)
    assert ask()["name"] == ""


@pytest.mark.parametrize(
    ("keys", "reason", "sentence"),
    [
        ({"exists": 0}, "unplugged", "The camera is not plugged in."),
        ({"video.vnode": -1}, "no_picture", "The camera gives no picture at the moment."),
        ({"video.vnode": -1, "audio.anode": 1}, "sound_only", "There is sound here, but no picture to show."),
        ({"conflictch": 3}, "waits", "The camera has to wait for another one, or cannot be used on this host."),
        ({"slot_switch": 0}, "switched_off", "The camera's port is switched off."),
        ({"sharelink.shrenable": 0}, "not_shared", "This camera is not shared at the moment."),
    ],
    ids=["9001", "9003", "9004", "9007", "9009", "9010"],
)
def test_each_reason_that_can_pass_has_its_sentence(keys: dict[str, object], reason: str, sentence: str) -> None:
    store(**{**LINK, **keys})
    assert ask() == {"outcome": "waits", "reason": reason, "sentence": sentence}


@pytest.mark.parametrize(
    ("question", "reason", "sentence"),
    [
        ({"token": "cafd"}, "wrong_token", "This link is no longer valid; ask for the new one."),
        ({"ssid": "00004712"}, "unknown", "This link is unknown; it was replaced or removed."),
    ],
    ids=["9000", "9011"],
)
def test_each_reason_that_stays_has_its_sentence(question: dict[str, str], reason: str, sentence: str) -> None:
    store(**LINK)
    assert ask(**question) == refusal(reason, sentence)


def test_a_configuration_that_cannot_be_read_shows_no_picture() -> None:
    CONFIGURATION.write_text("<velmora")
    assert (ask()["outcome"], ask()["reason"]) == ("waits", "no_picture")


@pytest.mark.parametrize("missing", ["ssid", "token"])
def test_half_a_link_opens_nothing(missing: str) -> None:
    store(**{**LINK, "sharelink.ssid": "", "sharelink.token": ""})
    half = {"ssid": "", "token": "", "password": ""} if missing == "ssid" else {"token": ""}
    assert ask(**half) == refusal("incomplete", "This link is incomplete; it was probably cut when it was copied.")


def test_a_link_renewed_while_it_is_asked_about_gives_nothing_away(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(web, "opened_profile", lambda *_: 0)
    monkeypatch.setattr(web, "share_link", lambda _: ShareLink(0, ssid="00004711", token="beef", hash_string=HASH))
    assert Library().open("00004711", "cafe") == (ViewerCode.WRONG_TOKEN, None)


def test_a_protected_link_asks_for_its_password() -> None:
    store(**LINK, **{"sharelink.pwdenable": 1, "sharelink.shrpwd": "päss"})
    needed = {"outcome": "password", "reason": "password_needed", "sentence": "This link is protected by a password."}
    wrong = {"outcome": "password", "reason": "password_wrong", "sentence": "This is not the password."}
    assert (ask(), ask(password="pass")) == (needed, wrong)
    assert ask(password="päss")["outcome"] == "plays"


def test_a_password_is_not_asked_for_before_the_link_is_right() -> None:
    store(**LINK, **{"sharelink.pwdenable": 1, "sharelink.shrpwd": "pass"})
    assert ask(token="cafd")["outcome"] == "refused"


def test_the_page_sends_its_address_to_no_other_site() -> None:
    answer, content = request("GET", "/share?ssid=00004711&token=cafe")
    assert (answer.status, answer.headers["Referrer-Policy"]) == (200, "no-referrer")
    assert b"cafe" not in content


@pytest.fixture
def stream_link() -> Path:
    """The symbolic link to the stream of a shared camera with a playlist."""
    store()
    (STREAM / "playlist.m3u8").write_text("#EXTM3U\n")
    return APPLICATION / share("on", "0", "--json")["hash"]


def test_a_playlist_is_not_kept_anywhere(stream_link: Path) -> None:
    answer, content = request("GET", f"/{stream_link.name}/playlist.m3u8")
    assert (answer.status, content) == (200, b"#EXTM3U\n")
    assert answer.headers["Content-Type"] == "application/vnd.apple.mpegurl"
    assert answer.headers["Cache-Control"] == "no-store"
    assert "Etag" not in answer.headers


@pytest.mark.parametrize("change", ["renew", "off"])
def test_a_streams_files_are_served_as_long_as_its_link_exists(stream_link: Path, change: str) -> None:
    share(change, "0")
    assert request("GET", f"/{stream_link.name}/playlist.m3u8")[0].status == 404


@pytest.mark.parametrize(
    "file", ["notes.txt", "failure", ".playlist.m3u8", "../channel1/playlist.m3u8", "%2e%2e/channel1/playlist.m3u8"]
)
def test_nothing_but_a_streams_own_files_is_given_out(stream_link: Path, file: str) -> None:
    (STREAM / "notes.txt").write_text("private")
    (STREAM / "failure").write_text("private")
    (STREAM / ".playlist.m3u8").write_text("private")
    assert request("GET", f"/{stream_link.name}/{file}")[0].status == 404


def test_a_link_that_leads_elsewhere_is_not_followed(tmp_path: Path) -> None:
    (tmp_path / "playlist.m3u8").write_text("private")
    (APPLICATION / HASH).symlink_to(tmp_path)
    assert request("GET", f"/{HASH}/playlist.m3u8")[0].status == 404
    (APPLICATION / HASH).unlink()


@pytest.fixture(params=["folder", "pipe", "circle", "device"])
def no_segment(request: pytest.FixtureRequest) -> Iterator[str]:
    """Something in the stream's folder that is named like a segment."""
    path = STREAM / f"{request.param}.ts"
    make = {
        "folder": path.mkdir,
        "pipe": lambda: os.mkfifo(path),
        "circle": lambda: path.symlink_to(path),
        "device": lambda: path.symlink_to("/dev/zero"),
    }
    make[request.param]()
    yield path.name
    path.rmdir() if request.param == "folder" else path.unlink()


def test_what_is_not_a_file_is_not_given_out(page: Service, stream_link: Path, no_segment: str) -> None:
    assert request("GET", f"/{stream_link.name}/{no_segment}")[0].status == 404
    assert stream_link.name not in page.log.read_text()


class TestASegment(AsyncHTTPTestCase):
    """Served by this process, so that it can be removed at a certain moment."""

    def get_app(self) -> Application:
        return Application([(ROUTE, StreamFile, {"path": APPLICATION})])

    def test_that_is_removed_while_it_is_asked_for_is_not_found(self) -> None:
        link, segment = APPLICATION / HASH, STREAM / "gone.ts"
        link.symlink_to(STREAM)
        for moment in ("get_modified_time", "get_content_size", "get_content_type"):
            segment.write_bytes(b"segment")
            ask = getattr(StreamFile, moment)
            with patch.object(StreamFile, moment, lambda handler: (segment.unlink(missing_ok=True), ask(handler))[1]):
                assert self.fetch(f"/{HASH}/gone.ts").code == 404
        link.unlink()


def test_a_segment_that_changes_while_it_is_read_puts_no_link_into_the_log(page: Service, stream_link: Path) -> None:
    segment = STREAM / "changing.ts"
    segment.write_bytes(bytes(32 << 20))
    with socket.create_connection(("127.0.0.1", 8080), timeout=20) as visit:
        visit.sendall(f"GET /{stream_link.name}/changing.ts HTTP/1.1\r\nHost: h\r\n\r\n".encode())
        visit.recv(1)
        os.truncate(segment, 1)
        while visit.recv(65536):
            pass
    segment.unlink()
    deadline = time.monotonic() + 20
    while "an answer failed: HTTPOutputError" not in page.log.read_text():
        assert time.monotonic() < deadline, page.log.read_text()
        time.sleep(0.01)
    assert "Traceback" not in page.log.read_text() and stream_link.name not in page.log.read_text()


def test_links_are_in_no_log(page: Service, stream_link: Path) -> None:
    request("GET", f"/{stream_link.name}/gone.ts")
    request("GET", "/nowhere?token=cafe")
    request("POST", "/share/open", json.dumps({"token": "cafe"}))
    logged = page.log.read_text()
    assert "cafe" not in logged
    assert stream_link.name not in logged
