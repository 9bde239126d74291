# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""v4l2-ctl-front: today's format listings in the layout that the library reads."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path

import pytest
from conftest import REPOSITORY

BIN = REPOSITORY / "host/sim/bin"
DATA = Path(__file__).resolve().parent / "data"
LISTINGS = DATA / "listings"


def translate(listing: bytes) -> bytes:
    return subprocess.run([BIN / "v4l2-old-layout"], input=listing, capture_output=True, check=True).stdout


@pytest.fixture
def tool(tmp_path):
    """Makes a v4l2-ctl that behaves as a script describes, and runs the front over it."""

    def run(script: str, *arguments: str, **variables: str) -> subprocess.CompletedProcess[str]:
        path = tmp_path / "v4l2-ctl"
        path.write_text(f"#!/bin/sh\n{script}\n")
        path.chmod(0o755)
        return run_front(BIN / "v4l2-ctl-front", *arguments, V4L2_CTL=path, **variables)

    return run


def run_front(front: Path, *arguments: str, **variables: str | Path) -> subprocess.CompletedProcess[str]:
    environment = {name: value for name, value in os.environ.items() if name != "V4L2_CTL"} | variables
    return subprocess.run(
        [front, *arguments], env=environment, capture_output=True, text=True, check=False, timeout=30
    )


def install_as_link(place: Path) -> None:
    place.symlink_to(BIN / "v4l2-ctl-front")


def install_as_copy(place: Path) -> None:
    for source, target in ((BIN / "v4l2-ctl-front", place), (BIN / "v4l2-old-layout", place.parent / "v4l2-old-layout")):
        shutil.copy(source, target)


def test_a_listing_is_what_the_older_tool_printed_of_such_a_camera():
    """Both were published, of two cameras with the same formats."""
    assert translate((LISTINGS / "today.txt").read_bytes()) == (LISTINGS / "older.txt").read_bytes()


def test_a_listing_in_the_older_layout_is_not_changed():
    older = (LISTINGS / "older.txt").read_bytes()
    assert translate(older) == older


def test_a_node_without_formats_gives_the_heading_only():
    assert translate(b"ioctl: VIDIOC_ENUM_FMT\n\tType: Video Capture\n\n") == b"ioctl: VIDIOC_ENUM_FMT\n"


@pytest.mark.parametrize(
    ("today", "pixel_format", "name"),
    [
        (b"'YUYV' (YUYV 4:2:2)", b"'YUYV'", b"YUYV 4:2:2"),
        (b"'MJPG' (Motion-JPEG, compressed)", b"'MJPG' (compressed)", b"Motion-JPEG"),
        (b"'RGB3' (24-bit RGB 8-8-8, emulated)", b"'RGB3' (emulated)", b"24-bit RGB 8-8-8"),
        (b"'H264' (H.264, compressed, emulated)", b"'H264' (compressed, emulated)", b"H.264"),
        (b"'YUYV' (YUV 4:2:2 (YUYV))", b"'YUYV'", b"YUV 4:2:2 (YUYV)"),
        (b"'Z16 ' (16-bit Depth)", b"'Z16 '", b"16-bit Depth"),
        (b"'' (00000032-0002-0010-8000-00aa003)", b"''", b"00000032-0002-0010-8000-00aa003"),
    ],
)
def test_a_format_line_becomes_four(today, pixel_format, name):
    assert translate(b"\tType: Video Capture\n\n\t[12]: " + today + b"\n") == (
        b"\tIndex       : 12\n\tType        : Video Capture\n\tPixel Format: "
        + pixel_format
        + b"\n\tName        : "
        + name
        + b"\n\n"
    )


def test_the_front_hands_the_arguments_on(tool):
    assert tool("printf '%s\\n' \"$@\"", "-d", "/dev/video 0").stdout == "-d\n/dev/video 0\n"


def test_the_front_ends_as_the_tool_ends(tool):
    result = tool("echo 'Cannot open device /dev/video9, exiting.' >&2; exit 7")
    assert (result.returncode, result.stdout, result.stderr) == (7, "", "Cannot open device /dev/video9, exiting.\n")


def test_the_front_translates_what_the_tool_prints(tool):
    result = tool(f"cat {LISTINGS}/today.txt")
    assert (result.returncode, result.stdout) == (0, (LISTINGS / "older.txt").read_text())


def test_the_front_ends_a_tool_that_does_not_answer_after_ten_seconds(tool, tmp_path):
    waiting = tmp_path / "timeout"
    waiting.write_text('#!/bin/sh\necho "$@" >&2\nexit 124\n')
    waiting.chmod(0o755)
    result = tool("echo none", "-d", "/dev/video0", PATH=f"{tmp_path}:{os.environ['PATH']}")
    assert (result.returncode, result.stdout) == (124, "")
    assert result.stderr == f"-k 1 10 {tmp_path}/v4l2-ctl -d /dev/video0\n"


@pytest.mark.parametrize("install", [install_as_link, install_as_copy])
@pytest.mark.parametrize("named", [True, False], ids=["named", "in the search path"])
def test_the_front_in_the_place_of_the_tool_refuses_to_start_itself(tmp_path, install, named):
    place = tmp_path / "v4l2-ctl"
    install(place)
    variables = {"V4L2_CTL": place} if named else {"PATH": f"{tmp_path}:{os.environ['PATH']}"}
    result = run_front(place, "-d", "/dev/video0", **variables)
    assert (result.returncode, result.stdout) == (1, "")
    assert result.stderr == (
        f"v4l2-ctl-front: {place} is this program itself: set V4L2_CTL to the path of the real v4l2-ctl\n"
    )


@pytest.mark.parametrize("install", [install_as_link, install_as_copy])
def test_the_front_in_the_place_of_the_tool_runs_the_one_that_is_named(tmp_path, install):
    install(tmp_path / "v4l2-ctl")
    assert run_front(tmp_path / "v4l2-ctl", "real one", V4L2_CTL="/bin/echo").stdout == "real one\n"


def test_the_front_names_the_missing_tool(tmp_path):
    result = run_front(BIN / "v4l2-ctl-front", V4L2_CTL=tmp_path / "none")
    assert (result.returncode, result.stdout) == (127, "")
    assert f"{tmp_path}/none" in result.stderr
