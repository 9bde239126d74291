# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A host that can serve one camera only: of four profiles, start-up leaves the first. Runs on the model amd-k41."""

from __future__ import annotations

import pytest
import usbdevlib
from host import Host, stream_folder
from manager import Manager

pytestmark = pytest.mark.usefixtures("without_process_list")

PORTS = ["1-1", "3-1", "3-2", "5-1"]
GIVEN_UP = 3


@pytest.fixture
def four_profiles(host: Host) -> Host:
    for profile, port in enumerate(PORTS):
        host.plug("usb2-camera", port)
        usbdevlib.assign(port, profile)
    return host


def test_only_the_first_profile_survives_a_start(four_profiles):
    first = four_profiles.channels()[0]
    four_profiles.reboot()
    channels = four_profiles.channels()[:4]
    assert [(it.slot, it.exists, it.profile) for it in channels] == [
        ("1-1", 1, 0),
        *((port, 1, -1) for port in PORTS[1:]),
    ]
    assert four_profiles.links() == {first.link: stream_folder(0)}


def test_the_camera_of_the_first_profile_does_not_wait_after_the_start(four_profiles):
    four_profiles.reboot()
    assert four_profiles.channels()[0].parked_behind == -1


def test_the_manager_is_notified_of_every_profile_that_is_cleared(four_profiles):
    with Manager() as manager:
        four_profiles.reboot()
        told = manager.received()
    assert [(it.event, it.profile, it.video) for it in told] == [
        (GIVEN_UP, profile, four_profiles.node(PORTS[profile])) for profile in (1, 2, 3)
    ]


def test_an_absent_camera_gives_its_profile_up_too(four_profiles):
    four_profiles.reboot("unplug 3-1")
    assert [it.profile for it in four_profiles.channels()[:4]] == [0, -1, -1, -1]


def test_after_a_second_start_the_others_wait_for_the_first_profile(four_profiles):
    four_profiles.reboot()
    four_profiles.reboot()
    assert [it.parked_behind for it in four_profiles.channels()[:4]] == [-1, 0, 0, 0]
