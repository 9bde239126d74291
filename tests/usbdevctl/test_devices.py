"""plug and unplug."""

from __future__ import annotations

import json

import pytest
from conftest import RunOnHost

CAMERA = "--type camera --node 0 --slot 3-1 --name Cam"
PLUG_HARDWARE = "sim plug --hardware-only usb2-camera 3-1 >/dev/null"


def test_a_plugged_camera_gets_the_first_channel(on_host: RunOnHost) -> None:
    result = on_host(f"{PLUG_HARDWARE}; usbdevctl plug {CAMERA}")
    assert result.stdout == "channel     0\nprofile     none\nconflict    none\n"
    assert result.returncode == 0


def test_plug_answers_programs_in_json(on_host: RunOnHost) -> None:
    result = on_host(f"{PLUG_HARDWARE}; usbdevctl plug {CAMERA} --json")
    assert json.loads(result.stdout) == {"schema": 1, "channel": 0, "profile": None, "conflict": None}


def test_an_unplugged_camera_is_named(on_host: RunOnHost) -> None:
    result = on_host(f"{PLUG_HARDWARE}; usbdevctl plug {CAMERA} >/dev/null; usbdevctl unplug --type camera --slot 3-1")
    assert result.stdout == "channel     0\nprofile     none\ndevice      Cam\nvideo node  0\n"
    assert result.returncode == 0


def test_a_removal_that_was_never_plugged_has_no_channel(on_host: RunOnHost) -> None:
    result = on_host("usbdevctl unplug --type camera --slot 3-1 --json")
    assert json.loads(result.stdout)["channel"] is None
    assert result.stderr == "usbdevctl: no channel has a device at this port\n"
    assert result.returncode == 3


def test_an_ignored_sound_card_has_no_channel(on_host: RunOnHost) -> None:
    result = on_host("usbdevctl plug --type audio --node 0 --slot 3-1 --name 'KAB 1'")
    assert result.stderr == "usbdevctl: no channel takes this device\n"
    assert result.returncode == 3


@pytest.mark.parametrize("command", [f"plug {CAMERA}", "unplug --type camera --slot 3-1", "channels"])
def test_a_damaged_configuration_is_a_failure(on_host: RunOnHost, command: str) -> None:
    result = on_host(f"echo '<vel' >/etc/config/usbdev.conf; usbdevctl {command}")
    assert "usbdevctl: the channel configuration cannot be read\n" in result.stderr
    assert result.returncode == 1


def test_a_name_may_begin_with_a_dash_and_is_cut_at_255_bytes(on_host: RunOnHost) -> None:
    name = "-" + 299 * "n"
    result = on_host(
        f"{PLUG_HARDWARE}; usbdevctl plug --type camera --node 0 --slot 3-1 --name {name} >/dev/null; "
        "usbdevctl channels --json"
    )
    assert json.loads(result.stdout)["channels"][0]["device"] == name[:255]


def test_output_that_cannot_be_written_is_a_failure(on_host: RunOnHost) -> None:
    assert on_host("usbdevctl channels >/dev/full").returncode == 1
