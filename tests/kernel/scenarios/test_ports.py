# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Channels of cameras in several ports and on hubs, on both grounds."""

from __future__ import annotations

from ground.ground import Ground, Port
from ground.scenario import on_both_grounds

A, B = Port("xhci", "1"), Port("xhci", "2")
ON_HUB, BESIDE = Port("xhci", "4.1"), Port("xhci", "4.2")
SIX = [Port("xhci", str(number)) for number in range(1, 7)]


@on_both_grounds()
def test_a_camera_with_a_profile_gets_another_channel_in_another_port(ground: Ground) -> None:
    ground.plug("usb2-camera", A)
    ground.shows({A: 0})
    ground.usbdevctl("assign", ground.slot(A), "0")
    ground.unplug(A)
    ground.shows({})
    ground.plug("usb2-camera", B)
    ground.shows({B: 1})


@on_both_grounds()
def test_of_two_cameras_on_a_hub_one_waits_until_the_other_has_gone(ground: Ground) -> None:
    ground.plug("usb2-camera", ON_HUB)
    ground.shows({ON_HUB: 0})
    ground.usbdevctl("assign", ground.slot(ON_HUB), "0")
    ground.plug("pc-camera", BESIDE)
    ground.shows({ON_HUB: 0, BESIDE: 1})
    ground.unplug(ON_HUB)
    ground.shows({BESIDE: 1})
    ground.usbdevctl("assign", ground.slot(BESIDE), "1")


@on_both_grounds()
def test_cameras_move_with_their_hub(ground: Ground) -> None:
    ground.plug("usb2-camera", ON_HUB)
    ground.shows({ON_HUB: 0})
    ground.plug("pc-camera", BESIDE)
    ground.shows({ON_HUB: 0, BESIDE: 1})
    ground.unplug(Port("xhci", "4"))
    ground.shows({})
    ground.plug("usb2-camera", Port("xhci", "5.1"))
    ground.shows({Port("xhci", "5.1"): 0})
    ground.plug("pc-camera", Port("xhci", "5.2"))
    ground.shows({Port("xhci", "5.1"): 0, Port("xhci", "5.2"): 1})


# Which of them udev is ready with first is chance, and with it the numbers of channels and nodes.
@on_both_grounds(seen=Ground.record_in_any_order)
def test_four_cameras_that_come_at_once_get_a_channel_each(ground: Ground) -> None:
    for port in SIX[:4]:
        ground.plug("usb2-camera", port)
    ground.shows_cameras_in(set(SIX[:4]))
    assert sorted(row["channel"] for row in ground.channels()) == [0, 1, 2, 3]


@on_both_grounds()
def test_six_cameras_get_six_channels(ground: Ground) -> None:
    for count, port in enumerate(SIX, 1):
        ground.plug("usb2-camera", port)
        ground.shows({it: channel for channel, it in enumerate(SIX[:count])})


@on_both_grounds("platform")
def test_a_camera_on_a_controller_without_pci_gets_a_channel(ground: Ground) -> None:
    port = Port("platform", "1")
    ground.plug("usb2-camera", port)
    ground.shows({port: 0})
    ground.unplug(port)
    ground.shows({})


@on_both_grounds("ehci-uhci")
def test_a_controller_and_its_companion_have_ports_of_their_own(ground: Ground) -> None:
    fast, slow = Port("pair", "1"), Port("companion", "2.1")
    ground.plug("usb2-camera", fast)
    ground.shows({fast: 0})
    ground.plug("pc-camera", slow)
    ground.shows({fast: 0, slow: 1})
