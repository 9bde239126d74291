# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whatever is changed through the interface is an event: what, who and which camera."""

from __future__ import annotations

import csv
import io
import json
import re
import time
from collections.abc import Iterator
from itertools import count
from typing import Any

import pytest
from client import DOCUMENT, PASSWORD, USER, Client
from conftest import run
from ownerlib.history import FILE

CHANGING = ("post", "put", "patch", "delete")
CHANGES = {f"{method} {path}" for path, operations in DOCUMENT["paths"].items() for method in operations if method in CHANGING}
ADDRESSES = (f"127.0.4.{number}" for number in count(1))
DOOR, NEW, AWAY = "1-1", "3-1", "5-1"
PATIENCE_SECONDS = 60
NEW_LINK = "with a new link"
# Each change, one after the other, on a host with Door, which has profile 0, a new camera and one that is away: the request, what
# it is as an event, the port of the camera, and how many lines the library logs of it.
STORY: list[tuple[str, Any, str, str | None, int]] = [
    ("post /session", {"user": USER, "password": PASSWORD}, "Signed in", None, 0),
    ("put /profiles/0/name", {"name": "Barn"}, "Renamed: “Door” is called “Barn” now", DOOR, 1),
    ("patch /profiles/0/stream", {"width": 640, "height": 480, "rate": 30}, "Size: 640 × 480; Rate: 30 pictures a second", DOOR, 1),
    ("put /profiles/0/share", {"on": True}, "Shared", DOOR, 0),
    ("put /profiles/0/share", {"on": True, "password": "secret of guests"}, f"Password for guests set, {NEW_LINK}", DOOR, 0),
    ("put /profiles/0/share", {"on": True, "password": None}, f"Password for guests removed, {NEW_LINK}", DOOR, 0),
    ("post /profiles/0/share/renewal", None, "Link for guests replaced", DOOR, 0),
    ("put /profiles/0/share", {"on": False}, "Sharing stopped", DOOR, 0),
    ("put /channels/0/switch", {"on": False}, "USB port switched off", DOOR, 1),
    ("put /channels/0/switch", {"on": True}, "USB port switched on", DOOR, 1),
    ("put /channels/1/profile", {"profile": 2}, "Stream started, with profile 2", NEW, 1),
    ("delete /channels/1/profile", None, "Stream ended, its profile is free", NEW, 0),
    ("put /channels/0/switch", {"on": False, "for": 1},
     "“Stream this one instead”: the USB port 1-1 of “Barn” was switched off, so that this camera need not wait", NEW, 1),
    ("put /channels/0/switch", {"on": True}, "USB port switched on", DOOR, 1),
    ("post /profiles/0/move", {"channel": 1}, "Profile moved to “USB 2.0 Camera: USB Camera”, port 3-1", DOOR, 3),
    ("delete /channels/2", None, "Camera forgotten", AWAY, 0),
    ("delete /session", None, "Signed out", None, 0),
]


@pytest.fixture(scope="module", autouse=True)
def cameras() -> Iterator[None]:
    """Channel 0 is Door, channel 1 has no profile, and the camera of channel 2 is away."""
    run("sim plug usb2-camera 1-1; sim plug usb2-camera 3-1; sim plug hd-pro-webcam 5-1; sim unplug 5-1; "
        "usbdevctl assign 1-1 0; usbdevctl rename 0 Door")
    yield
    run("for port in 1-1 3-1; do sim unplug $port; usbdevctl forget $port; done")


def acts(owner: Client, query: str = "") -> list[dict[str, Any]]:
    return [one for one in owner.get(f"/events?limit=200{query}")["events"] if one["kind"] == "act"]


def next_act(owner: Client, before: list[dict[str, Any]]) -> dict[str, Any]:
    """What is new; the server keeps it soon after it has answered."""
    known = before[0]["id"] if before else 0
    end = time.monotonic() + PATIENCE_SECONDS
    while not (found := acts(owner)) or found[0]["id"] == known:
        assert time.monotonic() < end, "nothing new is kept"
        time.sleep(0.05)
    return found[0]


def newest_line(owner: Client) -> int:
    """The number of the newest line of the log that is an event of its own."""
    return max((one["id"] for one in owner.get("/events?limit=200&severity=information")["events"] if one["kind"] == "log"), default=0)


def is_of(request: str, change: str) -> bool:
    return re.fullmatch(re.sub(r"\{\w+\}", r"\\d", change), request) is not None


@pytest.mark.parametrize("change", sorted(CHANGES))
def test_each_change_of_the_interface_is_in_the_story(change: str) -> None:
    assert [request for request, *_ in STORY if is_of(request, change)]


def test_each_change_is_an_event(owner: Client) -> None:
    user = Client()
    logged_before = newest_line(owner)
    for request, body, text, port, lines in STORY:
        owner.get("/state")  # the server knows what was changed before
        before = acts(owner)
        method, _, path = request.partition(" ")
        answer = user.sign_in() if request == "post /session" else user.ask(method.upper(), path, body)
        assert answer.status < 400, request
        told = next_act(owner, before)
        assert (told["text"], told["camera"] and told["camera"]["port"], len(told["lines"])) == (text, port, lines), request
        assert (told["user"], told["severity"]) == (USER, "information")
    assert newest_line(owner) == logged_before  # nothing stands twice


def test_a_warning_about_a_change_stays_an_event_of_its_own(owner: Client) -> None:
    before = acts(owner)
    assert owner.ask("PATCH", "/profiles/0/stream", {"codec": "mjpeg", "width": 640, "height": 480, "rate": 120}).status == 200
    told = next_act(owner, before)
    assert "Modified Channel 1 FPS: 120.00" in told["lines"]
    assert not [line for line in told["lines"] if "Decode error" in line]
    assert owner.get("/events?severity=warning&limit=1")["events"][0]["lines"] == [
        "Modified Channel 1 frame rate to over 60 FPS. Decode error may occur."
    ]


def test_what_is_refused_is_no_event(owner: Client) -> None:
    before = acts(owner)
    assert owner.ask("PUT", "/channels/0/profile", {"profile": 9}).error == "invalid"
    assert owner.ask("DELETE", "/channels/1").error == "refused"
    assert owner.ask("PUT", "/profiles/0/name", {"name": "Barn"}, **{"X-CSRF-Token": "x"}).error == "csrf"
    owner.ask("PUT", "/profiles/0/name", {"name": "Shed"})
    assert next_act(owner, before)["text"].endswith("is called “Shed” now")
    assert len(acts(owner)) == len(before) + 1


def test_a_sign_in_that_was_refused_is_a_warning_with_its_address_and_without_its_name(owner: Client) -> None:
    before, address = acts(owner), next(ADDRESSES)
    Client(address).sign_in("a password in the wrong field", "wrong secret")
    told = next_act(owner, before)
    assert told["text"] == f"A sign-in from {address} was refused: user or password was wrong"
    assert (told["user"], told["camera"], told["severity"]) == (None, None, "warning")
    content = FILE.read_bytes()
    assert not [one for one in (b"in the wrong field", b"wrong secret") if one in content]


def test_nothing_of_a_session_a_password_or_a_link_is_kept(owner: Client) -> None:
    user = Client()
    before = acts(owner)
    user.sign_in()
    page = user.ask("PUT", "/profiles/0/share", {"on": True, "password": "secret of guests"}).json["page"]
    while next_act(owner, before)["text"] != f"Password for guests set, {NEW_LINK}":
        pass
    link = dict(part.split("=") for part in page.partition("?")[2].split("&"))
    secrets = [PASSWORD, "secret of guests", user.csrf, user.cookie.partition("=")[2], link["ssid"], link["token"]]
    content = FILE.read_bytes() + json.dumps(acts(owner)).encode()
    assert [secret for secret in secrets if secret.encode() in content] == []


def test_what_users_did_is_found_and_exported_with_the_rest(owner: Client) -> None:
    before = acts(owner)
    owner.ask("PUT", "/profiles/0/name", {"name": "Stall"})
    newest = next_act(owner, before)
    assert acts(owner, "&search=STALL")[0]["id"] == newest["id"]
    assert acts(owner, f"&search={USER}")[0]["id"] == newest["id"]
    assert acts(owner, "&severity=warning&search=stall") == []
    assert acts(owner, f"&before_act={newest['id']}")[0]["id"] == before[0]["id"]
    assert acts(owner, "&language=de&search=umbenannt")[0]["text"].endswith("heißt jetzt „Stall“")
    rows = csv.DictReader(io.StringIO(owner.ask("GET", "/events.csv?search=stall").content.decode()))
    assert (newest["text"], newest["camera"]["port"], USER) in {(row["text"], row["port"], row["user"]) for row in rows}


@pytest.mark.parametrize("number", ["0", "x", "-1"])
def test_a_number_that_is_none_is_refused(owner: Client, number: str) -> None:
    assert owner.ask("GET", f"/events?before_act={number}").error == "invalid"
