"""plug, unplug, and command lines that are wrong."""

from __future__ import annotations

import base64
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


WRONG = [
    "",
    "frobnicate",
    "plug",
    "plug --type camera --slot 3-1 --name Cam",
    "plug --type toaster --node 0 --slot 3-1 --name Cam",
    "plug --type camera --node -1 --slot 3-1 --name Cam",
    "plug --type camera --node 99999999999 --slot 3-1 --name Cam",
    "plug --type camera --node 0 --slot '' --name Cam",
    "plug --type camera --node 0 --slot " + 128 * "3" + " --name Cam",
    "formats",
    "formats one",
    "watch --count 0",
    "watch --timeout -1",
    "log --lines 0",
    "channels --colour",
]


def run_all(on_host: RunOnHost, commands: list[str]) -> list[dict[str, str]]:
    """Runs the commands on one host; for each its status and what it wrote."""
    script = "".join(
        f"usbdevctl {command} >/tmp/out 2>/tmp/err; echo $? >/tmp/status\n"
        "for file in status out err; do base64 -w0 /tmp/$file; echo; done\n"
        for command in commands
    )
    texts = [base64.b64decode(line).decode() for line in on_host(script).stdout.splitlines()]
    return [dict(zip(("status", "out", "err"), texts[at : at + 3])) for at in range(0, len(texts), 3)]


def test_a_wrong_command_line_is_refused(on_host: RunOnHost) -> None:
    results = run_all(on_host, WRONG)
    assert [(result["status"], result["out"]) for result in results] == len(WRONG) * [("2\n", "")]
    lines = [line for result in results for line in result["err"].splitlines()]
    assert len(lines) >= len(WRONG)
    assert all(line.startswith("usbdevctl: ") for line in lines)


def test_every_command_has_help_that_tells_of_json(on_host: RunOnHost) -> None:
    commands = ["plug", "unplug", "channels", "formats", "watch", "log"]
    results = run_all(on_host, [command + " --help" for command in commands])
    assert [result["status"] for result in results] == len(commands) * ["0\n"]
    assert all("Usage: " in result["out"] and "--json" in result["out"] for result in results)


def test_the_help_names_every_command(on_host: RunOnHost) -> None:
    help_text = on_host("usbdevctl --help").stdout
    assert all(f"  {command} " in help_text for command in ("plug", "unplug", "channels", "formats", "watch", "log"))


def test_output_that_cannot_be_written_is_a_failure(on_host: RunOnHost) -> None:
    assert on_host("usbdevctl channels >/dev/full").returncode == 1
