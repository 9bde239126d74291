# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The guest: a computer with three kinds of USB controllers that runs Debian's kernel in an emulator."""

from __future__ import annotations

import socket
import subprocess
import tempfile
from pathlib import Path

from ground.channel import Channel, Machine
from ground.qmp import Monitor
from ground.root import GuestRoot

BOOT_PATIENCE = 900
# The controllers, each with its place, so that its buses can be found. The pair is an EHCI controller with companions, of
# which the first takes the slower devices in its ports 1 and 2. The last is no PCI device; its driver comes with its first camera.
CONTROLLERS = {
    "xhci": "0000:00:10.0",
    "ehci": "0000:00:11.0",
    "uhci": "0000:00:12.0",
    "pair": "0000:00:13.7",
    "companion": "0000:00:13.0",
    "platform": "vhci_hcd.0",
}
USB = """
  -device qemu-xhci,id=xhci,addr=10,p2=8,p3=8 -device usb-ehci,id=ehci,addr=11 -device piix3-usb-uhci,id=uhci,addr=12
  -device ich9-usb-ehci1,id=pair,addr=13.7,multifunction=on
  -device ich9-usb-uhci1,masterbus=pair.0,firstport=0,addr=13.0,multifunction=on
  -device ich9-usb-uhci2,masterbus=pair.0,firstport=2,addr=13.1
  -device ich9-usb-uhci3,masterbus=pair.0,firstport=4,addr=13.2
""".split()
ONE_CONTROLLER = USB[:2]
# An emulator that waits for a processor fails the check of the timer, after which the kernel gives up.
KERNEL_OPTIONS = ("console=ttyS0 quiet panic=-1 mitigations=off audit=0 no_timer_check systemd.show_status=0 "
                  "modprobe.blacklist=kvm_amd,powernow_k8,psmouse")


def shared(name: str, folder: Path, readonly: str) -> list[str]:
    """Returns the options that show the guest a folder of this machine."""
    return ["-fsdev", f"local,id={name},path={folder},security_model=none,readonly={readonly},multidevs=remap",
            "-device", f"virtio-9p-pci,fsdev={name},mount_tag={name}"]  # fmt: skip


class Guest(Machine):
    """`state` is a folder for what the packages store, which outlives the guest."""

    def __init__(self, root: GuestRoot, state: Path | None = None, usb: list[str] = USB) -> None:
        self._folder = tempfile.TemporaryDirectory(prefix="guest-")
        self.folder = Path(self._folder.name)
        self._emulator = subprocess.Popen(self._command(root, state, usb), stdin=subprocess.DEVNULL)
        self.monitor = Monitor(self._socket("monitor"))

    def boot(self) -> None:
        """What is plugged in before is there when the kernel starts."""
        try:
            self._channel = Channel(self._connected("channel"))
            self._channel.ready.result(timeout=BOOT_PATIENCE)
            self.run("udevadm", "settle", "--timeout=240")  # the controllers' drivers are loaded
            self.look_at_buses()
        except BaseException as problem:
            self.stop()
            raise RuntimeError(self.console()) from problem

    def look_at_buses(self) -> None:
        """Reads place, bus and speed of all root hubs, as the kernel numbered them."""
        lines = self.shell("grep -H . /sys/bus/pci/devices/*/usb*/speed /sys/devices/platform/*/usb*/speed || true").splitlines()
        names = (line.split("/")[-3:] for line in lines)
        self._speeds = [(at, bus.removeprefix("usb"), int(speed.partition(":")[2])) for at, bus, speed in names]

    def shut_down(self) -> None:
        """Lets the guest end in order."""
        self.start("systemctl", "poweroff")
        self._emulator.wait(timeout=BOOT_PATIENCE)

    def stop(self) -> None:
        self._emulator.terminate()
        self._emulator.wait()

    def console(self) -> str:
        console = self.folder / "console"
        return console.read_text(errors="replace") if console.exists() else ""

    def bus(self, controller: str, fast: bool = False) -> str:
        """Returns the number of the controller's bus for superspeed, or for all else."""
        place = CONTROLLERS[controller]
        return next(bus for at, bus, speed in self._speeds if at == place and (speed >= 5000) == fast)

    def controllers(self) -> dict[str, str]:
        """Returns the controller of each bus that is not only for superspeed."""
        names = {place: name for name, place in CONTROLLERS.items()}
        return {bus: names[at] for at, bus, speed in self._speeds if at in names and speed < 5000}

    # With the vector instructions of newer processors, which this emulator gets wrong, udev does not start.
    def _command(self, root: GuestRoot, state: Path | None, usb: list[str]) -> list[str | Path]:
        ends = [word for name in ("monitor", "channel") for word in (
            "-chardev", f"socket,id={name},path={self.folder / name},server=on,wait=off")]
        return [
            "qemu-system-x86_64", "-accel", "tcg", "-machine", "pc", "-cpu", "qemu64", "-smp", "2", "-m", "1024",
            "-nodefaults", "-display", "none", "-no-reboot", "-kernel", root.kernel, "-initrd", root.first_root,
            "-append", KERNEL_OPTIONS, "-serial", f"file:{self.folder / 'console'}", *ends, "-mon", "monitor,mode=control",
            "-device", "virtio-serial", "-device", "virtserialport,chardev=channel,name=agent",
            *shared("root", root.folder, "on"), *(shared("state", state, "off") if state else ()), *usb,
        ]  # fmt: skip

    def _connected(self, name: str) -> socket.socket:
        end = socket.socket(socket.AF_UNIX)
        end.connect(str(self._socket(name)))
        return end

    def _socket(self, name: str) -> Path:
        path = self.folder / name
        while not path.exists():
            assert self._emulator.poll() is None, "the emulator did not start"
            try:
                self._emulator.wait(timeout=0.05)
            except subprocess.TimeoutExpired:
                continue
        return path
