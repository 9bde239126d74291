# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""explain, and what formats prints about a listing that the library does not read."""

from __future__ import annotations

import re

from conftest import REPOSITORY, RenewedHost, run_all

LISTING = r"\t[0]: \047MJPG\047 (Motion-JPEG, compressed)\n\t\tSize: Discrete 640x480\n"
NEWER_LAYOUT = (
    "sim plug --hardware-only usb2-camera 3-1 >/dev/null; "
    f"printf '{LISTING}' >/run/usbdev-sim/nodes/video0/formats"
)
UNREAD = (
    "v4l2-ctl lists MJPG in a layout that the library does not read "
    "([0]: 'MJPG' instead of Pixel Format: 'MJPG')"
)
PLUG = "usbdevctl plug --type camera --node 0 --slot 3-1 --name Cam"


def test_a_listing_of_the_newer_layout_is_named_as_the_cause(host: RenewedHost) -> None:
    _, text, json, _, explained = run_all(
        host, NEWER_LAYOUT, "usbdevctl formats 0", "usbdevctl formats 0 --json", PLUG, "usbdevctl explain 3-1"
    )
    assert text.err == (
        f"usbdevctl: /dev/video0 offers no format that can be used: {UNREAD}\n"
        "usbdevctl: put the host's v4l2-ctl-front in its place, which translates what it prints\n"
    )
    assert (text.out, text.status) == ("", 3)
    assert (json.json["formats"], json.json["unread"], json.json["layout_read"]) == ([], ["MJPG"], False)
    assert f"  {UNREAD}\n" in explained.out


def test_for_a_camera_without_a_usable_format_its_formats_are_shown(host: RenewedHost) -> None:
    _, formats, explained = run_all(
        host, "sim plug infrared-camera 3-1", "usbdevctl formats 0", "usbdevctl explain ch0 --json"
    )
    assert formats.err == "usbdevctl: /dev/video0 offers no format that can be used: v4l2-ctl lists GREY\n"
    assert explained.json["streams"] is False
    assert [(reason["reason"], reason["why"]) for reason in explained.json["reasons"]] == [
        ("unsupported", "it lists GREY, and the library uses MJPG and YUYV only")
    ]


def test_an_unsupported_camera_stays_one_when_its_port_was_off(host: RenewedHost) -> None:
    _, off, _, on, check, bound = run_all(
        host,
        "sim plug infrared-camera 3-1; usbdevctl slot off ch0",
        "usbdevctl explain ch0 --json",
        "usbdevctl slot on ch0",
        "usbdevctl explain ch0 --json",
        "usbdevctl check ch0 0 --json",
        "usbdevctl assign ch0 0",
    )
    assert [reason["reason"] for reason in off.json["reasons"]] == ["unsupported", "switched_off"]
    assert [reason["reason"] for reason in on.json["reasons"]] == ["unsupported"]
    assert (check.json["allowed"], check.json["reason"], bound.status) == (False, "unsupported", 1)


def test_for_a_listed_camera_the_line_of_the_list_is_shown(host: RenewedHost) -> None:
    _, explained = run_all(
        host,
        "echo 'USB 2.0 Camera: USB Camera' >/etc/config/.usbnosupportlist.dat; sim plug usb2-camera 3-1",
        "usbdevctl explain 3-1",
    )
    assert explained.out == (
        'channel 0  3-1  "USB 2.0 Camera: USB Camera"  no profile\n'
        "  its name is a line of /etc/config/.usbnosupportlist.dat: USB 2.0 Camera: USB Camera\n"
        "    take the line out, then plug the camera in again\n"
    )


def test_for_a_camera_that_needs_encoding_it_is_shown_what_the_host_lacks(host: RenewedHost) -> None:
    agent = "$(readcfg Halvane Install_Path -f /etc/config/bndl.conf)/camera_agent.sh"
    for breakage, lack in (
        ("sed -i '/Halvane/,$d' /etc/config/bndl.conf", "the codec package Halvane is not installed"),
        ("sed -i 's/TRUE/FALSE/' /etc/config/bndl.conf", "the codec package Halvane is not enabled"),
        (f"rm {agent}", "the codec package Halvane has no camera_agent.sh"),
    ):
        _, explained = run_all(host, f"{breakage}; sim plug console-camera 3-1", "usbdevctl explain 3-1")
        assert f"  it lists YUYV and no MJPG, and the host may not encode it: {lack}\n" in explained.out, breakage


def test_explain_names_the_camera_that_another_waits_for_and_why(host: RenewedHost) -> None:
    plugged, controller = run_all(
        host,
        "sim plug usb2-camera 5-1; sim plug hd-usb-camera 5-2; usbdevctl assign 5-1 0",
        "usbdevctl explain 5-2 --json",
    )
    assert plugged.status == 0
    waits = controller.json["reasons"][0]
    assert (waits["reason"], waits["other_channel"], waits["collision"]) == ("waits", 0, "controller")
    assert "waits for channel 0  5-1" in waits["why"]
    assert "both are on one USB controller behind a PCI bridge" in waits["why"]


def test_for_a_camera_that_streams_no_reason_is_shown(host: RenewedHost) -> None:
    _, explained, none = run_all(
        host, "sim plug usb2-camera 3-1; usbdevctl assign 3-1 1", "usbdevctl explain pf1", "usbdevctl explain 9-9"
    )
    assert explained.out.endswith("  profile 1\n  nothing keeps it from streaming\n")
    assert (explained.status, none.status) == (0, 3)


def test_the_document_has_every_reason_and_no_other() -> None:
    table = (REPOSITORY / "tools/usbdevctl/reason/reasons.def").read_text()
    names = set(re.findall(r'^USBDEVCTL_(?:REASON|NOTICE)\(\w+, "(\w+)"', table, re.MULTILINE)) - {"encoding"}
    section = (REPOSITORY / "docs/usbdevctl.md").read_text().split("| `reason` | What is wrong |")[1].split("\n\n")[0]
    assert set(re.findall(r"`(\w+)`", section)) == names


def test_a_simulated_host_has_only_the_reasons_that_the_library_knows(host: RenewedHost) -> None:
    failed = "echo No space left on device >/mnt/ext/opt/apps/Velmora2/hls/channel1/failure"
    gone = "rm /dev/video0; usbdevctl assign 3-1 0"
    done, explained, listed = run_all(
        host, f"sim plug usb2-camera 3-1; {failed}; {gone}", "usbdevctl explain 3-1", "usbdevctl channels --json"
    )
    assert (done.status, explained.err, listed.err) == (0, "", "")
    assert "no bandwidth" not in explained.out and "not there any more" not in explained.out
    assert listed.json["channels"][0]["reason"] is None


def test_what_a_real_machine_has_against_a_camera_is_shown_everywhere_in_the_same_words(host: RenewedHost) -> None:
    text = "Its USB device is not there any more. Plug it into port 3-1 again; if it is attached, 'usbdevctl sync' finds it."
    _, silent, explained, channels, devices, events = run_all(
        host,
        "sim plug usb2-camera 3-1; usbdevctl assign 3-1 0; rm /var/log/vl/event.db",
        "usbdevctl explain 3-1 --log; test ! -e /var/log/vl/event.db && mkdir /sys/kernel && rm /sys/bus/usb/devices/3-1",
        "usbdevctl explain 3-1 --log --json",
        "usbdevctl channels",
        "usbdevctl devices --json",
        "usbdevctl log --json",
    )
    assert (silent.status, silent.out.splitlines()[1:]) == (0, ["  nothing keeps it from streaming"])
    assert [(it["reason"], it["text"]) for it in explained.json["reasons"]] == [("gone", text)]
    assert re.search(r" on +gone +\d{4}-", channels.out)
    assert devices.json["devices"][0]["reason"] == "gone"
    assert [(it["level"], it["text"]) for it in events.json["events"]] == [
        ("warning", f"Camera[3-1 USB 2.0 Camera: USB Camera]: {text}")
    ]


def test_why_a_camera_has_no_channel_is_logged_in_the_same_words(host: RenewedHost) -> None:
    device = "/sys/bus/usb/devices/3-2"
    plugged = (f"mkdir -p /sys/kernel {device}/3-2:1.0/video4linux/video7; echo Webcam >{device}/product; echo 1 >{device}/authorized;"
               f" echo 0e >{device}/3-2:1.0/bInterfaceClass")  # fmt: skip
    explained, events = run_all(host, f"{plugged}; usbdevctl explain 3-2 --log --json", "usbdevctl log --json")
    (reason,) = explained.json["reasons"]
    assert reason["reason"] == "no_channel"
    assert [(it["level"], it["text"]) for it in events.json["events"]] == [("warning", f"Camera[3-2 Webcam]: {reason['text']}")]


def test_a_log_that_cannot_be_written_is_a_failure(host: RenewedHost) -> None:
    (done,) = run_all(host, "sim plug usb2-camera 3-1 >/dev/null; mkdir /sys/kernel; rm -rf /sys/bus/usb/devices/3-1 /var/log/vl; touch /var/log/vl;"
                               " usbdevctl explain 3-1 --log")  # fmt: skip
    assert (done.status, done.err) == (1, "usbdevctl: the event log cannot be written\n")


def test_without_a_camera_every_camera_is_explained(host: RenewedHost) -> None:
    plug = "for port in 3-1.1 3-1.2; do sim plug usb2-camera $port; done; sim plug infrared-camera 5-1; sim plug usb2-camera 1-1"
    each = [f"usbdevctl explain ch{channel}" for channel in range(4)]
    _, *alone, together, json = run_all(
        host,
        f"{plug}; usbdevctl assign 3-1.1 0; usbdevctl assign 1-1 1; sim unplug 1-1",
        *each,
        "usbdevctl explain",
        "usbdevctl explain --json",
    )
    assert together.out == "".join(one.out for one in alone)
    assert [channel["streams"] for channel in json.json["channels"]] == [True] + [False] * 9
    assert [[reason["cause"] for reason in channel["reasons"]] for channel in json.json["channels"]] == [
        [], ["waits", "unbound"], ["no_known_format"], ["unplugged"], *[[]] * 6
    ]  # fmt: skip
    assert json.json["channels"][3]["reasons"][0]["values"] == {"port": "1-1", "channel": "ch3"}


def test_all_explanations_tell_what_is_reserved_of_each_bus(host: RenewedHost) -> None:
    streams = "sim plug usb3-camera 4-1; sim plug pc-camera 3-1.2; for node in 0 2; do echo ' 1' >/run/usbdev-sim/nodes/video$node/setting; done"
    *_, json = run_all(host, streams, "usbdevctl explain --json")
    assert [(it["bus"], it["speed"], it["reserved"]) for it in json.json["buses"]] == [
        (1, 480, 0), (2, 5000, 0), (3, 480, 9), (4, 5000, 1049), (5, 480, 0), (6, 5000, 0)
    ]  # fmt: skip


def test_to_log_the_reasons_takes_one_camera(host: RenewedHost) -> None:
    logged = run_all(host, "usbdevctl explain --log")[0]
    assert (logged.status, logged.err) == (2, "usbdevctl: --log needs a camera\n")
