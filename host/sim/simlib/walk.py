# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The answer of "udevadm info --attribute-walk" for a node of a simulated camera."""

from __future__ import annotations

from typing import NamedTuple

from simlib.attributes import AttributeList, Values
from simlib.catalogue import DATA, UsbDevice, VideoFunction
from simlib.machine import Machine, PluggedCamera
from simlib.ports import Port
from simlib.topology import SUPERSPEED

PREAMBLE = """
Udevadm info starts with the device specified by the devpath and then
walks up the chain of parent devices. It prints for every device
found, all possible attributes in the udev rules key format.
A rule to match, can be composed by the attributes of the device
and the attributes from one single parent device.

"""


class VideoNode(NamedTuple):
    """A node; the index is its position in its function."""

    function: VideoFunction
    index: int
    number: int


def render_walk(machine: Machine, plugged: PluggedCamera, node: VideoNode) -> str:
    """Prints the walk from the camera's node up to the root of the device tree."""
    bus = machine.topology.bus_of(plugged.port)
    blocks = [
        _node_block(machine, plugged, node),
        _interface_block(machine, plugged, node.function),
        _camera_block(machine, plugged),
    ]
    hub = plugged.port.hub
    while hub is not None:
        blocks.append(_hub_block(machine, hub))
        hub = hub.hub
    blocks.append(_list("root-hub").block(bus.devpath, bus.values()))
    blocks += machine.topology.controller_blocks(bus)
    return PREAMBLE + "\n".join(blocks) + "\n"


def _list(kind: str) -> AttributeList:
    return AttributeList(DATA / "attributes" / f"{kind}.txt")


def _node_block(machine: Machine, plugged: PluggedCamera, node: VideoNode) -> str:
    path = f"{machine.interface_devpath(plugged, node.function)}/video4linux/video{node.number}"
    values: Values = {"index": node.index, "name": plugged.camera.name_of(node.function)}
    return _list("video-node").block(path, values, first=True)


def _interface_block(machine: Machine, plugged: PluggedCamera, function: VideoFunction) -> str:
    values: Values = {"interface": function.interface, "interface_number": f"{function.first_interface:02x}"}
    return _list("video-interface").block(machine.interface_devpath(plugged, function), values)


def _camera_block(machine: Machine, plugged: PluggedCamera) -> str:
    camera = plugged.camera
    values = _usb_values(camera, plugged.port, plugged.address, machine.speed_at(plugged.port, camera))
    values["interface_count"] = f"{camera.interface_count:2d}"
    values["quirks"] = camera.quirks
    return _list("camera").block(machine.topology.devpath(plugged.port), values)


def _hub_block(machine: Machine, port: Port) -> str:
    hub = machine.hub
    values = _usb_values(hub, port, machine.hubs[port.slot], machine.speed_at(port, hub))
    values["ports"] = hub.ports
    return _list("hub").block(machine.topology.devpath(port), values)


def _usb_values(device: UsbDevice, port: Port, address: int, speed: int) -> Values:
    """Returns the device's values. A superspeed device on a slower bus reports USB 2.1."""
    superspeed = speed >= SUPERSPEED
    slowed = device.speed >= SUPERSPEED and not superspeed
    return {
        "busnum": port.bus,
        "devnum": address,
        "devpath": port.devpath,
        "vendor_id": device.vendor_id,
        "product_id": device.product_id,
        "manufacturer": device.manufacturer,
        "product": device.product,
        "serial": device.serial,
        "speed": speed,
        "usb_version": " 2.10" if slowed else f" {device.usb_version}",
        "max_packet": 9 if superspeed else device.max_packet,
        "max_power": device.max_power,
        "release": device.release,
    }
