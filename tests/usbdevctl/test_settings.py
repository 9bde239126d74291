# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""stream, caps, slot and host: what the settings pages of the application do."""

from __future__ import annotations

import json

from conftest import RenewedHost, run_all

# A camera with both codecs in a port of its own; it has profile 0.
CAMERA = "sim plug usb2-camera 3-1 >/dev/null; usbdevctl assign 3-1 0"
UNBOUND = "usbdevctl: profile 0 has no camera; no channel has a camera\n"
NAME = "USB 2.0 Camera"
NAMED = f'channel 0  3-1  "{NAME}: USB Camera"  profile 0'
UNREADABLE = "echo '<vel' >/etc/config/usbdev.conf"


def test_the_stream_of_a_new_profile_is_shown(host: RenewedHost) -> None:
    _, shown, text = run_all(host, CAMERA, "usbdevctl stream show 0 --json", "usbdevctl stream show 0")
    record = shown.json
    assert len(record.pop("tag")) == 8
    assert record == {
        "schema": 1,
        "stream": "video",
        "video_node": 0,
        "width": 1280,
        "height": 720,
        "fps": 30,
        "codec": "mjpeg",
        "overlay": True,
        "flip": False,
        "mirror": False,
        "display": False,
        "front_end": "",
        "video_enabled": True,
        "sps_state": 0,
        "audio_node": None,
        "audio": False,
        "audio_codec": "ulaw",
        "volume": 50,
        "sample_rate": 8000,
        "audio_channels": 1,
        "bit_rate": 64000,
    }
    assert text.out.startswith("stream          video\nvideo node      0\nsize            1280x720\n")


def test_a_change_shows_the_chosen_rate_and_what_was_logged(host: RenewedHost) -> None:
    _, changed, shown = run_all(
        host, CAMERA, "usbdevctl stream set 0 --size 640x480 --fps 100", "usbdevctl stream show 0 --json"
    )
    assert changed.out == (
        f"camera      {NAMED}\n"
        "fps         60 (100 was asked for)\n"
        "logged      Modified Channel 1 resolution: 640x480\n"
        "logged      Modified Channel 1 FPS: 60.00\n"
    )
    assert (changed.err, changed.status) == ("", 0)
    assert [shown.json[key] for key in ("width", "height", "fps")] == [640, 480, 60]


def test_a_change_in_json_contains_the_events(host: RenewedHost) -> None:
    _, changed = run_all(host, CAMERA, "usbdevctl stream set 0 --codec h264 --flip on --json")
    texts = [event["text"] for event in changed.json["events"]]
    assert texts == [
        "Modified Channel 1 video format: H.264",
        "Modified Channel 1 FPS: 9.00",
        "Enabled image reverse on Channel 1",
    ]
    assert (changed.json["asked_fps"], changed.json["not_stored"], changed.status) == (None, [], 0)


def test_a_change_that_does_not_fit_the_stream_is_named(host: RenewedHost) -> None:
    _, changed = run_all(host, CAMERA, "usbdevctl stream set 0 --overlay off --volume 7 --json")
    assert changed.json["not_stored"] == ["overlay", "volume"]
    assert changed.err == (
        "usbdevctl: overlay does not apply to this stream and was not stored\n"
        "usbdevctl: volume does not apply to this stream and was not stored\n"
    )
    assert changed.status == 3


def test_a_size_that_the_camera_does_not_offer_changes_nothing(host: RenewedHost) -> None:
    _, before, refused, for_programs, after = run_all(
        host,
        CAMERA,
        "cat /etc/config/usbdev.conf",
        "usbdevctl stream set 0 --size 641x480 --fps 5",
        "usbdevctl stream set 0 --size 641x480 --fps 5 --json",
        "cat /etc/config/usbdev.conf",
    )
    assert refused.err == "usbdevctl: the camera of profile 0 does not offer mjpeg at 641x480\n"
    assert (refused.out, refused.status, after.out) == ("", 1, before.out)
    assert [one["reason"] for one in json.loads(for_programs.out)["refusals"]] == ["not_offered"]


def test_a_damaged_event_log_does_not_hide_that_the_change_was_stored(host: RenewedHost) -> None:
    damage = "mkdir -p /var/log/vl; yes | head -c 2000 >/var/log/vl/event.db"
    _, changed = run_all(host, f"{CAMERA}; {damage}", "usbdevctl stream set 0 --fps 60")
    assert (changed.out, changed.status) == (f"camera      {NAMED}\nfps         60\nlogged      none\n", 0)
    assert "usbdevctl: cannot read the event log /var/log/vl/event.db: file is not a database\n" in changed.err


def test_stream_prints_why_a_profile_cannot_stream(host: RenewedHost) -> None:
    results = run_all(
        host,
        "usbdevctl stream show 0",
        "usbdevctl stream set 0 --fps 5",
        "sim plug usb2-camera 3-1.1; sim plug hd-usb-camera 3-1.2; usbdevctl assign 3-1.2 1; "
        "usbdevctl assign 3-1.1 0 --anyway",
        "usbdevctl stream show 1",
        "usbdevctl slot off 3-1.1",
        "usbdevctl stream show 0",
        "sim unplug 3-1.1",
        "usbdevctl stream show 0",
    )
    errors = [(result.err, result.status) for result in results]
    assert errors[:2] == 2 * [(UNBOUND, 3)]
    assert [errors[3], errors[5], errors[7]] == [
        (f'usbdevctl: channel 1  3-1.2  "{NAME}: HD USB Camera"  profile 1: it waits for channel 0\n', 3),
        (f'usbdevctl: channel 0  3-1.1  "{NAME}: USB Camera"  profile 0: its port is switched off\n', 3),
        (f'usbdevctl: channel 0  3-1.1  "{NAME}: USB Camera"  profile 0  unplugged: it is unplugged\n', 3),
    ]


def test_a_profile_with_sound_only_has_no_stream_to_set(host: RenewedHost) -> None:
    configuration = (
        "<velmora><ch0><exists>1</exists><profile>0</profile><usbslot>3-1</usbslot>"
        "<audio><anode>0</anode><aenable>1</aenable><acap>0 1</acap></audio></ch0></velmora>"
    )
    _, changed, caps, listed = run_all(
        host,
        f"echo '{configuration}' >/etc/config/usbdev.conf",
        "usbdevctl stream set 0 --volume 7",
        "usbdevctl caps 0 --json",
        "usbdevctl slot list --json",
    )
    assert changed.err == "usbdevctl: profile 0 has no camera, without which its stream cannot be set\n"
    assert changed.status == 1
    assert caps.json == {"schema": 1, "video": [], "audio": ["ulaw", "aac"], "formats": []}
    assert caps.status == 0
    assert [(slot["stream"], slot["codecs"]) for slot in listed.json["slots"]] == [("audio", [])]


def test_the_volume_that_was_set_is_printed(host: RenewedHost) -> None:
    configuration = (
        "<velmora><ch0><exists>1</exists><profile>0</profile><usbslot>3-1</usbslot><devname>Cam</devname>"
        "<audio><anode>0</anode><volume>30</volume></audio></ch0></velmora>"
    )
    _, text, document = run_all(
        host,
        f"sim plug --hardware-only hd-pro-webcam 3-1; echo '{configuration}' >/etc/config/usbdev.conf",
        "usbdevctl volume 0",
        "usbdevctl volume ch0 --json",
    )
    assert (text.out, text.status) == ('volume set to 30: channel 0  3-1  "Cam"  profile 0\n', 0)
    assert (document.json["volume"], document.json["channel"], document.status) == (30, 0, 0)


def test_the_capabilities_of_a_profile_are_codecs_and_formats(host: RenewedHost) -> None:
    _, text, document = run_all(host, CAMERA, "usbdevctl caps 0", "usbdevctl caps 0 --json")
    assert text.out.startswith("video       mjpeg, h264\naudio       none\n\nFormat 0: MJPEG, as the camera sends it;")
    assert (document.json["video"], document.json["audio"]) == (["mjpeg", "h264"], [])
    assert [entry["codec"] for entry in document.json["formats"]] == ["mjpeg", "h264"]


def test_a_profile_whose_port_is_off_has_no_capabilities(host: RenewedHost) -> None:
    none = "usbdevctl: no device is attached for profile 0 in a port that is switched on\n"
    unbound, _, _, off = run_all(host, "usbdevctl caps 0", CAMERA, "usbdevctl slot off 3-1", "usbdevctl caps 0")
    assert [(caps.out, caps.err, caps.status) for caps in (unbound, off)] == 2 * [("", none, 3)]


def test_a_port_is_switched_off_and_on_again(host: RenewedHost) -> None:
    _, off, listed, on, log = run_all(
        host,
        CAMERA,
        "usbdevctl slot off 3-1 --json",
        "usbdevctl slot list --json",
        "usbdevctl slot on 3-1",
        "usbdevctl log --lines 2 --json",
    )
    assert off.json == {
        "schema": 1,
        "slot_switch": False,
        "parked_behind": None,
        "channel": 0,
        "slot": "3-1",
        "device": "USB 2.0 Camera: USB Camera",
        "profile": 0,
        "profile_name": "",
    }
    assert listed.json["slots"][0]["slot_switch"] is False
    assert on.out == 'switched on: channel 0  3-1  "USB 2.0 Camera: USB Camera"  profile 0\n'
    assert [event["text"] for event in log.json["events"]] == [
        "USB slot [3-1] has been disabled.",
        "USB slot [3-1] has been enabled.",
    ]


def test_a_port_that_is_switched_on_waits_for_a_camera_that_streams(host: RenewedHost) -> None:
    results = run_all(
        host,
        "sim plug usb2-camera 3-1.1; sim plug hd-usb-camera 3-1.2; usbdevctl assign 3-1.1 0",
        "usbdevctl slot off 3-1.2",
        "usbdevctl slot on 3-1.2",
        "usbdevctl slot on 3-1.2 --json",
    )
    assert results[2].out.startswith("switched on, waits for channel 0: channel 1  3-1.2  ")
    assert results[3].json["parked_behind"] == 0


def test_without_devices_no_port_is_listed_or_switched(host: RenewedHost) -> None:
    listed, on, off = run_all(host, "usbdevctl slot list --json", "usbdevctl slot on 9-9", "usbdevctl slot off 9-9")
    assert (listed.json, listed.status) == ({"schema": 1, "slots": []}, 3)
    assert listed.err == "usbdevctl: no USB port has a device\n"
    assert [(done.out, done.err, done.status) for done in (on, off)] == 2 * [
        ("", "usbdevctl: port 9-9 has no camera; no channel has a camera\n", 3)
    ]


def test_the_host_reports_about_itself(host: RenewedHost) -> None:
    model, codec, port, text = run_all(
        host,
        "usbdevctl host model --json",
        "usbdevctl host codec --json",
        "usbdevctl host port 3-1 --json",
        "usbdevctl host model",
    )
    assert model.json == {"schema": 1, "picture": True}
    assert codec.json == {"schema": 1, "supported": True}
    assert port.json == {"schema": 1, "slot": "3-1", "port": 3}
    assert text.out == "picture     yes\n"
    assert [done.status for done in (model, codec, port)] == [0, 0, 0]


def test_a_host_without_picture_codec_and_numbers_is_reported(host: RenewedHost) -> None:
    _, model, codec, port, _, unknown = run_all(
        host,
        "rm /home/httpd/v3_menu/layout/model_0.svg; echo support=0 >/tmp/gpuinfo.type",
        "usbdevctl host model --json",
        "usbdevctl host codec --json",
        "usbdevctl host port 9-9 --json",
        "rm /tmp/gpuinfo.type",
        "usbdevctl host codec --json",
    )
    assert (model.json["picture"], model.status) == (False, 3)
    assert (codec.json["supported"], codec.status) == (False, 3)
    assert (port.json["port"], port.status) == (None, 3)
    assert (unknown.out, unknown.status) == ("", 1)
    assert unknown.err == "usbdevctl: the host does not report whether its graphics support the encoding add-on\n"


READING = ["stream show 0", "stream set 0 --fps 5", "caps 0", "devices", "profiles", "free", "slot list", "slot on 3-1"]


def test_a_damaged_configuration_is_a_failure(host: RenewedHost) -> None:
    _, *results = run_all(host, UNREADABLE, *[f"usbdevctl {command}" for command in READING])
    for command, result in zip(READING, results):
        assert (result.out, result.status) == ("", 1), command
        assert result.err.endswith("usbdevctl: the channel configuration cannot be read\n"), command
