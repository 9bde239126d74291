# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""share."""

from __future__ import annotations

import json

import pytest
from conftest import APPLICATION, CONFIGURATION, document, usbdevctl


def test_a_profile_that_is_not_shared_has_no_link(profile: str) -> None:
    assert document("share", "show", profile) == {
        "profile": 2,
        "profile_name": "Door",
        "sharing": False,
        "password": False,
        "ssid": None,
        "token": None,
        "hash": None,
        "page": None,
    }


def test_a_shared_profile_has_a_page_and_a_link_to_its_stream(profile: str) -> None:
    link = document("share", "on", profile)
    assert (link["sharing"], link["password"]) == (True, False)
    assert link["page"] == f"/share?ssid={link['ssid']}&token={link['token']}"
    assert (APPLICATION / link["hash"]).readlink() == APPLICATION / "hls/channel3"
    assert document("share", "show", profile) == link


def test_sharing_again_keeps_link_and_password(profile: str) -> None:
    protected = document("share", "on", profile, "--password-stdin", given="pass\n")
    assert protected["password"] is True
    assert document("share", "on", profile) == protected


def test_a_share_password_is_stored_and_not_shown(profile: str) -> None:
    link = document("share", "on", profile, "--password-stdin", given="open sesame\n")
    assert "<shrpwd>open sesame</shrpwd>" in CONFIGURATION.read_text()
    assert "sesame" not in json.dumps(link)


def test_a_new_password_gives_a_new_link(profile: str) -> None:
    unprotected = document("share", "on", profile)
    protected = document("share", "on", profile, "--password-stdin", given="pass\n")
    assert protected["ssid"] == unprotected["ssid"]
    assert {protected[key] == unprotected[key] for key in ("token", "hash", "page")} == {False}


def test_a_share_password_is_not_cut(profile: str) -> None:
    result = usbdevctl("share", "on", profile, "--password-stdin", given="x" * 32)
    assert (result.stdout, result.returncode) == ("", 2)
    assert result.stderr == "usbdevctl: the password is longer than 31 bytes\n"
    assert document("share", "show", profile)["sharing"] is False


def test_a_link_taken_back_leaves_nothing(profile: str) -> None:
    shared = document("share", "on", profile, "--password-stdin", given="pass\n")
    ended = usbdevctl("share", "off", profile)
    assert (ended.stdout.split(":")[0], ended.returncode) == (f"sharing of profile {profile} ended", 0)
    link = document("share", "show", profile)
    assert (link["sharing"], link["password"], link["page"]) == (False, False, None)
    assert not (APPLICATION / shared["hash"]).is_symlink()


def test_a_renewed_link_replaces_the_old_one(profile: str) -> None:
    old = document("share", "on", profile)
    new = document("share", "renew", profile)
    result = usbdevctl("share", "check", old["ssid"], old["token"])
    assert (result.stdout, result.returncode) == ("", 3)
    assert result.stderr == "usbdevctl: the link opens nothing: no profile has this share id\n"
    result = usbdevctl("share", "check", new["ssid"], new["token"])
    assert (result.stdout.split(), result.returncode) == (["opens", "yes", "profile", "2"], 0)
    assert usbdevctl("share", "check", new["ssid"], "-", given=new["token"] + "\n").stdout == result.stdout


def test_a_check_shows_programs_the_reason(profile: str) -> None:
    link = document("share", "on", profile)
    assert document("share", "check", link["ssid"], link["token"]) == {
        "opens": True,
        "code": None,
        "reason": None,
        "profile": 2,
    }
    assert document("share", "check", link["ssid"], "0") == {
        "opens": False,
        "code": 9000,
        "reason": "the token is another one",
        "profile": 2,
    }
    assert document("share", "check", "0", "0")["profile"] is None


@pytest.mark.parametrize("command", ["show", "on", "off", "renew"])
def test_a_profile_without_a_camera_cannot_be_shared(command: str) -> None:
    result = usbdevctl("share", command, "1")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr == "usbdevctl: profile 1 has no camera; no channel has a camera\n"


@pytest.mark.parametrize("command", [("show", "1"), ("check", "1", "2")])
def test_a_configuration_that_cannot_be_read_is_a_failure(command: tuple[str, ...]) -> None:
    CONFIGURATION.write_text("<velmora")
    result = usbdevctl("share", *command)
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith("usbdevctl: the channel configuration cannot be read\n")
