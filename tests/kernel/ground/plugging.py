# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Cameras and hubs in the guest's ports."""

from __future__ import annotations

import itertools
import json
import subprocess
from pathlib import Path

from ground.ground import Port
from ground.guest import Guest
from usbcamera.description import described

CAMERA_PROGRAM = Path(__file__).resolve().parent.parent / "usb-camera"
numbers = itertools.count(1)


# The ports of companions are those of their controller.
EMULATED = {"companion": "pair"}


class Plugged:
    """A camera in a port: a program, and the emulator's end of its socket. Changes are to lines of its camera.toml."""

    def __init__(self, guest: Guest, camera: str, port: Port, *options: str, **changes: str | int) -> None:
        self.guest, self.port = guest, port
        lines = [f"{key} = {json.dumps(value, ensure_ascii=False)}" for key, value in changes.items()]
        self.camera = described(camera, lines)
        self.name = f"camera{next(numbers)}"
        self._path = guest.folder / self.name
        command: list[str | Path] = [CAMERA_PROGRAM, "--socket", self._path, "--camera", camera, *options]
        command += [word for line in lines for word in ("--change", line)]
        self._program = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        assert self._program.stdout is not None and self._program.stdout.readline() == "ready\n"
        self._put_in()

    @property
    def slot(self) -> str:
        return f"{self.guest.bus(self.port.controller, fast=self.camera.speed == 5000)}-{self.port.number}"

    def unplug(self) -> None:
        """The emulator also ends its end of the socket, and removes the device's name."""
        if self._program.poll() is None:
            self.guest.monitor.remove_device(self.name)
            self.end()

    def end(self) -> None:
        self._program.terminate()
        self._program.communicate()

    def move(self, port: Port) -> Plugged:
        """Unplugs the camera, and plugs it in elsewhere when the kernel has noticed that."""
        self.guest.monitor.remove_device(self.name)
        self.wait_until_gone()
        self.port = port
        self._put_in()
        return self

    def node(self, interface: int | None = None) -> str:
        """Waits for the node of pictures of a video function, by default the first, and returns its path."""
        number = self.camera.first_video_interface if interface is None else interface
        folder = f"/sys/bus/usb/devices/{self.slot}:1.{number}/video4linux"
        name = self.guest.wait(f"cd {folder} 2>/dev/null && grep -lx 0 */index").split("/")[0]
        self.guest.run("udevadm", "wait", "--timeout=60", "--settle", f"/dev/{name}")
        return f"/dev/{name}"

    def wait_until_there(self) -> None:
        self.guest.wait(f"test -e /sys/bus/usb/devices/{self.slot}/idVendor")

    def wait_until_gone(self) -> None:
        self.guest.wait(f"test ! -e /sys/bus/usb/devices/{self.slot}")

    def _put_in(self) -> None:
        self.guest.monitor.run("chardev-add", id=self.name, backend={"type": "socket", "data": {
            "addr": {"type": "unix", "data": {"path": str(self._path)}}, "server": False}})  # fmt: skip
        self.guest.monitor.run("device_add", driver="usb-redir", id=self.name, chardev=self.name,
                               bus=f"{EMULATED.get(self.port.controller, self.port.controller)}.0", port=self.port.number)


class Hub:
    """A hub for slow devices, as the emulator has them."""

    def __init__(self, guest: Guest, port: Port) -> None:
        self._guest = guest
        self._name = f"hub{next(numbers)}"
        bus = f"{EMULATED.get(port.controller, port.controller)}.0"
        guest.monitor.run("device_add", driver="usb-hub", id=self._name, bus=bus, port=port.number)
        guest.wait(f"test -e /sys/bus/usb/devices/{guest.bus(port.controller)}-{port.number}/maxchild")

    def unplug(self) -> None:
        self._guest.monitor.remove_device(self._name)
