# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The installed services: a restart of the device manager and an upgrade of the packages leave the streams alone."""

from __future__ import annotations

from collections.abc import Iterator

import pytest
from ground.ground import Port
from ground.grounds import RealGround
from ground.guest import Guest

A, B = Port("xhci", "1"), Port("xhci", "2")
DEVICES, STREAMS = "usbdev-devices.service", "usbdev-streams.service"
# Another version of the packages that the guest was made with.
UPGRADE = """
set -e; cd /tmp; rm -rf next; mkdir next
for package in /root/*.deb; do
  dpkg-deb -R $package next/tree
  sed -i "s/$(dpkg-deb -f $package Version)/&+next/g" next/tree/DEBIAN/control
  dpkg-deb -Znone -b next/tree next/${package##*/}; rm -r next/tree
done
dpkg --install next/*.deb
"""


def run_of(guest: Guest, unit: str) -> str:
    """What is another after every start of the unit, while as long as it is the same nobody has touched its processes."""
    return guest.run("systemctl", "show", "--property=InvocationID,MainPID,NRestarts", unit)


@pytest.fixture
def used(guest: Guest) -> Iterator[RealGround]:
    """A ground on which the camera in A has a profile, so that the manager runs its stream."""
    ground = RealGround(guest).reset()
    try:
        ground.plug("usb2-camera", A)
        ground.shows({A: 0})
        ground.usbdevctl("assign", ground.slot(A), "0")
        yield ground
    finally:
        ground.end()


def test_a_restart_of_the_device_manager_leaves_the_streams_alone(guest: Guest, used: RealGround) -> None:
    devices, streams = run_of(guest, DEVICES), run_of(guest, STREAMS)
    guest.run("systemctl", "restart", DEVICES)
    assert run_of(guest, DEVICES) != devices and run_of(guest, STREAMS) == streams
    used.plug("pc-camera", B)
    used.shows({A: 0, B: 1})
    assert run_of(guest, STREAMS) == streams


def test_an_upgrade_starts_the_device_manager_again_and_leaves_the_streams_alone(guest: Guest, used: RealGround) -> None:
    devices, streams = run_of(guest, DEVICES), run_of(guest, STREAMS)
    guest.shell(UPGRADE)
    assert guest.run("dpkg-query", "-W", "-f", "${Version}", "usbdev-host").endswith("+next")
    guest.wait(f"systemctl is-active --quiet {DEVICES}")
    assert run_of(guest, DEVICES) != devices and run_of(guest, STREAMS) == streams
    used.shows({A: 0})
