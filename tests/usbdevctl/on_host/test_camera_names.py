# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A camera may be named by port, channel or profile in every command."""

from __future__ import annotations

import pytest
from conftest import CONFIGURATION, document, usbdevctl

# The camera is channel 4, has profile 2, and sits in port 3-1.
NAMES = ["3-1", "ch4", "pf2", "2"]
CHOICE = ["usbdevctl:   channel 4  3-1  \"Cam\"  profile 2"]


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize("name", NAMES)
def test_a_profiles_commands_take_every_name(name: str) -> None:
    assert document("stream", "show", name)["video_node"] == 0
    assert document("share", "show", name)["profile"] == 2
    assert usbdevctl("caps", name).returncode == 0
    assert usbdevctl("rename", name, "Gate").returncode == 0
    assert "<profilename>Gate</profilename>" in CONFIGURATION.read_text()
    assert usbdevctl("sps", name, "7").returncode == 0
    assert usbdevctl("timeouts", "add", name).returncode == 0
    assert document("timeouts")["counters"][2]["timeouts"] == 1
    assert usbdevctl("stream", "set", name, "--size", "640x480").returncode == 0
    assert usbdevctl("clear", name).returncode == 0
    assert "<profile>-1</profile>" in CONFIGURATION.read_text()


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize("name", ["3-1", "ch4", "pf2", "4"])
def test_a_ports_commands_take_every_name(name: str) -> None:
    assert document("host", "port", name)["slot"] == "3-1"
    assert document("slot", "off", name)["slot"] == "3-1"
    assert document("slot", "on", name)["slot_switch"] is True


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize("name", ["3-1", "ch4", "pf2", "0"])
def test_the_formats_are_asked_by_every_name_and_the_node(name: str) -> None:
    assert document("formats", name)["node"] == 0


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize(("name", "looked_for"), [("3-2", "port 3-2"), ("ch5", "channel 5")])
@pytest.mark.parametrize("command", [("clear",), ("stream", "show"), ("share", "off"), ("volume",)])
def test_a_name_that_matches_nothing_names_what_there_is(command: tuple[str, ...], name: str, looked_for: str) -> None:
    before = CONFIGURATION.read_text()
    result = usbdevctl(*command, name)
    assert result.stderr.splitlines() == [f"usbdevctl: {looked_for} has no camera; there are:", *CHOICE]
    assert (result.stdout, result.returncode, CONFIGURATION.read_text()) == ("", 3, before)


def test_a_host_without_cameras_has_none_to_choose_from() -> None:
    result = usbdevctl("clear", "3-1")
    assert (result.stderr, result.returncode) == ("usbdevctl: port 3-1 has no camera; no channel has a camera\n", 3)


@pytest.mark.usefixtures("camera")
def test_a_camera_without_a_profile_is_named() -> None:
    CONFIGURATION.write_text(
        "<velmora><ch4><exists>1</exists><usbslot>3-1</usbslot><devname>Cam</devname></ch4></velmora>"
    )
    result = usbdevctl("stream", "show", "ch4")
    assert result.stderr == 'usbdevctl: this needs a profile: channel 4  3-1  "Cam"  no profile\n'
    assert result.returncode == 3


def test_a_port_that_two_absent_cameras_had_is_not_guessed() -> None:
    rows = "".join(
        f"<ch{n}><exists>0</exists><profile>{n}</profile><usbslot>3-1</usbslot><devname>Cam</devname></ch{n}>"
        for n in range(2)
    )
    CONFIGURATION.write_text(f"<velmora>{rows}</velmora>")
    result = usbdevctl("clear", "3-1")
    assert result.stderr.splitlines() == [
        "usbdevctl: port 3-1 names more than one camera; there are:",
        'usbdevctl:   channel 0  3-1  "Cam"  profile 0  unplugged',
        'usbdevctl:   channel 1  3-1  "Cam"  profile 1  unplugged',
    ]
    assert result.returncode == 1


def test_a_configuration_that_cannot_be_read_is_a_failure() -> None:
    CONFIGURATION.write_text("<velmora")
    result = usbdevctl("clear", "ch4")
    assert result.stderr.endswith("usbdevctl: the channel configuration cannot be read\n")
    assert (result.stdout, result.returncode) == ("", 1)
