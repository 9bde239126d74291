# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""USB devices for udev's own libraries, made with umockdev: its library, which has to be preloaded, shows a folder as /sys
and sends udev's messages."""

from __future__ import annotations

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev  # noqa: E402


class MockedUdev:
    """What udev shows: cameras and cards that appear, get ready and vanish, with the messages about that."""

    def __init__(self) -> None:
        self._testbed = UMockdev.Testbed.new()
        self._time = 0

    def plug(self, slot: str, interfaces: str = ":0e0100:0e0200:010100:", product: str | None = "HD Webcam",
             driver: str = "usb") -> str:  # fmt: skip
        attributes = [] if product is None else ["product", product]
        facts = ["DEVTYPE", "usb_device", "ID_USB_INTERFACES", interfaces, "DRIVER", driver]
        return self._testbed.add_device("usb", slot, None, attributes, facts)

    def appear(self, usb_device: str, name: str, attributes: list[str], facts: list[str], *, ready: bool = True) -> str:
        """Adds a device of a USB device; udev's message about it comes when it is ready."""
        subsystem = "video4linux" if name.startswith("v") else "sound"
        device = self._testbed.add_device(subsystem, name, usb_device, attributes, facts)
        if ready:
            self.get_ready(device)
        return device

    def node(self, usb_device: str, number: int, interface: int = 0, *, name: str = "HD Webcam: HD Webcam",
             capabilities: str = ":capture:", driver: str = "uvcvideo", ready: bool = True) -> str:  # fmt: skip
        facts = ["DEVNAME", f"/dev/video{number}", "ID_USB_DRIVER", driver,
                 "ID_V4L_CAPABILITIES", capabilities, "ID_USB_INTERFACE_NUM", f"{interface:02x}"]  # fmt: skip
        return self.appear(usb_device, f"video{number}", ["name", f"{name}\n"], facts, ready=ready)

    def card(self, usb_device: str, number: int, *, driver: str = "snd-usb-audio", complete: bool = True, ready: bool = True) -> str:
        facts = ["ID_USB_DRIVER", driver, *(["SOUND_INITIALIZED", "1"] if complete else [])]
        return self.appear(usb_device, f"card{number}", ["number", str(number)], facts, ready=ready)

    def get_ready(self, device: str) -> None:
        self._time += 1
        self._testbed.set_property(device, "USEC_INITIALIZED", str(self._time))
        self._testbed.uevent(device, "add")

    def change(self, device: str) -> None:
        self._testbed.uevent(device, "change")

    def remove(self, *devices: str) -> None:
        """Whoever looks between the message and the removal sees the device still; a kernel removes it first."""
        for device in devices:
            self._testbed.uevent(device, "remove")
            self._testbed.remove_device(device)
