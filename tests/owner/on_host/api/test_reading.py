# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a page reads beside the state: events, the host, the report, and the pictures of a stream."""

from __future__ import annotations

import asyncio
import csv
import io
import os
import time
from collections.abc import Awaitable, Callable, Iterator
from pathlib import Path
from typing import Any

import pytest
from client import API, ORIGIN, Client
from conftest import run
from ownerlib.event_answers import table
from statelib.event_log import FILE, MOST_EVENTS
from tornado.httpclient import HTTPClientError, HTTPRequest
from tornado.websocket import WebSocketClientConnection, websocket_connect

FOLDER = Path("/mnt/ext/opt/apps/Velmora2/hls/channel1")


@pytest.fixture(scope="module", autouse=True)
def logged() -> None:
    """A camera with a rate that causes a warning got a profile."""
    run("sim plug usb2-camera 1-1; usbdevctl assign 1-1 0; usbdevctl rename 0 Garten; usbdevctl clear 0; "
        "sim unplug 1-1; usbdevctl forget 1-1 || true")


def test_events_of_the_log_come_in_pieces_newest_first(owner: Client) -> None:
    def asked(query: str) -> list[int]:
        return [event["id"] for event in owner.get(f"/events?severity=warning&search=decode&{query}")["events"]]

    everything = asked(f"limit={MOST_EVENTS}")
    assert everything == sorted(everything, reverse=True)
    first = asked("limit=1")
    assert first + asked(f"limit={MOST_EVENTS}&before={first[-1]}") == everything


def test_a_camera_that_came_is_an_event_with_its_name_and_port(owner: Client) -> None:
    def plugs(query: str = "") -> list[dict[str, Any]]:
        return [one for one in owner.get(f"/events?limit={MOST_EVENTS}{query}")["events"] if one["kind"] in ("plugged", "unplugged")]

    before = plugs()
    run("sim plug usb2-camera 1-1")
    try:
        while len(found := plugs()) == len(before) or found[0]["kind"] != "plugged":
            time.sleep(0.05)
        assert found[0]["camera"] == {"name": "USB 2.0 Camera: USB Camera", "port": "1-1"}
        assert plugs(f"&before_turn={found[0]['id']}") == found[1:]
    finally:
        run("sim unplug 1-1; usbdevctl forget 1-1")


def test_events_are_found_by_text_and_severity(owner: Client) -> None:
    warnings = owner.get("/events?severity=warning")["events"]
    assert warnings and {event["severity"] for event in warnings} == {"warning"}
    found = owner.get("/events?search=GARTEN")["events"]
    assert found and all("Garten" in f"{event['text']} {event['lines']} {event['camera']}" for event in found)
    assert owner.get("/events?search=%25")["events"] == []
    assert owner.get("/events?search=%27%20OR%201%3D1--")["events"] == []


@pytest.mark.parametrize("query", ["limit=0", "limit=201", "limit=x", "before=-1", "before_turn=x", "severity=error", "language=xx", "language=..%2Fen", "limit=%FF",
                                   f"before={10**30}", "limit=%D9%A3"])  # fmt: skip
def test_a_question_for_events_that_makes_no_sense_is_refused(owner: Client, query: str) -> None:
    assert owner.ask("GET", f"/events?{query}").error == "invalid"


def test_events_are_told_in_the_language_that_is_asked_for(owner: Client) -> None:
    for language, words in (("en", "Renamed to “Garten”"), ("de", "Umbenannt in „Garten“")):
        told = owner.get(f"/events?language={language}&search=channel+name:+Garten")["events"][0]["text"]
        assert told.endswith(words)  # after its profile, if the camera streamed too shortly to be known


def test_a_host_without_a_log_has_no_events_of_it(owner: Client) -> None:
    hidden = FILE.with_suffix(".hidden")
    FILE.rename(hidden)
    try:
        assert [event for event in owner.get("/events")["events"] if event["kind"] == "log"] == []
    finally:
        hidden.rename(FILE)


def test_all_events_are_a_table(owner: Client) -> None:
    content = owner.ask("GET", "/events.csv").content.decode()
    header, *rows = csv.reader(io.StringIO(content))
    assert header == ["id", "time", "severity", "text", "camera", "port", "line", "user"]
    shown = owner.get(f"/events?limit={MOST_EVENTS}")["events"]
    assert [(row[3], row[6]) for row in rows] == [(event["text"], "\n".join(event["lines"])) for event in shown]
    assert [int(row[0]) for row in rows if row[0]] == [event["id"] for event in shown if event["kind"] == "log"]
    found = list(csv.reader(io.StringIO(owner.ask("GET", "/events.csv?search=GARTEN").content.decode())))[1:]
    assert found and all("garten" in " ".join(row).lower() for row in found)


@pytest.mark.parametrize("begin", ["=", "+", "-", "@", "\t", "\r"])
def test_no_text_of_the_table_is_a_formula(begin: str) -> None:
    event = {"id": 1, "time": "2026", "severity": "warning", "text": f"{begin}HYPERLINK(1)", "lines": [f"{begin}1"], "kind": "log", "user": None, "camera": None}
    assert list(csv.reader(io.StringIO(table([event]))))[1][3::3] == [f"'{begin}HYPERLINK(1)", f"'{begin}1"]


def test_the_host_tells_what_it_is(owner: Client) -> None:
    host = owner.get("/host")
    assert (host["version"], host["web_port"], host["kernel"]) == ("5.1.0", 8080, os.uname().release)
    assert host["limits"] == {"channels": 10, "profiles": 4, "one_channel": False}
    assert host["codec_package"]["enabled"] is True
    assert f"usbdevctl {host['usbdevctl']}\n" in run("usbdevctl --version")


def test_the_report_is_that_of_the_program(owner: Client) -> None:
    assert owner.ask("GET", "/report").content.decode().startswith(run("usbdevctl report").partition("\n")[0])


@pytest.fixture
def stream() -> Iterator[None]:
    """Files that an encoder could have written."""
    for name in ("picture.jpg", "playlist.m3u8", "1.ts", "failure"):
        (FOLDER / name).write_text(name)
    yield
    for file in FOLDER.iterdir():
        file.unlink()


@pytest.mark.usefixtures("stream")
def test_a_stream_is_seen_without_a_share_link(owner: Client) -> None:
    for name in ("picture.jpg", "playlist.m3u8", "1.ts"):
        assert owner.ask("GET", f"/profiles/0/{name}").content == name.encode()
        assert Client().ask("GET", f"/profiles/0/{name}").error == "signed_out"


@pytest.mark.usefixtures("stream")
@pytest.mark.parametrize("name", ["failure", "2.ts", "..%2Fchannel1%2F1.ts", ".1.ts", "1.ts%00"])
def test_nothing_but_a_streams_own_files_is_given_out(owner: Client, name: str) -> None:
    assert owner.ask("GET", f"/profiles/0/{name}").error == "not_found"


@pytest.mark.parametrize("name", ["picture.jpg", "playlist.m3u8"])
def test_a_stream_that_has_not_begun_is_no_mistake(owner: Client, name: str) -> None:
    assert owner.ask("GET", f"/profiles/1/{name}").status == 204


def test_a_picture_that_is_not_a_file_is_not_read(owner: Client) -> None:
    os.mkfifo(FOLDER / "picture.jpg")
    try:
        assert owner.ask("GET", "/profiles/0/picture.jpg").status == 204
    finally:
        (FOLDER / "picture.jpg").unlink()


def test_a_picture_that_leads_elsewhere_is_not_followed(owner: Client, tmp_path: Path) -> None:
    (tmp_path / "secret").write_text("private")
    link = FOLDER / "picture.jpg"
    link.symlink_to(tmp_path / "secret")
    try:
        assert owner.ask("GET", "/profiles/0/picture.jpg").status == 204
    finally:
        link.unlink()


BEGIN = b"\0\0\0\x18ftypavcC\x01\x42\xc0\x0c"


def watch(user: Client, story: Callable[[WebSocketClientConnection], Awaitable[None]], **headers: str) -> None:
    async def run_story() -> None:
        address = f"{ORIGIN.replace('http', 'ws')}{API}/profiles/0/live"
        viewer = await websocket_connect(HTTPRequest(address, headers={"Cookie": user.cookie, **headers}))
        await asyncio.wait_for(story(viewer), 20)
        viewer.close()

    asyncio.run(run_story())


@pytest.mark.usefixtures("stream")
def test_a_stream_is_sent_as_it_comes_as_long_as_the_session_is_open() -> None:
    (FOLDER / "live.mp4").write_bytes(BEGIN)
    user = Client()
    user.sign_in()

    async def story(viewer: WebSocketClientConnection) -> None:
        assert [await viewer.read_message() for _ in range(2)] == ['video/mp4; codecs="avc1.42c00c"', BEGIN]
        for number in range(2):
            (FOLDER / "tmp").write_bytes(b"fragment")
            (FOLDER / "tmp").rename(FOLDER / f"{number}.m4s")
            assert await viewer.read_message() == (None if number else b"fragment")
            await asyncio.to_thread(user.ask, "DELETE", "/session")

    watch(user, story)


@pytest.mark.parametrize(("is_owner", "headers", "status"), [(False, {}, 401), (True, {"Origin": "http://example.org"}, 403)])
def test_a_stream_is_sent_to_nobody_else(owner: Client, is_owner: bool, headers: dict[str, str], status: int) -> None:
    async def story(_: WebSocketClientConnection) -> None: ...

    with pytest.raises(HTTPClientError) as refused:
        watch(owner if is_owner else Client(), story, **headers)
    assert refused.value.code == status


def test_the_charts_show_what_has_happened(owner: Client) -> None:
    run("sim plug usb2-camera 1-1; usbdevctl assign 1-1 0")
    while not owner.get("/charts")["up"]:
        pass
    run("usbdevctl timeouts add 0; sim unplug 1-1; usbdevctl forget 1-1")
    while owner.get("/charts?days=1")["plugs"][-1]["kind"] != "unplugged":
        pass
    shown = owner.get("/charts?days=30")
    assert {"plugged", "unplugged"} == {plug["kind"] for plug in shown["plugs"]}
    assert [span["profile"] for span in shown["up"] if span["to"]] and shown["timeouts"][-1]["count"] == 1


@pytest.mark.parametrize("days", ["0", "31", "x", "", "-1", "07"])
def test_charts_have_one_to_thirty_days(owner: Client, days: str) -> None:
    assert owner.ask("GET", f"/charts?days={days}").error == "invalid"
