"""channels and formats."""

from __future__ import annotations

import json
from typing import Any

from conftest import RunOnHost

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
    assert json.loads(result.stdout) == {"schema": 1, "node": 0, "over_60": False, "formats": []}
    assert result.stderr == "usbdevctl: /dev/video0 offers no format that can be used\n"
    assert result.returncode == 3
