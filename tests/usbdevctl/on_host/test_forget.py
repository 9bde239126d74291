# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""forget."""

from __future__ import annotations

import json
import xml.etree.ElementTree as xml

import pytest
from conftest import APPLICATION, CONFIGURATION, document, usbdevctl

# What the library reads of a channel that never had a device.
FREE = {
    **dict.fromkeys(("usbslot", "devname", "createtime", "profilename", "hlspath", "vtag"), ""),
    **{"exists": "0", "profile": "-1", "slot_switch": "-1", "conflictch": "-1"},
    "video": {
        **{"vnode": "-1", "venable": "0", "vcodec": "1", "cap": "", "fetype": "", "width": "1280", "height": "720"},
        **{"framerate": "30.00", "osdenable": "1", "flip": "0", "mirror": "0", "spsstate": "0", "ldspoutput": "0"},
    },
    "audio": {
        **{"anode": "-1", "acap": "", "aenable": "1", "acodec": "0"},
        **{"samplerate": "8000", "channelno": "1", "bitrate": "64000", "volume": "50"},
    },
    "sharelink": {
        **{"shrenable": "0", "pwdenable": "0"},
        **dict.fromkeys(("shrpwd", "ssid", "token", "hash_string"), ""),
    },
}


def changed(keys: dict) -> dict:
    """Returns the keys, each with another value."""

    def other(value: str | dict) -> str | dict:
        if isinstance(value, dict):
            return changed(value)
        return str(int(value) + 1) if value.lstrip("-").isdigit() else "another"

    return {key: other(value) for key, value in keys.items()}


# A channel with everything that a camera and its profile leave in it.
USED = {
    **changed(FREE),
    "exists": "0",
    "profile": "2",
    "usbslot": "3-1.2",
    "devname": "Gone",
    "conflictch": "-1",  # the library shows no channel that waits, is unplugged and has no profile
    "hlspath": "0123456789abcdef0123456789abcdef",
}
USED["sharelink"]["hash_string"] = "fedcba9876543210fedcba9876543210"


def channel_text(number: int, keys: dict) -> str:
    def element(name: str, value: str | dict) -> str:
        content = value if isinstance(value, str) else "".join(element(*item) for item in value.items())
        return f"<{name}>{content}</{name}>"

    return element(f"ch{number}", keys)


def stored(number: int) -> dict:
    """A channel's section of the file."""

    def value(element: xml.Element) -> str | dict:
        return {child.tag: value(child) for child in element} if len(element) else element.text or ""

    return value(xml.parse(CONFIGURATION).find(f"ch{number}"))


def configure(*channels: tuple[int, dict]) -> None:
    CONFIGURATION.write_text(f"<velmora>{''.join(channel_text(*channel) for channel in channels)}</velmora>")


@pytest.mark.parametrize("profile", ["2", "-1"])
@pytest.mark.parametrize("exists", ["0", "-1"])
def test_a_forgotten_channel_is_as_one_that_never_had_a_device(exists: str, profile: str) -> None:
    waits = "-1" if (exists, profile) == ("0", "-1") else "7"
    configure((3, {**USED, "exists": exists, "profile": profile, "conflictch": waits}))
    forgotten = document("forget", "ch3")
    assert forgotten == {
        "channel": 3,
        "slot": "3-1.2",
        "device": "Gone",
        "profile": None if profile == "-1" else 2,
        "profile_name": forgotten["profile_name"],
    }
    assert stored(3) == FREE
    assert document("channels")["channels"][3]["state"] == "free"
    assert document("free")["profiles"] == [0, 1, 2, 3]


def test_a_forgotten_channel_leaves_no_link() -> None:
    configure((3, USED))
    links = [APPLICATION / USED["hlspath"], APPLICATION / USED["sharelink"]["hash_string"]]
    for link in links:
        link.symlink_to("hls/channel3")
    assert usbdevctl("forget", "pf2").stdout == 'forgotten: channel 3  3-1.2  "Gone"  profile 2  unplugged\n'
    assert [link.is_symlink() for link in links] == [False, False]


def test_a_share_link_without_a_profile_is_removed_too() -> None:
    configure((3, {**USED, "profile": "-1"}))
    link = APPLICATION / USED["sharelink"]["hash_string"]
    link.symlink_to("hls/channel3")
    usbdevctl("forget", "ch3")
    assert not link.is_symlink()


def test_a_forgotten_ports_switch_is_not_kept_for_the_next_camera(camera: str) -> None:
    configure((3, {**USED, "usbslot": camera, "profile": "-1"}))
    usbdevctl("forget", "ch3")
    usbdevctl("plug", "--type", "camera", "--node", "0", "--slot", camera, "--name", "New")
    assert document("channels")["channels"][0]["slot_switch"] is True


def test_a_camera_that_waited_for_a_forgotten_channel_waits_no_longer() -> None:
    waiting = {"exists": "1", "usbslot": "9-9", "devname": "Cam", "conflictch": "3", "video": {"vnode": "9"}}
    for profile in ("2", "-1"):
        configure((3, {**USED, "conflictch": "-1", "profile": profile}), (4, waiting))
        assert usbdevctl("forget", "ch3").returncode == 0
        assert stored(4)["conflictch"] == "-1"


def test_a_camera_that_is_attached_is_not_forgotten(profile: str) -> None:
    before = CONFIGURATION.read_text()
    result = usbdevctl("forget", "ch4")
    assert (result.stdout, result.returncode, CONFIGURATION.read_text()) == ("", 1, before)
    assert result.stderr == (
        'usbdevctl: channel 4  3-1  "Cam"  profile 2: it is attached; only a camera that is away can be forgotten\n'
    )
    refusals = json.loads(usbdevctl("forget", "ch4", "--json").stdout)["refusals"]
    assert [one["reason"] for one in refusals] == ["attached"]


def test_a_free_channel_has_nothing_to_forget() -> None:
    result = usbdevctl("forget", "ch3")
    assert (result.stdout, result.stderr, result.returncode) == (
        "",
        "usbdevctl: channel 3 has no camera; no channel has a camera\n",
        3,
    )
