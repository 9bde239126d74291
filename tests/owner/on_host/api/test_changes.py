# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a page changes: every change is the one that usbdevctl makes, and a refusal has its reason."""

from __future__ import annotations

import socket
from collections.abc import Iterator
from typing import Any

import pytest
from client import Client
from conftest import run
from usbdev import profiles
from usbdev.notification import PORT, SIZE, Notification

@pytest.fixture(scope="module", autouse=True)
def cameras() -> Iterator[None]:
    """Channel 0 has an HD Pro Webcam, channels 1 and 2 have cameras on one root port, and channel 3 one that is not supported."""
    run("sim plug hd-pro-webcam 1-1; sim plug usb2-camera 3-1.1; sim plug usb2-camera 3-1.2; sim plug infrared-camera 5-1")
    yield
    run("for port in 1-1 3-1.1 3-1.2 5-1; do sim unplug $port; usbdevctl forget $port; done")


@pytest.fixture(autouse=True)
def cleared() -> Iterator[None]:
    """No profile is assigned when the next test begins."""
    yield
    for profile in profiles.profiles():
        profiles.clear(profile)


def channel(owner: Client, number: int) -> dict[str, Any]:
    return dict(owner.get("/state")["channels"][number])


def test_a_profile_is_assigned_and_taken_back(owner: Client) -> None:
    assert owner.ask("PUT", "/channels/0/profile", {"profile": 2}).json == {"now_waiting": []}
    assert channel(owner, 0)["profile"] == 2
    assert owner.ask("DELETE", "/channels/0/profile").status == 204
    assert channel(owner, 0)["profile"] is None
    assert owner.ask("DELETE", "/channels/0/profile").error == "not_found"


def test_the_manager_is_told_of_an_assignment_so_that_the_stream_begins(owner: Client) -> None:
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as manager:
        manager.bind(("127.0.0.1", PORT))
        manager.settimeout(20)
        owner.ask("PUT", "/channels/0/profile", {"profile": 2})
        told = Notification.from_bytes(manager.recv(SIZE))
    assert (told.event, told.profile, told.target, told.video_node) == (0, 2, 2, channel(owner, 0)["node"])


def test_an_assignment_that_does_harm_is_refused_with_its_reason(owner: Client) -> None:
    owner.ask("PUT", "/channels/1/profile", {"profile": 0})
    refused = owner.ask("PUT", "/channels/2/profile", {"profile": 1})
    assert (refused.status, refused.error, refused.json["reason"]) == (409, "refused", "waits")
    assert "both are on one USB controller behind a PCI bridge" in refused.json["text"] and refused.json["cure"].startswith("Plug it into")
    assert channel(owner, 2)["profile"] is None
    assert owner.ask("PUT", "/channels/2/profile", {"profile": 1, "anyway": True}).json == {"now_waiting": [1]}
    run("usbdevctl clear pf0; usbdevctl clear pf1; usbdevctl sync")  # which finds out who waits


def test_a_check_tells_what_an_assignment_would_do(owner: Client) -> None:
    assert owner.get("/channels/0/assignment?profile=0")["allowed"] is True
    checked = owner.get("/channels/3/assignment?profile=0")
    assert (checked["allowed"], checked["reason"]) == (False, "unsupported")
    assert channel(owner, 0)["profile"] is None


@pytest.mark.parametrize("profile", ["", "4", "-1", "x", "0x0"])
def test_a_check_needs_a_profile(owner: Client, profile: str) -> None:
    assert owner.ask("GET", f"/channels/0/assignment?profile={profile}").error == "invalid"


def test_a_port_is_switched(owner: Client) -> None:
    assert owner.ask("PUT", "/channels/0/switch", {"on": False}).json == {"switched_on": False, "waits_for": None}
    assert channel(owner, 0)["switched_on"] is False
    assert owner.ask("PUT", "/channels/0/switch", {"on": True}).json["switched_on"] is True


def test_only_a_camera_that_is_away_is_forgotten(owner: Client) -> None:
    refused = owner.ask("DELETE", "/channels/0")
    assert (refused.error, refused.json["why"].endswith("only a camera that is away can be forgotten")) == ("refused", True)
    run("sim unplug 1-1")
    assert owner.ask("DELETE", "/channels/0").status == 204
    assert channel(owner, 0)["state"] == "free"
    run("sim plug hd-pro-webcam 1-1")


@pytest.mark.parametrize("name", ["Door", "-h", "--json", "<b>Tür</b> 🚪", "a" * 255, ""])
def test_a_profile_is_renamed(owner: Client, name: str) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    assert owner.ask("PUT", "/profiles/0/name", {"name": name}).json == {"name": name}
    assert channel(owner, 0)["profile_name"] == (name or None)


@pytest.mark.parametrize("name", ["a" * 256, 128 * "ü", "\0", 7, None])
def test_a_name_that_does_not_fit_is_not_cut(owner: Client, name: object) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    assert owner.ask("PUT", "/profiles/0/name", {"name": name}).error == "invalid"


def test_a_profile_moves_with_its_name_to_another_camera(owner: Client) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    owner.ask("PUT", "/profiles/0/name", {"name": "Door"})
    owner.ask("PATCH", "/profiles/0/stream", {"rate": 24})
    planned = owner.get("/profiles/0/move?channel=1")
    assert (planned, channel(owner, 0)["profile_name"]) == ({"differences": [{"setting": "rate", "wanted": "24", "taken": "30"}]}, "Door")
    moved = owner.ask("POST", "/profiles/0/move", {"channel": 1}).json
    assert (moved["differences"], moved["page"]) == ([{"setting": "rate", "wanted": "24", "taken": "30"}], None)
    assert [channel(owner, number)["profile_name"] for number in (0, 1)] == [None, "Door"]
    assert owner.ask("POST", "/profiles/0/move", {"channel": 9}).error == "not_found"


@pytest.mark.parametrize("channel", ["", 10, -1, "one"])
def test_a_move_needs_a_channel(owner: Client, channel: int | str) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    assert owner.ask("GET", f"/profiles/0/move?channel={channel}").error == "invalid"
    assert owner.ask("POST", "/profiles/0/move", {"channel": channel}).error == "invalid"


def test_a_move_that_does_not_fit_is_refused_with_its_reason(owner: Client) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    owner.ask("PUT", "/channels/1/switch", {"on": False})
    answers = [owner.ask("GET", "/profiles/0/move?channel=1"), owner.ask("POST", "/profiles/0/move", {"channel": 1})]
    owner.ask("PUT", "/channels/1/switch", {"on": True})
    for refused in answers:
        assert (refused.status, refused.error, refused.json["reason"]) == (409, "refused", "port_off")
        assert refused.json["text"].endswith(": its port is off, and a stream cannot be set while it is.")
    assert channel(owner, 0)["profile"] == 0


def test_the_answer_shows_what_was_asked_and_what_was_taken(owner: Client) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    asked = {"codec": "mjpeg", "width": 640, "height": 480, "rate": 28, "flip": True}
    answer = owner.ask("PATCH", "/profiles/0/stream", asked).json
    assert answer["asked"] == asked
    assert answer["taken"] == {**asked, "rate": 24.0, "flip": False}
    assert answer["not_stored"] == ["flip"]
    answer = owner.ask("PATCH", "/profiles/0/stream", {"codec": "h264", "flip": True, "mirror": True, "overlay": False}).json
    assert (answer["taken"], answer["not_stored"]) == (answer["asked"], [])
    assert channel(owner, 0)["flip"] is True


def test_settings_of_sound_are_not_stored_without_a_sound_card(owner: Client) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    answer = owner.ask("PATCH", "/profiles/0/stream", {"sound": True, "sound_codec": "aac", "volume": 3}).json
    assert sorted(answer["not_stored"]) == ["sound", "sound_codec", "volume"]


def test_a_size_that_the_camera_does_not_offer_is_refused(owner: Client) -> None:
    owner.ask("PUT", "/channels/0/profile", {"profile": 0})
    refused = owner.ask("PATCH", "/profiles/0/stream", {"codec": "mjpeg", "width": 641, "height": 480})
    assert (refused.error, refused.json["text"]) == ("refused", "The camera of profile 0 does not offer mjpeg at 641x480.")


@pytest.mark.parametrize(
    "settings",
    [{}, {"width": 640}, {"height": 480}, {"width": -1, "height": 1}, {"width": 1, "height": 10**9}, {"codec": "av1"},
     {"codec": "--help"}, {"rate": -1}, {"rate": 1e9}, {"rate": "15"}, {"rate": True}, {"volume": 101}, {"volume": True},
     {"volume": 1.5}, {"flip": 1}, {"more": 1}, {"rate": None}, '{"rate": NaN}', '{"rate": Infinity}'],
    ids=str,
)  # fmt: skip
def test_settings_that_no_camera_has_are_refused(owner: Client, settings: object) -> None:
    assert owner.ask("PATCH", "/profiles/0/stream", settings).error == "invalid"


def test_a_camera_is_asked_for_its_formats(owner: Client) -> None:
    codecs = {offered["codec"]: offered["sizes"] for offered in owner.get("/channels/0/formats")["codecs"]}
    assert set(codecs) == {"mjpeg", "h264"}
    (rates,) = [size["rates"] for size in codecs["mjpeg"] if (size["width"], size["height"]) == (1920, 1080)]
    assert sorted(rates) == [0.133, 5, 10, 15, 20, 24, 30]
    assert owner.get("/channels/3/formats") == {"codecs": []}


@pytest.mark.parametrize(
    ("method", "path", "body"),
    [
        ("GET", "/channels/9/formats", None), ("GET", "/channels/9/assignment?profile=0", None),
        ("PUT", "/channels/9/profile", {"profile": 0}), ("PUT", "/channels/9/switch", {"on": True}),
        ("DELETE", "/channels/9", None), ("PUT", "/profiles/3/name", {"name": "x"}), ("GET", "/profiles/3/share", None),
        ("PUT", "/profiles/3/share", {"on": True}), ("POST", "/profiles/3/share/renewal", None),
        ("PATCH", "/profiles/3/stream", {"rate": 5}), ("POST", "/profiles/3/move", {"channel": 0}),
        ("GET", "/profiles/3/move?channel=0", None),
    ],
)  # fmt: skip
def test_what_is_not_there_is_not_found(owner: Client, method: str, path: str, body: object) -> None:
    assert owner.ask(method, path, body).error == "not_found"
