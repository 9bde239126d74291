# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manager's live streams: what it starts, restarts and stops when the library notifies it of changes."""

from __future__ import annotations

import pytest
from conftest import RunOnHost
from streaming_camera import AVAILABLE, LOG, SHELL, SMALL, STATUS, STREAM

MJPEG, H264 = 1, 0
PROBE = f"""probe() {{ ffprobe -v error -select_streams v:0 -show_entries stream=codec_name,width,height,r_frame_rate \\
  -of csv=p=0:nk=1 "$(ls -t {STREAM}/*.ts | head -n 1)" | head -n 1; }}
"""


def test_a_profile_streams_with_its_size_and_rate_until_its_port_is_off(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + PROBE + SMALL + "live; probe\n" + STATUS
        + "store framerate=10 vcodec=0; said 'at 10.00' 1; live; probe\n" + STATUS
        + "switch off; said 'no more' 2\n" + STATUS + f"ls {STREAM} | wc -l"
    )  # fmt: skip
    assert (done.stdout.splitlines(), done.stderr) == (
        ["h264,160,120,15/1", "playlist v4l2_read", "h264,160,120,10/1", "playlist HDpipe", "no playlist", "0"],
        "",
    )


def test_a_stream_begins_with_its_assignment_whatever_was_stored_before(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + "usbdevctl assign 3-1 1 >/dev/null; said 'profile 1 streams' 1; live; switch off; said 'no more' 1; switch enable\n"
        "said 'profile 1 streams' 2; usbdevctl clear 1 >/dev/null; said 'no more' 2\n"
        "usbdevctl assign 3-1 1 >/dev/null; said 'profile 1 streams' 3; live"
    )
    assert (done.stdout, done.stderr) == ("", "")


def test_a_stream_has_a_small_picture_as_long_as_it_runs(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + f"live; until_true 'test -s {STREAM}/picture.jpg'\n"
        f"ffprobe -v error -show_entries stream=codec_name,width,height -of csv=p=0:nk=1 {STREAM}/picture.jpg\n"
        f"switch off; said 'no more' 1; ls {STREAM}"
    )  # fmt: skip
    assert (done.stdout, done.stderr) == ("mjpeg,320,240\n", "")


def test_a_port_that_is_switched_on_streams_again_until_the_profile_is_cleared(with_manager: RunOnHost) -> None:
    done = with_manager(
        SHELL + SMALL + "switch off; said 'no more' 1; switch enable; said 'streams 160' 2\n"
        "usbdevctl clear 1 >/dev/null; said 'no more' 2\n" + STATUS + f"grep '^profile' {LOG}"
    )  # fmt: skip
    streams, no_more = "profile 1 streams 160x120 at 15.00 from camera 0", "profile 1 streams no more"
    assert done.stdout.splitlines() == ["no playlist", streams, no_more, streams, no_more]


@pytest.mark.parametrize("codec", [MJPEG, H264])
def test_a_stream_goes_on_when_its_camera_is_plugged_in_again(with_manager: RunOnHost, codec: int) -> None:
    done = with_manager(
        SHELL + f"store width=160 height=120 framerate=15 vcodec={codec}; said 'streams 160' 1\n"
        "sim unplug 3-1 >/dev/null 2>&1; said 'no more' 1; sim plug hd-pro-webcam 3-1 >/dev/null; said 'streams 160' 2; live"
    )
    assert (done.stdout, done.stderr) == ("", "")


def test_a_stream_is_back_after_a_reboot_from_the_node_that_its_camera_has_then(with_services: RunOnHost) -> None:
    done = with_services(
        SHELL + SMALL + "said 'streams 160' 1; sandbox reboot --plug hd-usb-camera 1-1 >/dev/null 2>&1\n"
        f"said 'streams 160' 2; live; grep '^profile' {LOG}"
    )  # fmt: skip
    streams, no_more = "profile 1 streams 160x120 at 15.00 from camera {}".format, "profile 1 streams no more"
    assert done.stdout.splitlines() == [streams(0), no_more, streams(2)]


MANAGER = "manager-service >>/tmp/out 2>&1 & manager=$!\n"


def test_the_managers_life_is_that_of_the_streams(on_host: RunOnHost) -> None:
    done = on_host(
        SHELL.replace(LOG, "/tmp/out") + SMALL + MANAGER + "live\n" + STATUS
        + "available; kill $manager; wait $manager; echo $?\n" + STATUS + "available\n"
    )  # fmt: skip
    assert done.stdout.splitlines() == ["playlist v4l2_read", AVAILABLE(1), "0", "no playlist", AVAILABLE(0)]
