# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""report."""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator

import pytest
from conftest import CONFIGURATION, document, usbdevctl

PASSWORD = "open <sesame> & co"


@pytest.fixture(scope="module")
def serial() -> Iterator[str]:
    """The serial number of a camera in port 5-1."""
    subprocess.run(["sim", "plug", "--hardware-only", "hd-pro-webcam", "5-1"], check=True)
    walk = subprocess.run(
        ["/sbin/udevadm", "info", "--name=/dev/video0", "--attribute-walk"], check=True, capture_output=True, text=True
    ).stdout
    yield re.search(r'ATTRS\{serial\}=="([^:"]+)"', walk).group(1)
    subprocess.run(["sim", "unplug", "--hardware-only", "5-1"], check=True)


@pytest.fixture
def secrets(serial: str) -> list[str]:
    """A shared profile, whose secrets stand in names and events too."""
    usbdevctl("plug", "--type", "camera", "--node", "0", "--slot", "5-1", "--name", f"Cam {serial}")
    usbdevctl("assign", "5-1", "1")
    link = document("share", "on", "1", "--password-stdin", given=f"{PASSWORD}\n")
    live = re.search(r"<hlspath>(\w+)</hlspath>", CONFIGURATION.read_text()).group(1)
    secrets = [PASSWORD, link["ssid"], link["token"], link["hash"], live, serial]
    usbdevctl("rename", "1", " ".join(secrets))
    return secrets


def test_a_report_contains_what_a_maintainer_asks_for(secrets: list[str]) -> None:
    report = document("report")
    assert list(report) == ["host", "channels", "profiles", "events", "cameras", "configuration"]
    assert list(report["host"])[:3] == ["usbdevctl", "library", "kernel"]
    assert (report["host"]["one channel only"], report["host"]["encodes"]) == ("no", "yes")
    assert report["channels"][0]["slot"] == "5-1"
    assert [(profile["profile"], profile["state"]) for profile in report["profiles"]][1] == (1, "ready")
    camera = report["cameras"][0]
    assert (camera["channel"], camera["slot"]) == (0, "5-1")
    assert "Pixel Format: 'MJPG'" in camera["v4l2_ctl"]
    assert "looking at device '/devices/pci0000:00/" in camera["udevadm"]
    assert report["configuration"]["ch0"]["video/width"] == "1280"
    assert list(report["configuration"]) == ["ch0"]


def test_a_report_contains_no_secret_anywhere(secrets: list[str]) -> None:
    events = document("log", "--lines", "1")["events"]
    assert all(secret in events[0]["text"] for secret in secrets)
    for options in ((), ("--json",)):
        report = usbdevctl("report", *options)
        assert (report.returncode, report.stderr) == (0, "")
        assert "[removed]" in report.stdout
        for secret in [*secrets, "sesame"]:
            assert secret not in report.stdout, options


def test_a_host_without_cameras_has_a_report() -> None:
    report = document("report")
    assert (report["cameras"], report["configuration"]) == ([], {})


def test_a_configuration_that_cannot_be_read_is_a_failure() -> None:
    CONFIGURATION.write_text("<velmora")
    report = usbdevctl("report")
    assert (report.stdout, report.returncode) == ("", 1)
    assert report.stderr.endswith("usbdevctl: the channel configuration cannot be read\n")
