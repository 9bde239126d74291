# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The whole picture, of a host with a few cameras."""

from __future__ import annotations

import subprocess
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest
from client import Client
from conftest import run
from host_service import Service

STREAMS = Path("/mnt/ext/opt/apps/Velmora2/hls")
PLUG = "sim plug usb2-camera 3-1.1; sim plug hd-usb-camera 3-1.2; sim plug usb2-camera 1-1; sim plug usb2-camera 5-1"
ASSIGN = "usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door; usbdevctl assign 1-1 2; sim unplug 1-1"


@pytest.fixture(scope="module")
def state(owner: Client) -> Iterator[dict[str, Any]]:
    run(f"{PLUG}; {ASSIGN}")
    yield owner.get("/state")
    run("for port in 3-1.1 3-1.2 5-1; do sim unplug $port; done; for channel in 0 1 2 3; do usbdevctl forget $channel; done")


def test_each_channel_shows_its_camera_and_its_profile(state: dict[str, Any]) -> None:
    shown = [(it["state"], it["port"], it["profile"], it["streams"]) for it in state["channels"][:5]]
    assert shown == [
        ("plugged", "3-1.1", 0, True), ("plugged", "3-1.2", None, False), ("unplugged", "1-1", 2, False),
        ("plugged", "5-1", None, False), ("free", None, None, False),
    ]  # fmt: skip


def test_a_camera_with_a_profile_shows_its_settings(state: dict[str, Any]) -> None:
    names = ("codec", "width", "height", "rate", "flip", "shared")
    assert [state["channels"][0][name] for name in names] == ["mjpeg", 1280, 720, 30.0, False, False]
    assert [state["channels"][1][name] for name in names] == [None, None, None, None, None, False]


def test_each_reason_is_that_of_the_program(state: dict[str, Any]) -> None:
    waits = state["channels"][1]["reasons"][0]
    assert (waits["reason"], waits["other_channel"], waits["collision"]) == ("waits", 0, "controller")
    assert waits["text"].startswith("It waits for channel 0  3-1.1")
    assert [reason["cause"] for reason in state["channels"][2]["reasons"]] == ["unplugged"]


def test_each_profile_shows_who_has_it(state: dict[str, Any]) -> None:
    assert state["profiles"][:3] == [
        {"profile": 0, "channel": 0, "name": "Door", "streams": True},
        {"profile": 1, "channel": None, "name": None, "streams": False},
        {"profile": 2, "channel": 2, "name": None, "streams": False},
    ]


def test_ports_are_below_their_hubs_and_controllers(state: dict[str, Any]) -> None:
    first, second, _ = state["usb"]["controllers"]
    assert (first["buses"], [port["port"] for port in first["ports"]]) == ([1, 2], ["1-1"])
    assert second["bridge"] and second["path"].startswith(second["bridge"])
    hub = second["ports"][0]
    assert (hub["port"], hub["hub"], [(port["port"], port["channel"]) for port in hub["ports"]]) == (
        "3-1", True, [("3-1.1", 0), ("3-1.2", 1)]
    )  # fmt: skip


def test_where_one_more_camera_can_stream_is_told(state: dict[str, Any]) -> None:
    """Not beside one that streams behind a bridge, and not where a camera is or was."""
    first, second, third = ([port for port in one["free_ports"] if port[0] in "135"] for one in state["usb"]["controllers"])
    assert (first, second, third) == ([f"1-{port}" for port in range(2, 9)], [], ["5-2", "5-3", "5-4"])


def test_the_newest_event_is_the_first(state: dict[str, Any]) -> None:
    numbers = [event["id"] for event in state["events"]]
    assert numbers == sorted(numbers, reverse=True) and numbers


def test_a_server_that_cannot_follow_what_changes_ends_with_the_reason(server: Service) -> None:
    away = STREAMS.rename(STREAMS.with_name("away"))
    try:
        done = subprocess.run(["owner-page", "--address", "127.0.0.2"], stderr=subprocess.PIPE, text=True, timeout=60, check=False)
    finally:
        away.rename(STREAMS)
    assert done.returncode == 1 and done.stderr.endswith("owner-page: No such file or directory\n")
