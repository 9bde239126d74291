# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A start-up that is killed, wherever that is, and the next one, which repairs what it left."""

from __future__ import annotations

import signal
import subprocess
from itertools import count

import pytest
import usbdevlib
from host import APPLICATION, CONFIGURATION, Host, stream_folder

# What a start does to the world outside its process: it runs commands, and locks, flushes and replaces the file.
STEPS = ("clone,clone3,vfork", "flock", "fsync", "renameat")

Disk = tuple[bytes, dict[str, str]]


@pytest.fixture(scope="module")
def switched_off(without_process_list: None) -> Host:
    """Of three cameras with profiles one stays, without its link and its link's name, one moves, and one has gone."""
    host = Host()
    host.empty()
    for profile, port in enumerate(("3-1", "1-1", "1-4")):
        host.plug("8mp-camera", port)
        usbdevlib.assign(port, profile)
    text = CONFIGURATION.read_text()
    CONFIGURATION.write_text(text.replace(f"<hlspath>{host.channels()[0].link}</hlspath>", "<hlspath/>"))
    host.empty_links()
    host.change_hardware("move 1-1 1-2", "unplug 1-4")
    return host


def read_disk(host: Host) -> Disk:
    return CONFIGURATION.read_bytes(), host.links()


def restore(disk: Disk, host: Host) -> None:
    configuration, links = disk
    CONFIGURATION.write_bytes(configuration)
    host.empty_links()
    for name, target in links.items():
        (APPLICATION / name).symlink_to(target)


def start_killed_before(call: str, number: int) -> bool:
    """Starts up in a process of its own and kills it when it makes this system call for the given time; false when it
    does not so often."""
    kill = ["-e", f"trace={call}", "-e", f"inject={call}:signal=KILL:when={number}"]
    command = ["strace", "-qq", "-o", "/dev/null", *kill, "usbdevctl", "sync"]
    status = subprocess.run(command, check=False, stderr=subprocess.DEVNULL).returncode
    assert status in (0, -signal.SIGKILL)
    return status != 0


def settled(host: Host) -> list[tuple[object, ...]]:
    """What must come out the same, however often it is tried: links have names by chance."""
    links = host.links()
    return [
        (it.exists, it.profile, it.slot, it.device, it.parked_behind, it.vnode, links.get(it.link))
        for it in host.channels()
    ]


@pytest.mark.parametrize("call", STEPS)
def test_a_start_killed_at_any_step_is_repaired_by_the_next(switched_off, call):
    before = read_disk(switched_off)
    usbdevlib.start_up()
    expected = settled(switched_off)
    assert [it[1] for it in expected[:4]] == [0, 1, 2, -1] and expected[0][-1] == stream_folder(0)
    left_behind: list[Disk] = []
    for number in count(1):
        restore(before, switched_off)
        if not start_killed_before(call, number):
            break
        left = read_disk(switched_off)
        if left not in left_behind:
            left_behind.append(left)
            usbdevlib.start_up()
            assert settled(switched_off) == expected, f"killed before {call} number {number}"
    restore(before, switched_off)
    assert len(left_behind) > 1
    assert list(CONFIGURATION.parent.glob(".usbdev.conf*")) == []
