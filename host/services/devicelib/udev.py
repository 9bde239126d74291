# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Reads from udev what is plugged in, and when that changes."""

from __future__ import annotations

import errno
from collections.abc import Callable, Iterator

from pyudev import Context, Device, DeviceNotFoundError, Monitor

from devicelib.world import Card, Node, UsbDevice, World

VIDEO_INTERFACE = ":0e01"  # in the list of a USB device's interfaces: the control interface of a camera
# The drivers whose devices the library's own scan finds.
VIDEO_DRIVER = "uvcvideo"
SOUND_DRIVER = "snd-usb-audio"
READY = "USEC_INITIALIZED"  # set when udev's rules ran, and with them the node and its permissions are there
CARD_READY = "SOUND_INITIALIZED"  # set when the card's own nodes are there too


class Udev:
    """Follows udev from the moment it is made, so that nothing is lost between a look and the first event."""

    def __init__(self, trim: Callable[[str], str]) -> None:
        """`trim` makes the name that the library's scan would read."""
        self._trim = trim
        self._context = Context()
        self._monitor = Monitor.from_netlink(self._context, source="udev")
        for subsystem in ("video4linux", "sound"):
            self._monitor.filter_by(subsystem)
        self._monitor.filter_by("usb", "usb_device")  # of a camera without a node
        self._monitor.start()

    def fileno(self) -> int:
        """Returns the descriptor that is readable after an event."""
        return int(self._monitor.fileno())

    def take_events(self) -> None:
        """Takes what has come. The events only announce that something has changed, so that one may get lost."""
        try:
            while self._monitor.poll(timeout=0) is not None:
                pass
        except OSError as problem:
            if problem.errno != errno.ENOBUFS:
                raise

    def look(self) -> World:
        """Returns what is plugged in now."""
        while True:
            try:
                return self._look()
            except DeviceNotFoundError:
                continue  # it has gone between two questions

    def _look(self) -> World:
        devices = [*self._in_ports("video4linux", "video"), *self._in_ports("sound", "card")]
        found: dict[str, tuple[Device, list[Device]]] = {it.sys_name: (it, []) for it in self._cameras()}
        for usb_device, device in devices:
            found.setdefault(usb_device.sys_name, (usb_device, []))[1].append(device)
        return {slot: self._usb_device(usb_device, devices) for slot, (usb_device, devices) in found.items()}

    def _cameras(self) -> Iterator[Device]:
        """Returns the USB devices that are cameras, with or without a node. One that is passed on to another machine has another
        driver."""
        for device in self._context.list_devices(subsystem="usb", ID_USB_INTERFACES=f"*{VIDEO_INTERFACE}*"):
            if device.device_type == "usb_device" and device.properties.get("DRIVER", "usb") == "usb":
                yield device

    def _in_ports(self, subsystem: str, kind: str) -> Iterator[tuple[Device, Device]]:
        """Returns the devices of a kind that are on a USB port, each with the USB device in the port."""
        for device in self._context.list_devices(subsystem=subsystem):
            usb_device = device.find_parent("usb", "usb_device")
            if usb_device is not None and device.sys_name == f"{kind}{device.sys_number}":
                yield usb_device, device

    def _usb_device(self, usb_device: Device, devices: list[Device]) -> UsbDevice:
        videos = [device for device in devices if device.subsystem == "video4linux"]
        sounds = [device for device in devices if device.subsystem == "sound"]
        product = self._name(usb_device, "product")
        return UsbDevice(
            tuple(self._node(device) for device in videos if _is_ready(device, VIDEO_DRIVER) and _has_name(device)),
            tuple(_card(device, product) for device in sounds if _is_ready(device, SOUND_DRIVER, CARD_READY)),
            is_settled=all(READY in device.properties for device in videos),
            has_video=VIDEO_INTERFACE in usb_device.properties.get("ID_USB_INTERFACES", ""),
            born=int(usb_device.properties.get(READY, "0")),
        )

    def _node(self, device: Device) -> Node:
        facts = device.properties
        return Node(
            int(device.sys_number),
            int(facts.get("ID_USB_INTERFACE_NUM", "0"), 16),
            self._name(device, "name"),
            int(facts[READY]),
            ":capture:" in facts.get("ID_V4L_CAPABILITIES", ""),
        )

    def _name(self, device: Device, attribute: str) -> str:
        """Returns the first line of an attribute; not every device has a product's name."""
        content = device.attributes.get(attribute) or b""
        return self._trim(content.split(b"\n")[0].decode("utf-8", "surrogateescape"))


def _is_ready(device: Device, driver: str, mark: str = READY) -> bool:
    facts = device.properties
    return READY in facts and mark in facts and facts.get("ID_USB_DRIVER") == driver


def _has_name(device: Device) -> bool:
    """Checks that the node is still there: every one has a name, and the attributes of one that has gone are missing."""
    return device.attributes.get("name") is not None


def _card(device: Device, product: str) -> Card:
    return Card(int(device.sys_number), product, int(device.properties[READY]))
