# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The share links, which the same server opens for guests."""

from __future__ import annotations

import json
from collections.abc import Iterator
from urllib.parse import parse_qsl, urlsplit

import pytest
from client import Client
from conftest import run


@pytest.fixture(scope="module", autouse=True)
def camera() -> Iterator[None]:
    """With profile 0."""
    run("sim plug usb2-camera 1-1; usbdevctl assign 1-1 0")
    yield
    run("sim unplug 1-1; usbdevctl forget 1-1")


@pytest.fixture(autouse=True)
def not_shared() -> Iterator[None]:
    """Nothing is shared when the next test begins."""
    yield
    run("usbdevctl share off 0")


def opened(page: str, password: str = "") -> str:
    """What a guest gets."""
    question = {**dict(parse_qsl(urlsplit(page).query)), "password": password}
    return str(Client().request("POST", "/share/open", json.dumps(question)).json["outcome"])


def test_a_link_opens_until_sharing_ends(owner: Client) -> None:
    assert owner.get("/profiles/0/share") == {"on": False, "password": False, "page": None}
    shared = owner.ask("PUT", "/profiles/0/share", {"on": True}).json
    assert (shared["on"], opened(shared["page"])) == (True, "plays")
    assert owner.get("/profiles/0/share") == shared
    assert owner.ask("PUT", "/profiles/0/share", {"on": False}).json == {"on": False, "password": False, "page": None}
    assert opened(shared["page"]) == "refused"


def test_a_renewed_link_ends_the_old_one(owner: Client) -> None:
    old = owner.ask("PUT", "/profiles/0/share", {"on": True}).json["page"]
    new = owner.ask("POST", "/profiles/0/share/renewal").json["page"]
    assert (opened(old), opened(new)) == ("refused", "plays")


def test_a_password_is_set_kept_and_taken_away(owner: Client) -> None:
    assert owner.ask("PUT", "/profiles/0/share", {"on": True, "password": "-päss word"}).json["password"] is True
    kept = owner.ask("PUT", "/profiles/0/share", {"on": True}).json
    assert (kept["password"], opened(kept["page"]), opened(kept["page"], "-päss word")) == (True, "password", "plays")
    free = owner.ask("PUT", "/profiles/0/share", {"on": True, "password": None}).json
    assert (free["password"], opened(free["page"])) == (False, "plays")


@pytest.mark.parametrize("password", ["", "short", "x" * 32, 16 * "ü", "two\nlines", "\0", 4711, True])
def test_a_password_that_cannot_be_stored_is_refused(owner: Client, password: object) -> None:
    assert owner.ask("PUT", "/profiles/0/share", {"on": True, "password": password}).error == "invalid"
    assert owner.get("/profiles/0/share")["on"] is False
