# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Channels of a camera in a port, in the sandbox and with the installed packages on the real kernel. These run in `kernel.short`
too."""

from __future__ import annotations

from ground.ground import Ground, Port
from ground.scenario import on_both_grounds

A = Port("xhci", "1")


@on_both_grounds()
def test_a_camera_gets_a_channel_and_leaves_it_unplugged(ground: Ground) -> None:
    ground.plug("usb2-camera", A)
    ground.shows({A: 0})
    ground.unplug(A)
    ground.shows({})


@on_both_grounds()
def test_a_camera_that_comes_back_finds_its_channel_profile_and_settings(ground: Ground) -> None:
    ground.plug("hd-pro-webcam", A)
    ground.shows({A: 0})
    ground.usbdevctl("assign", ground.slot(A), "0")
    ground.usbdevctl("stream", "set", "0", "--size", "320x240", "--fps", "15")
    ground.unplug(A)
    ground.shows({})
    ground.plug("hd-pro-webcam", A)
    ground.shows({A: 0})


@on_both_grounds()
def test_a_microphone_that_comes_first_does_not_take_the_cameras_channel(ground: Ground) -> None:
    ground.plug("microphone-first", A)
    ground.shows({A: 0})
    ground.unplug(A)
    ground.shows({})
    ground.plug("microphone-first", A)
    ground.shows({A: 0})


@on_both_grounds()
def test_of_a_camera_with_two_functions_the_first_counts(ground: Ground) -> None:
    ground.plug("colour-and-infrared", A)
    ground.shows({A: 0})


@on_both_grounds()
def test_a_name_with_letters_of_other_alphabets_is_the_channels(ground: Ground) -> None:
    ground.plug("office-camera", A)
    ground.shows({A: 0})
    assert [row["device"] for row in ground.channels()] == ["Büro-Kamera № 1 摄像头"]
