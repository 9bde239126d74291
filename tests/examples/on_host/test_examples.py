# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The examples of one language, on a sandboxed host with two cameras: what each prints, and how it ends."""

from __future__ import annotations

import os
import re
import subprocess
from collections.abc import Iterator
from pathlib import Path

import pytest

EXAMPLES = Path(__file__).resolve().parents[3] / "examples"
CONFIGURATION = Path("/etc/config/usbdev.conf")
LANGUAGE = os.environ["EXAMPLES"]
PATIENCE_SECONDS = 30


def command(name: str, *arguments: str) -> list[str]:
    if LANGUAGE == "python":
        return ["/usr/bin/python3", "-B", str(EXAMPLES / f"python/{name}.py"), *arguments]
    return [f"{os.environ['USBDEV_BUILD_DIR']}/examples/{LANGUAGE}/{name}", *arguments]


def printed(name: str, *arguments: str) -> str:
    """Returns what the example prints; it succeeds, and reports no error."""
    done = subprocess.run(command(name, *arguments), capture_output=True, text=True, timeout=PATIENCE_SECONDS)
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout


def refused(name: str, *arguments: str) -> str:
    """Returns the error of the example, which fails and prints nothing else."""
    done = subprocess.run(command(name, *arguments), capture_output=True, text=True, timeout=PATIENCE_SECONDS)
    assert (done.returncode, done.stdout) == (1, "")
    return done.stderr.splitlines()[-1]


def host(*command: str) -> None:
    subprocess.run(command, check=True, capture_output=True)


@pytest.fixture(scope="module")
def plugged() -> bytes:
    """Two cameras at one root port, of which the first has profile 0; the second has to wait for it."""
    host("sim", "plug", "hd-pro-webcam", "3-1.1")
    host("usbdevctl", "assign", "3-1.1", "0")
    host("sim", "plug", "hd-usb-camera", "3-1.2")
    return CONFIGURATION.read_bytes()


@pytest.fixture(autouse=True)
def two_cameras(plugged: bytes) -> None:
    CONFIGURATION.write_bytes(plugged)


def test_list_channels_prints_the_channels_that_have_a_device() -> None:
    assert printed("list_channels").splitlines() == [
        "channel 0  3-1.1  HD Pro Webcam C920  profile 0",
        "channel 1  3-1.2  USB 2.0 Camera: HD USB Camera  waits for channel 0",
    ]


def test_list_channels_reports_a_configuration_that_cannot_be_read() -> None:
    CONFIGURATION.write_text("<velmora")
    assert refused("list_channels").startswith("list_channels: the channels cannot be read")


def test_set_stream_takes_the_closest_rate_of_the_camera() -> None:
    assert printed("set_stream", "0", "640", "480", "22") == "profile 0 streams 640x480 at 20.00\n"
    assert "640x480" in subprocess.run(["usbdevctl", "stream", "show", "0"], capture_output=True, text=True).stdout


@pytest.mark.parametrize(
    ("arguments", "reason"),
    [
        (("0",), "usage: set_stream"),
        (("3", "640", "480", "30"), "the profile has no stream"),
        (("0", "641", "480", "30"), "the camera does not offer this size"),
        (("0", "640", "480", "0"), "the rate is not above 0"),
    ],
    ids=["usage", "profile", "size", "rate"],
)
def test_set_stream_prints_why_it_fails(arguments: tuple[str, ...], reason: str) -> None:
    assert refused("set_stream", *arguments).startswith(f"set_stream: {reason}")


def test_share_link_prints_the_address_of_a_link_which_it_keeps() -> None:
    address = printed("share_link", "0")
    assert re.fullmatch(r"/share\?ssid=\d{8}&token=[0-9a-f]{32}\n", address)
    assert printed("share_link", "0") == address
    shown = subprocess.run(["usbdevctl", "share", "show", "0"], capture_output=True, text=True).stdout
    assert address.strip() in shown


def test_share_link_reports_a_profile_without_a_camera() -> None:
    assert refused("share_link", "3") == "share_link: the stream cannot be shared"


@pytest.fixture
def follower() -> Iterator[subprocess.Popen[str]]:
    """follow_notifications, which listens and ends after two."""
    with subprocess.Popen(command("follow_notifications", "2"), stdout=subprocess.PIPE, text=True) as running:
        assert running.stdout and running.stdout.readline() == "listening\n"
        yield running
        running.kill()


def test_follow_notifications_prints_a_camera_that_comes_back(follower: subprocess.Popen[str]) -> None:
    host("sim", "unplug", "3-1.1")
    host("sim", "plug", "hd-pro-webcam", "3-1.1")
    lines, _ = follower.communicate(timeout=PATIENCE_SECONDS)
    assert [line.split("  video")[0] for line in lines.splitlines()] == ["event 7  profile 0", "event 6  profile 0"]
    assert follower.returncode == 0


def test_only_one_program_follows_the_notifications(follower: subprocess.Popen[str]) -> None:
    assert refused("follow_notifications").startswith("follow_notifications: ")
