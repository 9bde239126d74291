# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A reboot, between which cameras are exchanged, on both grounds; it takes two guests of its own, with one controller: the
kernel may number the buses of several ones in another order at each boot."""

from __future__ import annotations

from pathlib import Path

from ground.ground import Ground, Port
from ground.grounds import RealGround, SimulatedGround
from ground.guest import ONE_CONTROLLER, Guest
from ground.root import GuestRoot, run
from ground.scenario import ended

A, B = Port("xhci", "1"), Port("xhci", "2")


def come_to(ground: Ground, before: list[str]) -> tuple[object, ...]:
    """After the reboot no manager is told anything: it starts when the device manager has synchronised, and looks for itself."""
    ground.shows({A: 2, B: 3})
    record = ground.record()
    return record.channels, record.events, [*before, *ground.notifications()]


def told_before(ground: Ground) -> list[str]:
    ground.use_light_encoder()
    ground.use_two_cameras(A, B)
    return ground.told(2)  # of the assignments


def rebooted_in_the_sandbox() -> tuple[object, ...]:
    with ended(SimulatedGround()) as ground:
        told_before(ground)
        with ground.without_manager():
            ground.machine.run("sandbox", "reboot", "--swap", ground.slot(A), ground.slot(B))
        return come_to(ground, [])  # the list goes on


def rebooted_in_the_guest(root: GuestRoot, state: Path) -> tuple[object, ...]:
    guest = Guest(root, state, ONE_CONTROLLER)
    ground = RealGround(guest)
    try:
        guest.boot()
        before = told_before(ground)
        guest.shut_down()
    finally:
        ground.abandon()
    guest = Guest(root, state, ONE_CONTROLLER)
    ground = RealGround(guest)
    try:
        ground.plug("pc-camera", A)
        ground.plug("usb2-camera", B)
        guest.boot()
        return come_to(ground, before)
    finally:
        ground.abandon()


def test_cameras_exchanged_while_the_machine_is_off_leave_their_channels_in_the_ports(root: GuestRoot, tmp_path: Path) -> None:
    state = tmp_path / "state"
    run("cp", "-a", root.folder / "var/lib/usbdev", state)
    assert rebooted_in_the_guest(root, state) == rebooted_in_the_sandbox()
