# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The device manager as a whole, on a sandboxed host."""

from __future__ import annotations

from conftest import HERE, RunOnHost

LOOK = "event 0 (changed)  profile none  video none  audio none  flag 0  target none  request none"
NAME = "HD Pro Webcam C920"
A_DAY = f"LD_PRELOAD=libumockdev-preload.so.0 /usr/bin/python3 -B {HERE}/device_day.py"
NOTIFIED = "until_true grep -q removed /var/log/vl/manager-service.log; grep ^event /var/log/vl/manager-service.log"


def test_it_reports_what_comes_and_goes_to_the_library_which_notifies_the_manager(with_manager: RunOnHost) -> None:
    done = with_manager(f"{A_DAY} day; {NOTIFIED}")
    assert done.stdout.splitlines() == [
        "synchronised",
        f"plugged 3-1 camera 0 '{NAME}': channel 0",
        f"plugged 3-1 card 0 '{NAME}': channel 0",
        f"removed 3-1 camera 0 '{NAME}': channel 0",
        f"removed 3-1 card 0 '{NAME}': no channel",
        "ended with 0",
        LOOK,  # after the synchronisation
        "event 0 (changed)  profile 0  video 0  audio none  flag 0  target 0  request none",  # assigned
        "event 7 (removed)  profile 0  video none  audio none  flag 0  target none  request none",
    ]
    assert "device-service: following udev\n" in done.stderr


def test_a_camera_for_which_all_channels_are_taken_gets_the_first_that_becomes_free(on_host: RunOnHost) -> None:
    assert on_host(f"{A_DAY} full").stdout.splitlines() == [
        "synchronised",
        f"plugged 3-1 camera 0 '{NAME}': no channel",
        f"plugged 3-1 camera 0 '{NAME}': channel 4",
        "ended with 0",
    ]
