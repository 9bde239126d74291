# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The tools of the sandboxed host answer as the real ones do, and "sim" reports to the library what it plugs in."""

from __future__ import annotations

from pathlib import Path

import pytest

CAPTURES = Path(__file__).resolve().parent / "data/captures"

# Stands in for the program that calls the library, and shows how it was called.
SHOW_CALLS = """
mkdir /tmp/bin
printf '#!/bin/sh\\necho "$@"\\n%s\\n' "${ENDING:-}" > /tmp/bin/usbdevctl
chmod +x /tmp/bin/usbdevctl
PATH=/tmp/bin:$PATH
"""


@pytest.mark.parametrize("question", ["--name=/dev/video0 --attribute-walk", "-a -n /dev/video0"])
def test_udevadm_walks_the_attributes(sandbox, question):
    result = sandbox(f"sim plug usb2-camera 3-1 --hardware-only; /sbin/udevadm info {question}")
    real = (CAPTURES / "mjpg-yuyv/walk.video0.txt").read_text()
    assert (result.returncode, len(result.stdout.splitlines())) == (0, len(real.splitlines()))
    assert result.stdout.splitlines()[7] == real.splitlines()[7]


@pytest.mark.parametrize("question", ["--name=/dev/video0 --attribute-walk", "-a -n /dev/video0"])
def test_udevadm_fails_for_a_node_that_is_not_there(sandbox, question):
    result = sandbox(f"/sbin/udevadm info {question}")
    assert (result.returncode, result.stdout) == (1, "")
    assert result.stderr.splitlines()[-1] == 'Unknown device "/dev/video0": No such device'


def test_v4l2_ctl_lists_the_formats_in_the_older_layout(sandbox):
    result = sandbox("sim plug pc-camera 3-1 --hardware-only; /usr/bin/v4l2-ctl -d /dev/video0 --list-formats-ext")
    assert result.stdout.splitlines()[:7] == [
        "ioctl: VIDIOC_ENUM_FMT",
        "\tIndex       : 0",
        "\tType        : Video Capture",
        "\tPixel Format: 'YUYV'",
        "\tName        : YUYV 4:2:2",
        "\t\tSize: Discrete 640x480",
        "\t\t\tInterval: Discrete 0.033s (30.000 fps)",
    ]


@pytest.mark.parametrize(
    ("node", "message"),
    [
        ("/dev/video0", "Cannot open device /dev/video0, exiting."),
        ("/dev/null", "Unable to detect what device /dev/null is, exiting."),
    ],
)
def test_v4l2_ctl_fails_for_a_node_that_is_not_a_camera(sandbox, node, message):
    result = sandbox(f"/usr/bin/v4l2-ctl -d {node} --list-formats-ext")
    assert (result.returncode, result.stdout) == (1, "")
    assert result.stderr.splitlines()[-1] == message


def test_plugging_a_camera_calls_the_library(sandbox):
    result = sandbox(SHOW_CALLS + "sim plug usb2-camera 3-1")
    assert result.stdout == "plug --type camera --node 0 --slot 3-1 --name USB 2.0 Camera: USB Camera\n"


def test_a_sound_card_is_reported_after_its_camera(sandbox):
    result = sandbox(SHOW_CALLS + "sim plug hd-pro-webcam 3-1.2; echo; sim unplug 3-1.2")
    assert result.stdout == (
        "plug --type camera --node 0 --slot 3-1.2 --name HD Pro Webcam C920\n"
        "plug --type audio --node 0 --slot 3-1.2 --name HD Pro Webcam C920\n"
        "\n"
        "unplug --type camera --node 0 --slot 3-1.2 --name HD Pro Webcam C920\n"
        "unplug --type audio --node 0 --slot 3-1.2 --name HD Pro Webcam C920\n"
    )


def test_a_sound_card_whose_interfaces_are_first_is_reported_before_its_camera(sandbox):
    result = sandbox(SHOW_CALLS + "sim plug microphone-first 3-1; echo; sim unplug 3-1")
    assert result.stdout == (
        "plug --type audio --node 0 --slot 3-1 --name Conference Camera\n"
        "plug --type camera --node 0 --slot 3-1 --name Conference Camera\n"
        "\n"
        "unplug --type audio --node 0 --slot 3-1 --name Conference Camera\n"
        "unplug --type camera --node 0 --slot 3-1 --name Conference Camera\n"
    )


def test_each_function_of_a_camera_has_its_own_report(sandbox):
    result = sandbox(SHOW_CALLS + "sim plug colour-and-infrared 3-1")
    assert result.stdout == (
        "plug --type camera --node 0 --slot 3-1 --name Integrated Camera: Integrated C\n"
        "plug --type camera --node 2 --slot 3-1 --name Integrated Camera: Integrated I\n"
    )


def test_sim_ends_as_the_report_of_the_first_function_ended(sandbox):
    first_fails = "ENDING='[ \"$5\" = 0 ] && exit 4; exit 0'\n" + SHOW_CALLS
    second_fails = "ENDING='[ \"$5\" = 0 ] || exit 4'\n" + SHOW_CALLS
    assert sandbox(first_fails + "sim plug colour-and-infrared 3-1").returncode == 4
    assert sandbox(second_fails + "sim plug colour-and-infrared 3-1").returncode == 0


def test_a_removal_is_reported_when_the_camera_is_already_gone(sandbox):
    result = sandbox("ENDING='ls /dev/video0 2>&1'\n" + SHOW_CALLS + "sim plug pc-camera 3-1; sim unplug 3-1")
    lines = result.stdout.splitlines()
    assert lines[1] == "/dev/video0" and "No such file" in lines[3]


def test_hardware_only_does_not_call_the_library(sandbox):
    result = sandbox(SHOW_CALLS + "sim plug usb2-camera 3-1 --hardware-only; sim unplug 3-1 --hardware-only")
    assert (result.returncode, result.stdout) == (0, "")


def test_sim_ends_as_the_report_of_the_camera_ended(sandbox):
    result = sandbox("ENDING='[ \"$3\" = audio ] || exit 4'\n" + SHOW_CALLS + "sim plug hd-pro-webcam 3-1")
    assert result.returncode == 4


def test_a_sound_card_that_the_library_refuses_is_not_a_failure(sandbox):
    result = sandbox("ENDING='[ \"$3\" = camera ] || exit 4'\n" + SHOW_CALLS + "sim plug hd-pro-webcam 3-1")
    assert result.returncode == 0


def test_sim_reports_when_the_library_cannot_be_called(sandbox):
    result = sandbox("rm -rf /tmp/bin; PATH=/nowhere /usr/bin/sim plug usb2-camera 3-1")
    assert result.returncode == 1
    assert "the library was not called: usbdevctl cannot be run" in result.stderr


def test_sim_refuses_with_one_line(sandbox):
    result = sandbox("sim plug usb2-camera 9-1")
    assert result.returncode == 1
    assert result.stderr.splitlines()[-1] == "sim: this host has no USB bus 9; its buses are 1, 2, 3, 4, 5, 6"


def test_status_shows_what_is_plugged_in(sandbox):
    result = sandbox("sim plug hd-pro-webcam 3-1.2 --hardware-only; sim status")
    assert [line.split() for line in result.stdout.splitlines()] == [
        ["3-1", "hub"],
        ["3-1.2", "hd-pro-webcam", "video0", "video1", "card0"],
    ]


def test_ports_shows_the_buses_of_the_topology(sandbox):
    result = sandbox("sim ports", "--topology", "platform")
    assert [line.split()[0] for line in result.stdout.splitlines()] == ["7-1", "8-1"]


def test_list_shows_the_cameras(sandbox):
    lines = sandbox("sim list").stdout.splitlines()
    names = [line.split()[0] for line in lines]
    assert len(names) >= 12 and "hd-pro-webcam" in names
    assert "hd-pro-webcam       046d:082d  YUYV, H264 and MJPG in 17 sizes; a stereo microphone." in lines
