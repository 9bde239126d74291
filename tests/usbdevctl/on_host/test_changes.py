# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A command that changes something prints what it did, in a line for people and in an object for programs."""

from __future__ import annotations

import shutil
import socket
import subprocess
from collections.abc import Iterator
from contextlib import suppress
from pathlib import Path

import pytest
from conftest import CONFIGURATION, document, usbdevctl
from usbdev.notification import PORT, SIZE, Notification

CAMERA = 'channel 4  3-1  "Cam"  profile 2'
MEMBERS = {"channel": 4, "slot": "3-1", "device": "Cam", "profile": 2, "profile_name": "Door"}

CHANGES = [
    (("clear", "2"), 'profile 2 cleared: channel 4  3-1  "Cam"  no profile', {"cleared": 2, "profile": None, "profile_name": ""}),
    (("rename", "2", "Gate\x1b"), f'profile 2 renamed to "Gate\\x1b": {CAMERA}', {"profile_name": "Gate\x1b"}),
    (("rename", "2", ""), f'profile 2 renamed to "": {CAMERA}', {"profile_name": ""}),
    (("sps", "2", "7"), f"stream-parameter state 7 recorded: {CAMERA}", {"sps_state": 7}),
    (("slot", "off", "4"), f"switched off: {CAMERA}", {"slot_switch": False, "parked_behind": None}),
    (("slot", "on", "4"), f"switched on: {CAMERA}", {"slot_switch": True, "parked_behind": None}),
    (("share", "off", "2"), f"profile 2 was not shared: {CAMERA}", {"sharing": False}),
]  # fmt: skip


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize(("command", "line", "_members"), CHANGES)
def test_a_change_is_reported_in_one_line(command: tuple[str, ...], line: str, _members: dict[str, object]) -> None:
    result = usbdevctl(*command)
    assert (result.stdout, result.stderr, result.returncode) == (f"{line}\n", "", 0)


@pytest.mark.usefixtures("profile")
@pytest.mark.parametrize(("command", "_line", "members"), CHANGES)
def test_a_change_is_an_object_for_programs(command: tuple[str, ...], _line: str, members: dict[str, object]) -> None:
    assert document(*command) == {**MEMBERS, **members}


def test_a_name_that_is_cut_is_shown_as_it_is_stored(profile: str) -> None:
    assert document("rename", profile, 254 * "x" + "yz")["profile_name"] == 254 * "x" + "y"


def test_a_profile_without_a_sound_card_has_no_volume(profile: str) -> None:
    result = usbdevctl("volume", profile)
    assert result.stderr == "usbdevctl: profile 2 has no sound card whose volume could be set\n"
    assert (result.stdout, result.returncode) == ("", 1)


@pytest.mark.usefixtures("profile")
def test_a_synchronisation_reports_what_it_found() -> None:
    result = usbdevctl("sync")
    assert result.stdout == "after the synchronisation: 1 channels with an attached device, 1 that keep the place of another\n"
    assert result.returncode == 0
    assert document("sync") == {"attached": 1, "away": 1}


def test_a_counted_timeout_is_reported() -> None:
    assert usbdevctl("timeouts", "add", "3").stdout == "time-out of profile 3 counted: 1 now\n"
    assert document("timeouts", "add", "3") == {"profile": 3, "timeouts": 2}
    assert [row["timeouts"] for row in document("timeouts", "reset")["counters"]] == [0, 0, 0, 0]
    assert usbdevctl("timeouts", "reset").stdout == "time-out counters of all profiles set to 0\n"


@pytest.fixture
def manager() -> Iterator[socket.socket]:
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM | socket.SOCK_NONBLOCK) as manager:
        manager.bind(("127.0.0.1", PORT))
        yield manager


def notified(manager: socket.socket) -> list[tuple[int, int, int]]:
    """Returns event, profile and node of what has come; a program that has ended has sent everything."""
    found = []
    with suppress(BlockingIOError):
        while it := Notification.from_bytes(manager.recv(SIZE)):
            found.append((it.event, it.profile, it.video_node))
    return found


def test_the_manager_is_notified_of_whatever_may_begin_a_stream(manager: socket.socket, tmp_path: Path) -> None:
    """The library notifies of settings that were changed, and of nothing else."""
    subprocess.run(["sim", "plug", "hd-pro-webcam", "1-1"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["sim", "plug", "usb2-camera", "5-1"], check=True, stdout=subprocess.DEVNULL)
    nodes = {row["slot"]: row["video_node"] for row in document("channels")["channels"] if row["slot"]}
    notified(manager)
    settings = str(tmp_path / "settings")
    began = [(0, 1, nodes["1-1"])]
    for command in (("assign", "1-1", "1"), ("assign", "1-1", "1"), ("stream", "set", "1", "--size", "640x480"),
                    ("stream", "set", "1", "--size", "640x480")):  # fmt: skip
        assert (usbdevctl(*command).returncode, notified(manager)) == (0, began), command
    usbdevctl("export", settings)
    usbdevctl("move", "1", "5-1")
    assert notified(manager)[-1] == (0, 1, nodes["5-1"])
    usbdevctl("clear", "1")
    notified(manager)
    usbdevctl("import", settings)
    assert notified(manager)[-1] == began[0]


@pytest.fixture
def webcam() -> Iterator[list[str]]:
    """The node, port and name of a camera whose profile streams H.264."""
    subprocess.run(["sim", "plug", "hd-pro-webcam", "1-2"], check=True, stdout=subprocess.DEVNULL)
    usbdevctl("assign", "1-2", "1")
    usbdevctl("stream", "set", "1", "--codec", "h264")
    (camera,) = [row for row in document("channels")["channels"] if row["slot"] == "1-2"]
    yield ["--node", str(camera["video_node"]), "--slot", "1-2", "--name", camera["device"]]
    subprocess.run(["sim", "unplug", "1-2"], check=True, stdout=subprocess.DEVNULL)


@pytest.mark.parametrize(("kind", "events"), [("camera", 1), ("audio", 0)])
def test_only_a_camera_that_is_back_begins_its_stream_again(
    manager: socket.socket, webcam: list[str], kind: str, events: int
) -> None:
    notified(manager)
    assert usbdevctl("plug", "--type", kind, *webcam).returncode == 0
    assert len(notified(manager)) == events


def test_nothing_is_attached_to_be_switched() -> None:
    CONFIGURATION.write_text(
        "<velmora><ch4><exists>0</exists><profile>2</profile><usbslot>3-1</usbslot><devname>Cam</devname></ch4></velmora>"
    )
    result = usbdevctl("slot", "off", "ch4")
    assert result.stderr == f"usbdevctl: nothing is attached to switch: {CAMERA}  unplugged\n"
    assert (result.stdout, result.returncode) == ("", 3)


@pytest.fixture
def full_disk(profile: str) -> Iterator[None]:
    """A host that can open its configuration for writing and cannot store it."""
    in_the_way = CONFIGURATION.parent / f".{CONFIGURATION.name}.new"
    (in_the_way / "full").mkdir(parents=True)
    yield
    shutil.rmtree(in_the_way)


OTHERS = [
    ("stream", "set", "2", "--size", "640x480"),
    ("share", "on", "2"),
    ("share", "renew", "2"),
    ("plug", "--type", "camera", "--node", "0", "--slot", "3-2", "--name", "Cam"),
    ("unplug", "--type", "camera", "--slot", "3-1"),
]


@pytest.mark.usefixtures("full_disk")
@pytest.mark.parametrize("command", [*[command for command, _, _ in CHANGES], *OTHERS])
def test_a_change_that_cannot_be_stored_is_not_reported_as_done(command: tuple[str, ...]) -> None:
    before = CONFIGURATION.read_text()
    result = usbdevctl(*command)
    assert (result.stdout, result.returncode, CONFIGURATION.read_text()) == ("", 1, before)
    assert "could not be stored" in result.stderr.splitlines()[-1]
    assert "close:[/etc/config/usbdev.conf] failed" in result.stderr
