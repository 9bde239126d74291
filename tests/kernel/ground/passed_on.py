# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A camera on a controller that is no PCI device, as on boards without PCI: the guest passes a camera on to itself, over its own
network, and the controller of USB/IP has it."""

from __future__ import annotations

from ground.ground import Port
from ground.guest import Guest
from ground.plugging import Plugged

AUTOPROBE = "/sys/bus/usb/drivers_autoprobe"
ON_THE_WAY = "xhci"


class PassedOn:
    """The controller gives out its ports in their order. Until it has the camera, no driver may take that."""

    def __init__(self, guest: Guest, camera: str, port: Port, **changes: str | int) -> None:
        guest.shell("pidof -q usbipd || { modprobe -a usbip-host vhci-hcd && usbipd -D; }")
        guest.look_at_buses()
        guest.shell(f"echo 0 >{AUTOPROBE}")
        self._camera = Plugged(guest, camera, Port(ON_THE_WAY, port.number), **changes)
        self._camera.wait_until_there()
        guest.shell(f"usbip bind -b {self._camera.slot} && echo 1 >{AUTOPROBE} && "
                    f"usbip attach -r 127.0.0.1 -b {self._camera.slot}")  # fmt: skip
        self._gone = f"test ! -e /sys/bus/usb/devices/{guest.bus(port.controller)}-{port.number}"
        self._guest = guest

    def unplug(self) -> None:
        self._camera.unplug()

    def end(self) -> None:
        self._camera.end()

    def wait_until_gone(self) -> None:
        self._camera.wait_until_gone()
        self._guest.wait(self._gone)
