# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Pictures that a program in the guest reads from a camera, and what they say about themselves."""

from __future__ import annotations

from concurrent.futures import Future

from ground.channel import Done
from ground.guest import Guest
from usbcamera.jpeg import decoded
from usbcamera.pictures import recognise

# What the program says when its camera is gone, by what it was doing with a picture.
LOST = ("VIDIOC_DQBUF: failed", "qbuf error")
BYTES = {"MJPG": 1, "YUYV": 2}


class Streaming:
    """A program that streams; a count of 0 goes on until the camera is gone."""

    def __init__(self, guest: Guest, node: str, fourcc: str = "MJPG", size: tuple[int, int] = (320, 240), count: int = 5) -> None:
        self._fourcc, self._size = fourcc, size
        self._guest, self._file = guest, f"/tmp/pictures-of-{node.rpartition('/')[2]}"
        guest.run("rm", "-f", self._file)
        shape = f"width={size[0]},height={size[1]},pixelformat={fourcc}"
        self.ended: Future[Done] = guest.start("v4l2-ctl", "-d", node, f"--set-fmt-video={shape}", "--stream-mmap",
                                               f"--stream-count={count}", f"--stream-to={self._file}")

    def wait_for_a_picture(self) -> None:
        self._guest.wait(f"test -s {self._file}")

    def is_lost(self) -> bool:
        """Checks that the program has ended because its camera was gone."""
        return any(it in self.ended.result(timeout=240).errors for it in LOST)

    def pictures(self) -> list[tuple[int, int]]:
        """Returns number and tag of each, when the program has ended; a picture that is damaged fails the test."""
        self.ended.result(timeout=240)
        data = self._guest.start("cat", self._file).result(timeout=240).output
        width, height = self._size
        step = BYTES[self._fourcc]
        luma = decoded(data) if self._fourcc == "MJPG" else data
        size = width * height * step
        found = [recognise(luma[at : at + size], width, height, step) for at in range(0, len(luma) - size + 1, size)]
        assert found and None not in found, found
        return [it for it in found if it is not None]
