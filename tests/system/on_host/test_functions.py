# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Cameras that are more than one picture: two video functions, or a sound card that is found before the picture."""

from __future__ import annotations

import pytest
import usbdevlib
from host import Channel, Host

pytestmark = pytest.mark.usefixtures("without_process_list")

COLOUR = "Integrated Camera: Integrated C"
INFRARED = "Integrated Camera: Integrated I"
UNSUPPORTED = 999


def facts(channel: Channel) -> tuple[str, str, int, int, int]:
    return channel.slot, channel.device, channel.exists, channel.vnode, channel.parked_behind


def used(host: Host) -> list[Channel]:
    return [it for it in host.channels() if it.slot]


@pytest.fixture
def two_functions(host: Host) -> Host:
    host.plug("colour-and-infrared", "3-1")
    return host


def test_two_functions_share_the_channel_of_their_port_and_the_later_one_holds_it(two_functions):
    assert [facts(it) for it in used(two_functions)] == [("3-1", INFRARED, 1, 2, UNSUPPORTED)]


def test_at_each_start_the_function_without_the_channel_takes_it(two_functions):
    two_functions.reboot()
    assert [facts(it) for it in used(two_functions)] == [("3-1", COLOUR, 1, 0, -1)]
    two_functions.reboot()
    assert [facts(it) for it in used(two_functions)] == [("3-1", INFRARED, 1, 2, UNSUPPORTED)]


def test_a_first_function_with_a_profile_counts_as_unplugged_after_a_start(two_functions):
    """The second one, listed later, is another camera in its port, and gets a channel of its own."""
    two_functions.reboot()
    usbdevlib.assign("3-1", 0)
    two_functions.reboot()
    bound, other = used(two_functions)
    assert (bound.device, bound.exists, bound.vnode, bound.profile) == (COLOUR, 0, -1, 0)
    assert (other.device, other.exists, other.vnode, other.profile) == (INFRARED, 1, 2, -1)


def test_unplugging_a_camera_with_two_functions_frees_its_channel(two_functions):
    two_functions.unplug("3-1")
    assert [(it.exists, it.vnode) for it in used(two_functions)] == [(0, -1)]


def test_a_sound_card_before_its_camera_takes_no_channel_from_it(host):
    assert host.plug("microphone-first", "3-1") == 0
    assert [facts(it) for it in used(host)] == [("3-1", "Conference Camera", 1, 0, -1)]


def test_a_sound_card_that_is_removed_first_frees_the_channel_of_its_camera(host):
    host.plug("microphone-first", "3-1")
    assert host.unplug("3-1") == [-1]
    assert [(it.slot, it.exists, it.vnode) for it in used(host)] == [("3-1", 0, -1)]


def test_a_camera_with_a_profile_keeps_its_channel_when_its_card_is_removed_and_plugged_in_first(host):
    host.plug("microphone-first", "3-1")
    usbdevlib.assign("3-1", 2)
    host.unplug("3-1")
    host.plug("pc-camera", "1-1")
    assert host.plug("microphone-first", "3-1") == 0
    assert [(it.slot, it.exists, it.profile) for it in used(host)] == [("3-1", 1, 2), ("1-1", 1, -1)]
