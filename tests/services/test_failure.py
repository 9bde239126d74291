# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The line that says why a stream fails."""

from __future__ import annotations

import stat
from pathlib import Path

import pytest
from managerlib import failure

NO_BANDWIDTH = b"""\
[video4linux2,v4l2 @ 0x55aa83e16cc0] ioctl(VIDIOC_STREAMON): No space left on device
/dev/video0: No space left on device
"""


@pytest.mark.parametrize(
    ("said", "reason"),
    [
        (NO_BANDWIDTH, "/dev/video0: No space left on device"),
        (b"/dev/video0: Device or resource busy\n[mjpeg @ 0x1] overread 8\n", "/dev/video0: Device or resource busy"),
        (b"[mjpeg @ 0x1] overread 4\n[mjpeg @ 0x1] overread 8\n", "[mjpeg @ 0x1] overread 8"),
        (b"cut in the middle of a line", "cut in the middle of a line"),
        (b"\n \n", None),
        (b"", None),
        (b"\x1b[31m\xff\x00line\r\n", "[31m\ufffdline"),
        (b"x" * 4096, "x" * failure.LONGEST),
    ],
)
def test_the_reason_is_the_last_line_with_an_error_of_the_system_or_the_last_one(said: bytes, reason: str | None) -> None:
    assert failure.reason(said) == reason


def test_the_file_has_one_line_that_others_may_not_read(tmp_path: Path) -> None:
    for line in ("first", "second"):
        failure.write(tmp_path, line)
    assert (tmp_path / failure.FILE).read_text() == "second\n"
    assert stat.S_IMODE((tmp_path / failure.FILE).stat().st_mode) & 0o027 == 0
    failure.remove(tmp_path)
    assert list(tmp_path.iterdir()) == []


@pytest.mark.parametrize("error", ["No space left on device", "No such device", "No such device or address", "Permission denied"])
def test_of_an_error_of_the_system_only_its_text_is_stored(tmp_path: Path, error: str) -> None:
    failure.write(tmp_path, f"[video4linux2,v4l2 @ 0x1] ioctl(VIDIOC_STREAMON): {error}")
    assert (tmp_path / failure.FILE).read_text() == f"{error}\n"


def test_what_a_killed_manager_has_left_does_not_matter(tmp_path: Path) -> None:
    (tmp_path / ".failure").write_text("half a li")
    failure.write(tmp_path, "/dev/video0: No such device")
    assert [path.name for path in tmp_path.iterdir()] == [failure.FILE]


def test_a_stream_does_not_fail_because_the_reason_cannot_be_stored(tmp_path: Path) -> None:
    failure.write(tmp_path / "missing", "line")
    failure.remove(tmp_path / "missing")
