# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The streams of the installed packages: their pictures are the camera's, and they come back with it."""

from __future__ import annotations

import subprocess
from collections.abc import Callable, Iterator

import pytest
from ground.ground import Port
from ground.grounds import RealGround
from ground.guest import Guest
from ground.plugging import Plugged
from ground.streams import FOLDER, HEIGHT, PLAYLIST, SMALL, WIDTH, wait_for_playlist
from usbcamera.jpeg import decoded
from usbcamera.pictures import recognise

Plug = Callable[..., Plugged]
PORT, TAG = Port("xhci", "1"), 7
# Its list has rates that the emulator can encode.
CAMERA = "nameless-webcam"
DECODE = "ffmpeg -nostdin -v error -f mpegts -i - -f rawvideo -pix_fmt gray -".split()


@pytest.fixture
def set_stream(guest: Guest) -> Iterator[Callable[..., None]]:
    RealGround(guest).reset()

    def store(slot: str, *settings: str) -> None:
        guest.wait(f"usbdevctl channels | grep -q ' plugged *{slot} '")
        guest.run("usbdevctl", "assign", slot, "0")
        guest.run("usbdevctl", "stream", "set", "0", *SMALL, *settings)

    yield store
    guest.shell("usbdevctl clear 0 || true")


def streamed(guest: Guest) -> list[bytes]:
    """Waits for a segment, and returns its pictures."""
    wait_for_playlist(guest)
    segment = guest.start("sh", "-c", f"cd {FOLDER} && cat $(tail -n 1 {PLAYLIST})").result(timeout=60).output
    data = subprocess.run(DECODE, input=segment, capture_output=True, check=True).stdout
    size = WIDTH * HEIGHT
    return [data[at : at + size] for at in range(0, len(data) - size + 1, size)]


def turned(picture: bytes) -> tuple[int, int] | None:
    """Returns number and tag of a picture that is upside down and mirrored."""
    return recognise(picture[::-1], WIDTH, HEIGHT)


def test_a_stream_shows_its_camera_as_it_is_set_and_again_so_when_the_camera_is_back(
    guest: Guest, plug: Plug, set_stream: Callable[..., None]
) -> None:
    camera = plug(CAMERA, PORT, "--tag", str(TAG))
    camera.node()
    set_stream(camera.slot, "--codec", "h264", "--overlay", "off", "--flip", "on", "--mirror", "on")
    before = [turned(it) for it in streamed(guest)]
    camera.unplug()
    guest.wait(f"test ! -e {PLAYLIST}")
    camera.wait_until_gone()
    plug(CAMERA, PORT, "--tag", str(TAG))
    found = before + [turned(it) for it in streamed(guest)]
    assert None not in found and {tag for _, tag in found if found} == {TAG}
    numbers = [number for number, _ in found]
    assert numbers == sorted(numbers) and len(set(numbers)) > 1


def test_of_a_camera_that_compresses_the_pictures_are_streamed_and_copied(
    guest: Guest, plug: Plug, set_stream: Callable[..., None]
) -> None:
    camera = plug(CAMERA, PORT, "--tag", str(TAG))
    camera.node()
    set_stream(camera.slot, "--codec", "mjpeg")
    found = [recognise(it, WIDTH, HEIGHT) for it in streamed(guest)]
    assert found and {it and it[1] for it in found} == {TAG}
    guest.wait(f"test -s {FOLDER}/picture.jpg")
    copied = guest.start("cat", f"{FOLDER}/picture.jpg").result(timeout=60).output
    number, tag = recognise(decoded(copied), WIDTH, HEIGHT) or (0, 0)
    assert (number > 0, tag) == (True, TAG)


def test_a_camera_without_bandwidth_has_the_reason_until_another_one_makes_room(
    guest: Guest, plug: Plug, set_stream: Callable[..., None]
) -> None:
    greedy = ("--isochronous", "--burst", "3", "--every-microframe")
    first, second = (plug(CAMERA, Port("ehci", port), "--tag", port, *greedy) for port in ("1", "2"))
    size = f"--set-fmt-video=width={WIDTH},height={HEIGHT},pixelformat=MJPG"
    holding = guest.start("v4l2-ctl", "-d", first.node(), size, "--stream-mmap", "--stream-count=0")
    second.node()
    set_stream(second.slot, "--codec", "mjpeg")
    guest.wait(f"grep -qx 'No space left on device' {FOLDER}/failure")
    first.unplug()
    holding.result(timeout=60)
    assert {it and it[1] for it in (recognise(it, WIDTH, HEIGHT) for it in streamed(guest))} == {2}
    guest.wait(f"test ! -e {FOLDER}/failure")
