# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""channels, devices, profiles, free, slot list and formats."""

from __future__ import annotations

import json
import re
from typing import Any

from conftest import RenewedHost, RunOnHost, run_all

CONFIGURATION = """<velmora>
  <ch0><exists>1</exists><profile>2</profile><usbslot>3-1</usbslot><devname>Cam</devname><slot_switch>0</slot_switch>
    <profilename>Door</profilename><createtime>2024-03-05 08:15:00</createtime><video><vnode>4</vnode></video></ch0>
  <ch1><exists>1</exists><usbslot>3-2</usbslot><devname>Two</devname><conflictch>0</conflictch>
    <video><vnode>6</vnode></video></ch1>
  <ch2><exists>0</exists><profile>1</profile><usbslot>1-2</usbslot><devname>Away</devname></ch2>
  <ch3><exists>0</exists><usbslot>1-1</usbslot><devname>Gone</devname></ch3>
  <ch4><exists>-1</exists><usbslot>1-1</usbslot><devname>Old</devname><video><vnode>8</vnode></video></ch4>
  <ch5><exists>1</exists><usbslot>1-3</usbslot><devname>Bad</devname><conflictch>999</conflictch></ch5>
</velmora>
"""


def channels(on_host: RunOnHost) -> list[dict[str, Any]]:
    result = on_host(f"cat >/etc/config/usbdev.conf <<'END'\n{CONFIGURATION}END\nusbdevctl channels --json")
    document = json.loads(result.stdout)
    assert (document["schema"], result.returncode, len(document["channels"])) == (1, 0, 10)
    return document["channels"]


def test_a_channel_with_a_profile_is_shown_in_full(on_host: RunOnHost) -> None:
    assert channels(on_host)[0] == {
        "channel": 0,
        "state": "plugged",
        "slot": "3-1",
        "device": "Cam",
        "video_node": 4,
        "profile": 2,
        "profile_name": "Door",
        "slot_switch": False,
        "parked_behind": None,
        "supported": True,
        "reason": None,
        "created": "2024-03-05 08:15:00",
    }


def test_channels_of_every_state_are_shown(on_host: RunOnHost) -> None:
    keys = ("state", "device", "profile", "video_node", "parked_behind", "supported")
    assert [tuple(row[key] for key in keys) for row in channels(on_host)[1:7]] == [
        ("plugged", "Two", None, 6, 0, True),
        ("unplugged", "Away", 1, None, None, True),
        ("unplugged", "Gone", None, None, None, True),
        ("displaced", "Old", None, None, None, True),
        ("plugged", "Bad", None, None, None, False),
        ("free", "", None, None, None, True),
    ]


def test_a_name_cannot_reach_the_terminal(on_host: RunOnHost) -> None:
    result = on_host(
        "sim plug --hardware-only usb2-camera 3-1 >/dev/null; usbdevctl plug --type camera --node 0 --slot 3-1 "
        "--name \"$(printf 'a\\tb')\" >/dev/null; usbdevctl channels"
    )
    assert "a\\x09b" in result.stdout
    assert "\t" not in result.stdout


def test_the_formats_of_a_camera_are_tables(on_host: RunOnHost) -> None:
    result = on_host("sim plug --hardware-only 8mp-camera 3-1 >/dev/null; usbdevctl formats 0")
    lines = result.stdout.splitlines()
    assert lines[:3] == [
        "Format 0: MJPEG, as the camera sends it; frames per second",
        "     SIZE  15  30",
        "3264x2448   x   .",
    ]
    assert "Format 1: H.264, encoded by the host from raw YUYV; frames per second" in lines
    assert result.returncode == 0


def test_rates_above_60_are_warned_of(on_host: RunOnHost) -> None:
    result = on_host("sim plug --hardware-only console-camera 3-1 >/dev/null; usbdevctl formats 0 --json")
    assert json.loads(result.stdout)["over_60"] is True
    assert result.stderr == "usbdevctl: warning: /dev/video0 has rates above 60 frames per second; decoding may fail\n"
    assert result.returncode == 0


def test_a_camera_without_a_usable_format_has_none_that_applies(on_host: RunOnHost) -> None:
    result = on_host("sim plug --hardware-only infrared-camera 3-1 >/dev/null; usbdevctl formats 0 --json")
    document = json.loads(result.stdout)
    assert (document["schema"], document["node"], document["over_60"], document["formats"]) == (1, 0, False, [])
    assert result.stderr == "usbdevctl: /dev/video0 offers no format that can be used: v4l2-ctl lists GREY\n"
    assert result.returncode == 3


TWO_CAMERAS = "sim plug usb2-camera 3-1.1; sim plug hd-usb-camera 5-1; usbdevctl assign 3-1.1 0; usbdevctl rename 0 Door"
APPLICATION = "/mnt/ext/opt/apps/Velmora2"


def test_the_devices_are_listed_with_what_they_are_set_to(host: RenewedHost) -> None:
    _, document, text = run_all(host, TWO_CAMERAS, "usbdevctl devices --json", "usbdevctl devices")
    keys = ("channel", "state", "slot", "stream", "audio", "shared", "profile", "profile_name", "slot_switch")
    assert [tuple(device[key] for key in keys) for device in document.json["devices"]] == [
        (0, "plugged", "3-1.1", "video", False, False, 0, "Door", True),
        (1, "plugged", "5-1", "video", False, False, None, "", True),
    ]
    assert (document.json["schema"], document.status) == (1, 0)
    assert text.out.split("\n")[0].split() == (
        "CHANNEL STATE PORT DEVICE STREAM AUDIO SHARED PROFILE SWITCH CONFLICT CREATED".split()
    )


def test_a_host_without_devices_has_none_to_list_or_to_assign(host: RenewedHost) -> None:
    devices, free = run_all(host, "usbdevctl devices --json", "usbdevctl free --json")
    assert (devices.json, devices.err, devices.status) == (
        {"schema": 1, "devices": []},
        "usbdevctl: no channel has a device\n",
        3,
    )
    assert (free.json, free.err, free.status) == (
        {"schema": 1, "profiles": [0, 1, 2, 3], "devices": []},
        "usbdevctl: no device waits for a profile\n",
        3,
    )


def test_free_profiles_are_listed_until_all_are_assigned(host: RenewedHost) -> None:
    configuration = "".join(
        f"<ch{channel}><exists>1</exists><profile>{channel}</profile><usbslot>3-{channel}</usbslot></ch{channel}>"
        for channel in range(4)
    )
    _, free, _, bound = run_all(
        host,
        TWO_CAMERAS,
        "usbdevctl free --json",
        f"echo '<velmora>{configuration}</velmora>' >/etc/config/usbdev.conf",
        "usbdevctl free",
    )
    assert free.json["profiles"] == [1, 2, 3]
    assert [(device["channel"], device["slot"]) for device in free.json["devices"]] == [(1, "5-1")]
    assert free.status == 0
    assert (bound.out, bound.status) == ("profiles    none\ndevices     none\n", 3)
    assert bound.err == "usbdevctl: every profile has a camera\n"


def test_the_profiles_follow_their_live_view_links(host: RenewedHost) -> None:
    _, good, _, nowhere, _, missing = run_all(
        host,
        TWO_CAMERAS,
        "usbdevctl profiles --json",
        f"rmdir {APPLICATION}/hls/channel1",
        "usbdevctl profiles --json",
        f"find {APPLICATION} -type l -delete",
        "usbdevctl profiles",
    )
    profiles = good.json["profiles"]
    assert [profile["state"] for profile in profiles] == ["ready", "unbound", "unbound", "unbound"]
    link = profiles[0]["link"]
    assert re.fullmatch(APPLICATION + "/[0-9a-f]{32}", link["path"])
    assert (link["target"], link["state"]) == (f"{APPLICATION}/hls/channel1", "good")
    assert profiles[1]["link"] is None
    assert nowhere.json["profiles"][0]["link"]["state"] == "nowhere"
    assert missing.out.splitlines()[1].endswith("  missing")
    assert [done.status for done in (good, nowhere, missing)] == [0, 0, 0]


def test_the_ports_are_listed_with_what_their_cameras_offer(host: RenewedHost) -> None:
    _, slots = run_all(host, TWO_CAMERAS, "usbdevctl slot list --json")
    keys = ("slot", "channel", "slot_switch", "stream", "codecs", "profile")
    assert [tuple(slot[key] for key in keys) for slot in slots.json["slots"]] == [
        ("3-1.1", 0, True, "video", ["mjpeg", "h264"], 0),
        ("5-1", 1, True, "video", ["mjpeg", "h264"], None),
    ]


def test_a_port_that_two_channels_hold_is_listed_once(host: RenewedHost) -> None:
    configuration = "".join(
        f"<ch{channel}><exists>{exists}</exists><usbslot>3-1</usbslot></ch{channel}>"
        for channel, exists in enumerate((-1, 1))
    )
    _, slots = run_all(
        host,
        f"echo '<velmora>{configuration}</velmora>' >/etc/config/usbdev.conf",
        "usbdevctl slot list --json",
    )
    assert [(slot["slot"], slot["channel"]) for slot in slots.json["slots"]] == [("3-1", 1)]
