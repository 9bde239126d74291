# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""sandbox reboot: the host goes down, its hardware changes, and it comes up with the library's start-up."""

from __future__ import annotations

import os
import subprocess

from conftest import SANDBOX
from test_sim_tools import SHOW_CALLS


def test_the_library_starts_up_once_the_hardware_is_there(sandbox):
    show = "ENDING='ls /dev | grep video'\n" + SHOW_CALLS
    result = sandbox(show + "sim plug 8mp-camera 3-1 --hardware-only; sandbox reboot --plug pc-camera 1-1")
    assert result.stdout == "sync\nvideo0\nvideo1\nvideo2\n"


def test_a_profile_follows_its_camera_to_another_node(sandbox):
    result = sandbox(
        "sim plug pc-camera 3-1 >/dev/null; usbdevctl assign 3-1 0 >/dev/null; sandbox reboot --plug pc-camera 1-1 >/dev/null 2>&1;"
        " usbdevctl channels | sed -n 2,3p"
    )
    channels = [line.split()[:1] + line.split()[2:8] for line in result.stdout.splitlines()]
    assert channels == [
        ["0", "3-1", "USB2.0", "PC", "CAMERA", "2", "0"],
        ["1", "1-1", "USB2.0", "PC", "CAMERA", "0", "-"],
    ]


def test_a_live_view_link_leads_to_the_stream_before_and_after_a_reboot(sandbox):
    result = sandbox(
        "cd /mnt/ext/opt/apps/Velmora2; echo a picture > hls/channel3/playlist.m3u8\n"
        "sim plug usb2-camera 3-1 >/dev/null; usbdevctl assign 3-1 2 >/dev/null\n"
        "link=$(find . -maxdepth 1 -type l); cat $link/playlist.m3u8\n"
        "rm $link; sandbox reboot >/dev/null 2>&1; cat $link/playlist.m3u8"
    )
    assert result.stdout == "a picture\n" * 2


def test_changes_are_made_in_the_order_given(sandbox):
    result = sandbox(
        "sim plug pc-camera 1-1 --hardware-only\n"
        "sandbox reboot --move 1-1 1-2 --plug 8mp-camera 1-1 --swap 1-1 1-2 --unplug 1-2 >/dev/null 2>&1; sim status"
    )
    assert result.stdout.split() == ["1-1", "pc-camera", "video0", "video1"]


def test_an_impossible_change_is_reported_in_one_line_and_the_host_stays_up(sandbox):
    result = sandbox(
        SHOW_CALLS + "sim plug pc-camera 1-1 --hardware-only\n"
        "sandbox reboot --unplug 1-1 --move 3-1 3-2; echo $?; sim status"
    )
    assert result.stdout.split() == ["1", "1-1", "pc-camera", "video0", "video1"]
    assert result.stderr.splitlines()[-1] == "sandbox: nothing is plugged in at 3-1"


def test_a_reboot_ends_as_the_start_up_ended(sandbox):
    assert sandbox("ENDING='exit 4'\n" + SHOW_CALLS + "sandbox reboot").returncode == 4


def test_a_kept_host_is_rebooted_from_outside(new_sandbox, tmp_path):
    state = str(tmp_path / "state")
    new_sandbox("sim plug usb2-camera 3-1 && usbdevctl assign 3-1 1", "--state", state)
    build = os.environ["USBDEV_BUILD_DIR"]
    reboot = [SANDBOX, "reboot", "--state", state, "--build", build, "--plug", "pc-camera", "1-1"]
    assert subprocess.run(reboot, check=False, capture_output=True, timeout=60).returncode == 0
    look = "usbdevctl channels | sed -n 2,3p"
    nodes = [line.split()[-6:-4] for line in new_sandbox(look, "--state", state).stdout.splitlines()]
    assert nodes[0] == ["2", "1"]


def test_a_host_that_is_not_there_is_not_made(tmp_path):
    result = subprocess.run(
        [SANDBOX, "reboot", "--state", tmp_path / "none"], check=False, capture_output=True, text=True, timeout=60
    )
    assert (result.returncode, result.stderr) == (125, f"sandbox: there is no host in {tmp_path}/none\n")
    assert not (tmp_path / "none").exists()


def test_without_a_host_nothing_is_rebooted():
    result = subprocess.run([SANDBOX, "reboot"], check=False, capture_output=True, text=True, timeout=60)
    assert result.returncode == 1
    assert result.stderr == "sandbox: there is no simulated host here; run this inside the sandbox\n"
