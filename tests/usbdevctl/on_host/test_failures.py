# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A failure is never shown as a result: output that is not written, reads that fail."""

from __future__ import annotations

import json
import subprocess
import pytest
from conftest import failing

EIO = 5
def usual(*command: str) -> str:
    return subprocess.run(["usbdevctl", *command], check=True, capture_output=True, text=True).stdout


@pytest.mark.parametrize("command", [["channels", "--json"], ["--help"], ["--version"], ["timeouts"]])
def test_output_that_cannot_be_written_is_a_failure(command: list[str]) -> None:
    with open("/dev/full", "w", encoding="ascii") as full:
        result = subprocess.run(["usbdevctl", *command], check=False, stdout=full, stderr=subprocess.PIPE, text=True)
    assert (result.returncode, result.stderr) == (1, "usbdevctl: the output cannot be written\n")


@pytest.mark.usefixtures("profile")
def test_output_that_cannot_be_kept_from_commands_is_a_failure() -> None:
    result = failing("fcntl", 1, EIO, "channels")
    assert (result.returncode, result.stderr) == (1, "usbdevctl: the output cannot be kept from commands\n")


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize(
    "command",
    [
        ["channels"],  # a profile that could not be read is not shown as none
        ["slot", "list"],  # nor are the codecs of a port
        ["stream", "show", "2"],  # nor is a stream called off
    ],
)
def test_what_cannot_be_read_is_not_shown_as_missing(command: list[str]) -> None:
    expected = usual(*command, "--json")
    for number in range(1, 30):
        result = failing("open", number, EIO, *command, "--json")
        assert (result.returncode, result.stdout) in [(0, expected), (1, "")], result


def test_a_camera_that_cannot_be_asked_is_not_called_one_without_formats(profile: str) -> None:
    expected = usual("caps", profile, "--json")
    for number in range(1, 10):
        result = failing("openat", number, EIO, "caps", profile, "--json")
        assert (result.returncode, result.stdout) in [(0, expected), (1, "")], result


def test_a_live_link_that_cannot_be_read_is_a_failure(profile: str) -> None:
    usual("clear", profile)
    usual("assign", "3-1", profile)
    result = failing("readlink", 1, EIO, "profiles", "--json")
    states = [row["link"] and row["link"]["state"] for row in json.loads(result.stdout)["profiles"]]
    assert states == [None, None, "unreadable", None]
    assert (result.returncode, result.stderr) == (1, "usbdevctl: a live link cannot be read\n")


def test_earlier_events_are_not_shown_as_those_of_a_change(profile: str) -> None:
    usual("stream", "set", profile, "--fps", "5")
    result = failing("pread64", 1, EIO, "stream", "set", profile, "--fps", "10", "--json")
    assert (result.returncode, json.loads(result.stdout)["events"]) == (0, [])
    assert result.stderr == "usbdevctl: the events before the change could not be read\n"


def test_a_log_that_cannot_be_looked_for_is_not_called_empty(profile: str) -> None:
    usual("stream", "set", profile, "--fps", "5")
    result = failing("stat", 1, EIO, "log")
    assert result.returncode != 3


@pytest.mark.parametrize("call", ["poll", "signalfd"])
def test_a_watch_that_cannot_wait_ends_with_a_message(call: str) -> None:
    result = failing(call, 1, EIO, "watch", "--timeout", "30")
    assert (result.returncode, result.stderr.splitlines()[-1]) == (1, "usbdevctl: cannot wait for notifications")
