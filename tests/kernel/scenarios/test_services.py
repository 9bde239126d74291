# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The installed services: a restart of the device manager and an upgrade of the packages leave the streams alone."""

from __future__ import annotations

from collections.abc import Iterator

import pytest
from ground.ground import Port
from ground.grounds import DRIVER, RealGround
from ground.guest import Guest
from ground.streams import PLAYLIST, SMALL, wait_for_playlist

A, B = Port("xhci", "1"), Port("xhci", "2")
DEVICES, STREAMS = "usbdev-devices.service", "usbdev-streams.service"
PAGES, LOGINS = "usbdev-pages.service", "usbdev-login.service"
CONFIGURATION = "/var/lib/usbdev/config/usbdev.conf"
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


def processes(guest: Guest) -> set[str]:
    """The manager and its encoder."""
    found = set(guest.run("cat", f"/sys/fs/cgroup/system.slice/{STREAMS}/cgroup.procs").split())
    assert len(found) == 2
    return found


def streams(guest: Guest) -> None:
    """Waits until the playlist has another segment than before."""
    wait_for_playlist(guest)
    last = guest.run("tail", "-n", "1", PLAYLIST).strip()
    guest.wait(f"test $(tail -n 1 {PLAYLIST}) != {last}")


@pytest.fixture
def used(guest: Guest) -> Iterator[RealGround]:
    """A ground on which the camera in A streams."""
    ground = RealGround(guest).reset()
    try:
        ground.plug("nameless-webcam", A)
        ground.shows({A: 0})
        ground.usbdevctl("assign", ground.slot(A), "0")
        ground.usbdevctl("stream", "set", "0", *SMALL, "--codec", "mjpeg")
        streams(guest)
        yield ground
    finally:
        ground.end()


def test_a_restart_of_the_device_manager_leaves_the_streams_alone(guest: Guest, used: RealGround) -> None:
    devices, manager, streaming = run_of(guest, DEVICES), run_of(guest, STREAMS), processes(guest)
    guest.run("systemctl", "restart", DEVICES)
    assert run_of(guest, DEVICES) != devices
    used.plug("pc-camera", B)
    used.shows({A: 0, B: 1})
    streams(guest)
    assert run_of(guest, STREAMS) == manager and processes(guest) == streaming


@pytest.fixture
def pages(guest: Guest) -> Iterator[None]:
    """Enabled as after an installation."""
    guest.run("systemctl", "enable", "--quiet", "--now", LOGINS, PAGES)
    yield
    guest.run("systemctl", "disable", "--quiet", "--now", PAGES, LOGINS)


@pytest.mark.usefixtures("pages")
def test_an_upgrade_starts_all_services_again_and_leaves_the_streams_alone(guest: Guest, used: RealGround) -> None:
    others, manager, streaming = [run_of(guest, it) for it in (DEVICES, LOGINS, PAGES)], run_of(guest, STREAMS), processes(guest)
    guest.shell(UPGRADE)
    assert guest.run("dpkg-query", "-W", "-f", "${Version}", "usbdev-host").endswith("+next")
    guest.wait(f"systemctl is-active --quiet {DEVICES} {LOGINS} {PAGES}")
    used.shows({A: 0})
    streams(guest)
    assert all(before != run_of(guest, it) for before, it in zip(others, (DEVICES, LOGINS, PAGES)))
    assert run_of(guest, STREAMS) == manager and processes(guest) == streaming


def test_what_the_device_manager_and_root_store_stays_the_services_and_the_groups(guest: Guest) -> None:
    ground = RealGround(guest).reset()
    owner = ("stat", "--format=%a %U:%G", CONFIGURATION)
    ground.use_light_encoder()
    try:
        ground.plug("usb2-camera", A)
        ground.shows({A: 0})
        stored = guest.run(*owner)
        ground.usbdevctl("assign", ground.slot(A), "0")
        assert {stored, guest.run(*owner)} == {"660 usbdev:video\n"}
    finally:
        ground.end()


def test_a_camera_that_loses_its_driver_is_in_the_event_log_once_with_the_cure(guest: Guest) -> None:
    ground = RealGround(guest).reset()
    try:
        ground.plug("usb2-camera", A)
        ground.shows({A: 0})
        guest.shell(f"echo {ground.slot(A)}:1.0 >{DRIVER}/unbind")
        ground.shows({})
        guest.wait("usbdevctl log | grep -q 'It has no node for pictures'")
        (event,) = (it for it in ground.events() if "no node" in it)
        assert event.startswith(f"warning: Camera[{ground.slot(A)} ") and "'sudo modprobe uvcvideo' loads the driver" in event
    finally:
        ground.end()
