# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

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
    assert result.stderr == "usbdevctl: no channel fits this device\n"
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


FOUR_PORTS = ("1-1", "1-2", "3-1", "5-1")
PLUG_FOUR = "".join(f"sim plug --hardware-only usb2-camera {port} >/dev/null\n" for port in FOUR_PORTS) + (
    'plug_all() { for port in "$@"; do node=$((node + 2))\n'
    "usbdevctl plug --type camera --node $((node - 2)) --slot $port --name Cam >/dev/null & done; wait; }\n"
)


def test_cameras_that_are_plugged_at_once_get_channels_of_their_own(on_host: RunOnHost) -> None:
    rounds = 5 * (
        "echo '<velmora/>' >/etc/config/usbdev.conf; node=0\n"
        f"plug_all {' '.join(FOUR_PORTS)}; usbdevctl channels --json | tr -d '\\n'; echo\n"
    )
    result = on_host(PLUG_FOUR + rounds)
    for line in result.stdout.splitlines():
        slots = [channel["slot"] for channel in json.loads(line)["channels"] if channel["state"] == "plugged"]
        assert sorted(slots) == sorted(FOUR_PORTS)
    assert len(result.stdout.splitlines()) == 5


LOCK_FILE = "/var/lock/usbdev-hotplug.lock"


EVENTS = [f"plug {CAMERA}", "unplug --type camera --slot 3-1", "sync"]


@pytest.mark.parametrize("command", EVENTS)
def test_an_event_waits_for_the_one_before_it(on_host: RunOnHost, command: str) -> None:
    result = on_host(
        f"exec 9>{LOCK_FILE}; flock 9; usbdevctl {command} >/dev/null 9>&- & event=$!\n"
        f"has_lock_file() {{ for file in /proc/$event/fd/*; do [ $file -ef {LOCK_FILE} ] && return; done; false; }}\n"
        "until has_lock_file; do kill -0 $event || exit 1; done\n"
        "echo '<velmora><ch7><exists>1</exists><usbslot>3-1</usbslot></ch7></velmora>' >/etc/config/usbdev.conf\n"
        "exec 9>&-; wait $event; usbdevctl channels --json"
    )
    channel = json.loads(result.stdout)["channels"][7]
    assert (channel["state"], channel["device"]) == (("plugged", "Cam") if command in EVENTS[0] else ("unplugged", ""))


@pytest.mark.parametrize("command", EVENTS)
def test_an_event_whose_lock_cannot_be_had_is_a_failure(on_host: RunOnHost, command: str) -> None:
    result = on_host(f"mkdir {LOCK_FILE}; usbdevctl {command}")
    assert result.stderr == f"usbdevctl: cannot lock {LOCK_FILE}: Is a directory\n"
    assert (result.stdout, result.returncode) == ("", 1)


# A root without its rights may not write what nobody may write.
BOUND = 'bound() { if [ "$(id -u)" = 0 ]; then setpriv --bounding-set=-all "$@"; else "$@"; fi; }\n'


@pytest.mark.parametrize("command", [f"plug {CAMERA}", "unplug --type camera --slot 3-1"])
def test_a_channel_that_cannot_be_stored_is_a_failure(on_host: RunOnHost, command: str) -> None:
    result = on_host(
        f"{BOUND}{PLUG_HARDWARE}; usbdevctl plug {CAMERA} >/dev/null\n"
        f"chmod 444 /etc/config/usbdev.conf; bound usbdevctl {command}"
    )
    assert result.stderr.splitlines()[-1] == "usbdevctl: the channel of this device could not be stored"
    assert (result.stdout, result.returncode) == ("", 1)
