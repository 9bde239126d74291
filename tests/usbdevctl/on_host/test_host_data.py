# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""status, host info, package and timeouts."""

from __future__ import annotations

import os
import json
import os
import subprocess
from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import APPLICATION, CONFIGURATION, document, usbdevctl

SYSTEM = Path("/etc/config/Tundrel.conf")


@pytest.fixture
def stream(profile: str) -> Iterator[None]:
    """A source process and a playlist of the profile."""
    playlist = APPLICATION / "web/hls/channel3/playlist.m3u8"
    playlist.parent.mkdir(parents=True, exist_ok=True)
    playlist.write_text("#EXTM3U\n#EXT-X-TARGETDURATION:1000\n")
    with subprocess.Popen(["v4l2_read 0", "60"], executable="/usr/bin/sleep") as source:
        yield
        source.terminate()
    playlist.unlink()


@pytest.mark.usefixtures("stream")
def test_the_state_of_a_stream_is_shown() -> None:
    assert document("status")["streams"][2] == {
        "profile": 2,
        "profile_name": "Door",
        "camera": "0c45:6366",
        "source": "v4l2_read",
        "playlist": True,
        "playlist_grows": True,
        "live_view": True,
        "code": None,
        "reason": None,
    }


@pytest.mark.usefixtures("stream")
def test_a_playlist_that_has_stopped_growing_is_distinguished_from_a_live_one() -> None:
    assert usbdevctl("status").stdout.splitlines()[3].split()[4] == "yes"
    os.utime(APPLICATION / "hls/channel3/playlist.m3u8", (0, 0))
    assert usbdevctl("status").stdout.splitlines()[3].split()[4] == "stopped"
    stream = document("status")["streams"][2]
    assert (stream["playlist"], stream["playlist_grows"]) == (True, False)


def test_a_profile_without_a_camera_has_no_state() -> None:
    assert document("status")["streams"] == [
        {
            "profile": profile,
            "profile_name": "",
            "camera": None,
            "source": None,
            "playlist": False,
            "playlist_grows": None,
            "live_view": None,
            "code": None,
            "reason": None,
        }
        for profile in range(4)
    ]


def test_a_stream_that_cannot_be_shown_has_a_reason() -> None:
    CONFIGURATION.write_text(
        "<velmora><ch0><exists>0</exists><profile>1</profile><usbslot>3-1</usbslot></ch0></velmora>"
    )
    row = usbdevctl("status").stdout.splitlines()[2]
    assert row.split(maxsplit=5) == ["1", "-", "-", "-", "no", "no, the device is not attached"]


def test_no_state_is_shown_from_a_configuration_that_cannot_be_read() -> None:
    CONFIGURATION.write_text("<velmora")
    result = usbdevctl("status")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr.endswith("usbdevctl: the channel configuration cannot be read\n")


@pytest.fixture
def system() -> Iterator[None]:
    """The host's system configuration, which a test may change."""
    before = SYSTEM.read_text()
    yield
    SYSTEM.write_text(before)


def test_the_host_reports_its_version_and_web_port() -> None:
    assert document("host", "info") == {"version": "5.1.0", "web_port": 8080}


@pytest.mark.usefixtures("system")
def test_a_value_that_the_host_does_not_report_is_null() -> None:
    SYSTEM.write_text("[System]\nVersion = 5.2.1\n")
    assert document("host", "info") == {"version": "5.2.1", "web_port": None}


@pytest.mark.usefixtures("system")
def test_a_host_that_reports_nothing_is_a_failure() -> None:
    SYSTEM.unlink()
    result = usbdevctl("host", "info", "--json")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr == "usbdevctl: the host's system configuration cannot be read, or has neither version nor web port\n"


@pytest.fixture
def noisy_tools(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    """Host tools in the search path that complain before they answer."""
    tool = tmp_path / "hwinfo_app"
    tool.write_text("#!/bin/sh\necho noise >&2\nexec /usr/bin/hwinfo_app \"$@\"\n")
    tool.chmod(0o755)
    monkeypatch.setenv("PATH", f"{tmp_path}:{os.environ['PATH']}")


@pytest.mark.usefixtures("noisy_tools")
def test_output_of_commands_that_the_library_runs_is_not_shown() -> None:
    result = usbdevctl("host", "port", "3-1", "--json")
    assert json.loads(result.stdout)["port"] == 3
    assert (result.stderr, result.returncode) == ("", 0)


@pytest.mark.usefixtures("empty")
def test_messages_of_the_library_itself_are_shown() -> None:
    CONFIGURATION.write_text("<velmora")
    assert "open:[/etc/config/usbdev.conf] failed" in usbdevctl("channels").stderr


def test_a_package_is_shown_as_it_is_registered() -> None:
    assert document("package", "Velmora2") == {
        "package": "Velmora2",
        "version": "2.1.0",
        "build": "20240318",
        "install_path": str(APPLICATION),
        "enabled": True,
    }


def test_a_package_that_the_host_does_not_have_is_not_found() -> None:
    result = usbdevctl("package", "Nothing", "--json")
    assert (result.stdout, result.stderr) == ("", "usbdevctl: the host has no package 'Nothing'\n")
    assert result.returncode == 3


def counted() -> list[int]:
    counters = document("timeouts")["counters"]
    assert [row["profile"] for row in counters] == [0, 1, 2, 3]
    return [row["timeouts"] for row in counters]


def test_timeouts_are_counted_until_they_are_reset() -> None:
    for profile in "330":
        assert usbdevctl("timeouts", "add", profile).returncode == 0
    assert counted() == [1, 0, 0, 2]
    assert usbdevctl("timeouts", "reset").returncode == 0
    assert counted() == [0, 0, 0, 0]


def test_timeouts_are_a_table_for_people() -> None:
    usbdevctl("timeouts", "add", "1")
    lines = usbdevctl("timeouts").stdout.splitlines()
    assert [line.split() for line in lines] == [["PROFILE", "TIMEOUTS"], ["0", "0"], ["1", "1"], ["2", "0"], ["3", "0"]]


@pytest.mark.parametrize("wrong", ["add", "add 4", "reset 1", "2"])
def test_a_wrong_change_of_the_timeouts_changes_nothing(wrong: str) -> None:
    result = usbdevctl("timeouts", *wrong.split())
    assert (result.stdout, result.returncode) == ("", 2)
    assert result.stderr.startswith("usbdevctl: ")
    assert counted() == [0, 0, 0, 0]
