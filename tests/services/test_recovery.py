# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Streams whose camera goes and comes back, and what others read about the reason. Some have a program in place of the
encoder, and a device in place of the camera."""

from __future__ import annotations

import pytest
from conftest import REPOSITORY, RunOnHost
from streaming_camera import LOG, SHELL, SMALL, STREAM

TOLD = f"grep -o 'the [a-z]* of profile 1 .*' {LOG}\n"
BACK = "the next start is when its camera is back"
# A file that is still there has a number of its own, as every new node of the kernel has.
STREAMING = SMALL + "said 'streams 160' 1; plug_again() { mv /dev/video0 /dev/old; touch /dev/video0; }\n"
HOST_ENCODER = "ln -sf /usr/host-bin/ffmpeg /usr/bin/ffmpeg\n"


def encoder(*lines: str) -> str:
    """Puts a program in place of the encoder, which stores its arguments."""
    script = "\n".join(("#!/bin/sh", 'echo "$@" >>/tmp/arguments', *lines))
    return f"rm /usr/bin/ffmpeg; cat >/usr/bin/ffmpeg <<'END'\n{script}\nEND\nchmod +x /usr/bin/ffmpeg\n"


@pytest.fixture
def on_host(on_new_host: RunOnHost) -> RunOnHost:
    """The programs that these scripts put in place of the encoder go only with their host."""
    return on_new_host


def test_a_stream_waits_for_its_camera_and_starts_with_it(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + STREAMING + "live; rm /dev/video0; kill -9 $(encoder); said 'is back' 1; encoder\n"
        f"cat {STREAM}/failure; touch /dev/video0; said 'streams 160' 2; live; until_true test ! -e {STREAM}/failure\n" + TOLD
    )
    ended = "the encoder of profile 1 has ended with -9"
    assert (done.stdout.splitlines(), done.stderr) == ([ended, f"{ended}; {BACK}"], "")


def test_a_camera_that_is_back_does_not_wait_for_the_end_of_a_pause(with_manager: RunOnHost) -> None:
    done = with_manager(
        encoder("[ -e /tmp/works ] || exit 0", 'exec /usr/host-bin/ffmpeg "$@"') + SHELL + STREAMING
        + "said 'next start is in 4 s' 1; touch /tmp/works; plug_again\n"
        "said 'streams 160' 4; live\n" + TOLD
    )  # fmt: skip
    ended = "the encoder of profile 1 has ended with 0; the next start is in {} s".format
    assert (done.stdout.splitlines(), done.stderr) == ([ended(seconds) for seconds in (1, 2, 4)], "")


def test_a_camera_is_read_as_its_profile_says_and_again_so_when_it_was_away(with_manager: RunOnHost) -> None:
    """Devices stand for a camera's node, and an encoder that hangs is ended when it is another one."""
    done = with_manager(
        encoder("exec sleep 60") + SHELL + "rm /dev/video0; ln -s /dev/null /dev/video0\n"
        "store width=160 height=120 framerate=10 vcodec=0 flip=1; said 'at 10.00' 1\n"
        "rm /dev/video0; ln -s /dev/full /dev/video0; said 'at 10.00' 2; cat /tmp/arguments\n" + TOLD
    )
    first, second, told = done.stdout.splitlines()
    assert "-f v4l2 -input_format yuyv422 -video_size 160x120 -framerate 10.00 -i /dev/video0 " in first
    assert "-filter:v vflip,drawtext" in first
    assert (second, told, done.stderr) == (first, f"the camera of profile 1 has gone; {BACK}", "")


def test_the_reason_of_a_failure_can_be_read_until_the_stream_works(with_manager: RunOnHost) -> None:
    busy = "/dev/video0: Device or resource busy"
    done = with_manager(
        encoder(f"echo '{busy}' >&2; exit 1") + SHELL + STREAMING + f"until_true test -e {STREAM}/failure; cat {STREAM}/failure\n"
        f"stat -c %a {STREAM}/failure; {HOST_ENCODER} live; until_true test ! -e {STREAM}/failure\n" + TOLD
    )
    told = done.stdout.splitlines()
    assert told[:2] == ["Device or resource busy", "640"]
    assert f"the encoder of profile 1 has ended with 1: {busy}; the next start is in 1 s" in told
    assert done.stderr == ""


def test_an_unplugged_camera_leaves_no_reason(with_manager: RunOnHost) -> None:
    done = with_manager(
        encoder("exit 1") + SHELL + STREAMING + f"until_true test -e {STREAM}/failure; sim unplug 3-1 >/dev/null 2>&1\n"
        f"until_true test ! -e {STREAM}/failure; ls -A {STREAM}"
    )
    assert (done.stdout, done.stderr) == ("", "")


SERVICES = f"import sys; sys.path.insert(0, '{REPOSITORY}/host/services')"
NOTIFY = f"{SERVICES}; from devicelib.library import Library; Library().notify_manager()"


def test_a_stream_follows_a_synchronisation_of_which_the_device_manager_notifies(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + STREAMING + "env -u HOST_SERVICES_PID sandbox reboot --plug hd-usb-camera 1-1 >/dev/null 2>&1\n"
        f'/usr/bin/python3 -B -c "{NOTIFY}"; said "camera 2" 1; live; grep ^profile {LOG} | tail -n 1'
    )
    assert (done.stdout, done.stderr) == ("profile 1 streams 160x120 at 15.00 from camera 2\n", "")
