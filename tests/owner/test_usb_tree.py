# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Which ports share what, and where there is room for one more camera."""

from __future__ import annotations

import sys
from pathlib import Path
from typing import Any

import pytest

sys.path.append(str(Path(__file__).resolve().parents[2] / "host/services"))
from statelib import usb_tree

ON_BOARD = "pci0000:00/0000:00:14.0"
BEHIND_A_BRIDGE = "pci0000:00/0000:00:1c.4/0000:04:00.0"
ON_AN_ARM_BOARD = "platform/soc/3f980000.usb"


@pytest.fixture
def machine(tmp_path: Path) -> Path:
    """Bus 1 on the board, and bus 3 behind a bridge, with four ports each."""
    folder = tmp_path / "sys"
    add_bus(folder, 1, ON_BOARD)
    add_bus(folder, 3, BEHIND_A_BRIDGE)
    return folder


def add_bus(machine: Path, number: int, controller: str) -> None:
    root_hub = machine / f"devices/{controller}/usb{number}"
    root_hub.mkdir(parents=True)
    (root_hub / "maxchild").write_text("4\n")
    link(machine, root_hub)


def plug(machine: Path, port: str, ports: int = 0) -> None:
    """Whatever it is; a hub has ports."""
    device = next(machine.glob(f"devices/**/usb{port.partition('-')[0]}")) / port
    device.mkdir()
    (device / "maxchild").write_text(f"{ports}\n")
    link(machine, device)


def link(machine: Path, device: Path) -> None:
    (machine / "bus/usb/devices").mkdir(parents=True, exist_ok=True)
    (machine / "bus/usb/devices" / device.name).symlink_to(device)


def camera(channel: int, port: str, **more: Any) -> dict[str, Any]:
    """One that streams."""
    attached = {"channel": channel, "slot": port, "state": "plugged", "supported": True, "slot_switch": True}
    return {**attached, "profile": channel, "parked_behind": None, **more}


def controllers(machine: Path, *rows: dict[str, Any], is_limited: bool = False, reserved: int = 0) -> list[dict[str, Any]]:
    """With so much reserved of the 480 Mbit/s of bus 1."""
    full = usb_tree.full([{"bus": 1, "speed": 480, "reserved": reserved}])
    found = usb_tree.tree(list(rows), usb_tree.buses(machine / "bus/usb/devices"), is_limited, full)["controllers"]
    assert isinstance(found, list)
    return found


def free_ports(machine: Path, *rows: dict[str, Any], is_limited: bool = False, reserved: int = 0) -> list[str]:
    return [port for one in controllers(machine, *rows, is_limited=is_limited, reserved=reserved) for port in one["free_ports"]]


def test_a_controller_without_a_camera_is_told(machine: Path) -> None:
    told = [(one["path"], one["buses"], one["ports"]) for one in controllers(machine)]
    assert told == [(f"/devices/{ON_BOARD}", [1], []), (f"/devices/{BEHIND_A_BRIDGE}", [3], [])]


def test_only_a_controller_below_another_pci_device_is_behind_a_bridge(machine: Path) -> None:
    add_bus(machine, 7, ON_AN_ARM_BOARD)
    assert [one["bridge"] for one in controllers(machine)] == [None, "/devices/pci0000:00/0000:00:1c.4", None]


def test_buses_of_one_controller_are_together(machine: Path) -> None:
    add_bus(machine, 2, ON_BOARD)
    assert [one["buses"] for one in controllers(machine)] == [[1, 2], [3]]


def test_a_port_with_a_device_or_with_a_hub_is_not_free(machine: Path) -> None:
    plug(machine, "1-2")
    plug(machine, "3-1.4")
    assert free_ports(machine) == ["1-1", "1-3", "1-4", "3-2", "3-3", "3-4"]


def test_a_port_that_is_kept_for_a_camera_is_not_free(machine: Path) -> None:
    assert "1-1" not in free_ports(machine, camera(0, "1-1", state="unplugged"))


@pytest.mark.parametrize(("kind", "is_free"), [("hotplug", True), ("hardwired", False), ("not used", False)])
def test_a_port_without_a_socket_is_not_free(machine: Path, kind: str, is_free: bool) -> None:
    port = machine / f"devices/{ON_BOARD}/usb1/1-0:1.0/usb1-port2"
    port.mkdir(parents=True)
    (port / "connect_type").write_text(f"{kind}\n")
    assert ("1-2" in free_ports(machine)) == is_free


def test_the_free_ports_of_a_hub_have_room_until_a_camera_on_it_streams(machine: Path) -> None:
    plug(machine, "1-2", ports=3)
    plug(machine, "1-2.1")
    assert free_ports(machine)[:5] == ["1-1", "1-3", "1-4", "1-2.2", "1-2.3"]
    assert free_ports(machine, camera(0, "1-2.1"))[:4] == ["1-1", "1-3", "1-4", "3-1"]


@pytest.mark.parametrize(("reserved", "has_room"), [(0, True), (383, True), (384, False), (394, False)])
def test_a_bus_of_which_four_fifths_are_reserved_has_no_room(machine: Path, reserved: int, has_room: bool) -> None:
    free = free_ports(machine, reserved=reserved)
    assert ("1-1" in free) == has_room
    assert "3-1" in free


def test_a_controller_behind_a_bridge_has_room_for_one_camera(machine: Path) -> None:
    assert free_ports(machine, camera(0, "3-1")) == ["1-1", "1-2", "1-3", "1-4"]


@pytest.mark.parametrize("calm", [{"profile": None}, {"slot_switch": False}, {"state": "unplugged"}, {"supported": False}, {"parked_behind": 5}])
def test_a_camera_that_keeps_no_other_from_streaming_takes_no_room(machine: Path, calm: dict[str, Any]) -> None:
    assert "3-2" in free_ports(machine, camera(0, "3-1", **calm))


def test_a_controller_on_the_board_has_room_in_its_other_ports(machine: Path) -> None:
    assert free_ports(machine, camera(0, "1-1"), camera(1, "3-1")) == ["1-2", "1-3", "1-4"]


def test_a_host_for_one_camera_has_no_room_while_it_streams(machine: Path) -> None:
    assert free_ports(machine, camera(0, "1-1"), is_limited=True) == []
    assert free_ports(machine, camera(0, "1-1", profile=None), is_limited=True) != []


def test_a_port_of_a_bus_that_is_gone_is_still_told(machine: Path) -> None:
    gone = controllers(machine, camera(0, "9-1", state="unplugged"))[-1]
    assert (gone["path"], gone["buses"], gone["ports"][0]["port"], gone["free_ports"]) == (None, [9], "9-1", [])


def test_a_host_without_usb_has_no_controllers(tmp_path: Path) -> None:
    assert usb_tree.buses(tmp_path / "none") == {}
