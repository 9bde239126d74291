# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hosts with a controller for each speed (EHCI and UHCI): which bus takes what, and what the library sees there."""

from __future__ import annotations

import re

import pytest
from simlib.errors import SimError

TOPOLOGY = "ehci-uhci"


@pytest.fixture
def old_pc(new_host):
    return new_host(TOPOLOGY)


def blocks(root, node: int) -> list[str]:
    return (root / f"run/usbdev-sim/nodes/video{node}/walk").read_text().split("  looking at ")[1:]


@pytest.mark.parametrize(
    ("camera", "port", "reason"),
    [
        ("usb2-camera", "3-1", "bus 3 is for full-speed devices; usb2-camera belongs on bus 1"),
        ("usb2-camera", "6-1", "bus 6 is for full-speed devices; usb2-camera belongs on bus 2"),
        ("usb3-camera", "4-1", "bus 4 is for full-speed devices; usb3-camera belongs on bus 1"),
        ("usb2-camera", "1-1.1", "bus 1 is for high-speed devices; full-speed-hub belongs on bus 3"),
        ("usb2-camera", "2-1.1", "bus 2 is for high-speed devices; full-speed-hub belongs on bus 5"),
    ],
)
def test_a_device_of_the_wrong_speed_is_refused_with_the_bus_where_it_belongs(old_pc, camera, port, reason):
    host, _ = old_pc
    with pytest.raises(SimError, match=reason):
        host.plug(camera, port)


def test_a_superspeed_camera_runs_at_high_speed_on_a_high_speed_controller(old_pc):
    host, root = old_pc
    host.plug("usb3-camera", "1-1")
    assert 'ATTRS{speed}=="480"' in blocks(root, 0)[2]


def test_a_camera_behind_a_full_speed_hub_is_on_the_full_speed_controller(old_pc):
    host, root = old_pc
    host.plug("usb2-camera", "3-1.2")
    _, _, camera, _, root_hub, controller, _ = blocks(root, 0)
    assert 'ATTRS{speed}=="12"' in camera
    assert 'ATTRS{product}=="UHCI Host Controller"' in root_hub and 'ATTRS{idProduct}=="0001"' in root_hub
    assert 'ATTRS{version}==" 1.10"' in root_hub and 'ATTRS{speed}=="12"' in root_hub
    assert 'DRIVERS=="uhci_hcd"' in controller and 'ATTRS{class}=="0x0c0300"' in controller


def test_a_high_speed_controller_looks_as_one_of_a_published_walk(old_pc):
    """As an EHCI controller of a laptop showed itself, apart from its maker and numbers."""
    host, root = old_pc
    host.plug("usb2-camera", "1-1")
    *_, root_hub, controller, _ = blocks(root, 0)
    for attribute in ('bDeviceProtocol}=="00"', 'idProduct}=="0002"', 'version}==" 2.00"', 'EHCI Host Controller"'):
        assert attribute in root_hub
    for attribute in ('class}=="0x0c0320"', 'companion}==""', 'uframe_periodic_max}=="100"', 'dma_mask_bits}=="32"'):
        assert attribute in controller


@pytest.mark.parametrize(("port", "bridges"), [("1-1", 0), ("2-1", 1), ("3-1.1", 0), ("5-1.1", 1)])
def test_the_card_is_behind_a_bridge(old_pc, port, bridges):
    host, root = old_pc
    host.plug("usb2-camera", port)
    assert (root / "run/usbdev-sim/nodes/video0/walk").read_text().count('class}=="0x0604') == bridges


def conflict_marks(configuration: str) -> list[str]:
    return re.findall(r"<conflictch>(.*)</conflictch>", configuration)


@pytest.mark.parametrize(
    ("ports", "mark"),
    [
        (("1-1", "1-2"), "-1"),  # one controller, without a bridge
        (("2-1", "2-2"), "0"),  # one controller behind a bridge
        (("2-1", "5-1.1"), "-1"),  # one card, but two controllers
        (("3-1.1", "3-1.2"), "0"),  # one root port
        (("3-1.1", "4-1.1"), "-1"),
    ],
)
def test_cameras_of_one_root_port_or_of_one_controller_behind_a_bridge_wait_for_each_other(sandbox, ports, mark):
    first, second = ports
    result = sandbox(
        f"{{ sim plug usb2-camera {first} && usbdevctl assign {first} 0 && sim plug usb2-camera {second}; }} >/dev/null"
        " && cat /etc/config/usbdev.conf",
        *("--topology", TOPOLOGY),
    )
    assert (result.returncode, conflict_marks(result.stdout)) == (0, ["-1", mark])


def test_a_reboot_finds_the_cameras_of_all_controllers_again(sandbox):
    result = sandbox(
        "{ sim plug usb2-camera 3-1.1; sim plug pc-camera 2-1; sandbox reboot; } >/dev/null;"
        " cat /etc/config/usbdev.conf",
        *("--topology", TOPOLOGY),
    )
    assert re.findall(r"<usbslot>(.*)</usbslot>", result.stdout) == ["3-1.1", "2-1"]
    assert re.findall(r"<vnode>(.*)</vnode>", result.stdout) == ["2", "0"]
