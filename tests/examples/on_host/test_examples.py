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


def refused(name: str, *arguments: str, status: int = 1) -> list[str]:
    """Returns the error of the example, which fails and prints nothing else."""
    done = subprocess.run(command(name, *arguments), capture_output=True, text=True, timeout=PATIENCE_SECONDS)
    assert (done.returncode, done.stdout) == (status, "")
    return done.stderr.splitlines()


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
    assert refused("list_channels")[-1].startswith("list_channels: the channels cannot be read")


@pytest.mark.parametrize("hidden", ["\x1b", "\x07", "\x7f", "\xc2\x9b"], ids=["escape", "bell", "delete", "C1"])
def test_list_channels_prints_no_control_character_of_a_device(hidden: str) -> None:
    escaped = "".join(f"\\x{ord(character):02x}" for character in hidden)
    CONFIGURATION.write_text(CONFIGURATION.read_text().replace("HD Pro Webcam C920", f"HD{escaped}[2J"))
    name = printed("list_channels").splitlines()[0].split("  ")[2]
    assert name.isprintable() and name.replace("?", "") == "HD[2J"


def test_set_stream_takes_the_closest_rate_of_the_camera() -> None:
    assert printed("set_stream", "0", "640", "480", "22") == "profile 0 streams 640x480 at 20.00\n"
    assert "640x480" in subprocess.run(["usbdevctl", "stream", "show", "0"], capture_output=True, text=True).stdout


@pytest.mark.parametrize(
    ("arguments", "reason"),
    [
        (("3", "640", "480", "30"), "the profile has no stream"),
        (("0", "641", "480", "30"), "the camera does not offer this size"),
        (("0", "640", "480", "0"), "the rate is not a number above 0"),
        (("0", "640", "480", "nan"), "the rate is not a number above 0"),
    ],
    ids=["profile", "size", "rate", "not a number"],
)
def test_set_stream_prints_why_it_fails(arguments: tuple[str, ...], reason: str) -> None:
    assert refused("set_stream", *arguments) == [f"set_stream: {reason}"]


@pytest.mark.parametrize(
    "arguments",
    [
        ("set_stream", "0"),
        ("set_stream", "0", "640", "480x", "30"),
        ("share_link",),
        ("share_link", "first"),
        ("share_link", "0", "1"),
        ("follow_notifications", "two"),
        ("follow_notifications", "-1"),
        ("follow_notifications", "1", "2"),
    ],
    ids=" ".join,
)
def test_wrong_arguments_are_answered_with_the_usage(arguments: tuple[str, ...]) -> None:
    assert refused(*arguments, status=2)[0].startswith("usage: ")


@pytest.mark.parametrize("number", ["4294967296", "99999999999999999999"])
def test_a_number_that_no_profile_can_have_shares_nothing(number: str, plugged: bytes) -> None:
    status = 1 if LANGUAGE == "python" else 2
    assert refused("share_link", number, status=status)
    assert CONFIGURATION.read_bytes() == plugged


def test_share_link_prints_the_address_of_a_link_which_it_keeps() -> None:
    address = printed("share_link", "0")
    assert re.fullmatch(r"/share\?ssid=\d{8}&token=[0-9a-f]{32}\n", address)
    assert printed("share_link", "0") == address
    shown = subprocess.run(["usbdevctl", "share", "show", "0"], capture_output=True, text=True).stdout
    assert address.strip() in shown


def test_share_link_reports_a_profile_without_a_camera() -> None:
    assert refused("share_link", "3") == ["share_link: the stream cannot be shared"]


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
    (line,) = refused("follow_notifications")
    assert line.startswith("follow_notifications: ")
