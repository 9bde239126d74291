# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The two grounds: the sandbox with simulated cameras, and the guest with the installed packages on a real kernel."""

from __future__ import annotations

from collections.abc import Mapping

from ground.ground import ENCODER, LIGHT_ENCODER, Ground, Port
from ground.guest import Guest
from ground.passed_on import PassedOn
from ground.plugging import Hub, Plugged
from ground.sandbox import REPOSITORY, Sandbox

# The buses of the simulated machines, by their topologies.
BUSES = {
    "three-controllers": {"1": "xhci", "2": "xhci"},
    "ehci-uhci": {"1": "pair", "3": "companion"},
    "platform": {"7": "platform", "8": "platform"},
}
DRIVER = "/sys/bus/usb/drivers/uvcvideo"
TOOL = "/usr/bin/v4l2-ctl"
SIMULATED_TOOL = REPOSITORY / "host/sim/bin/v4l2-ctl-front"
STATE = "/var/lib/usbdev/config"


def _is_on(port: Port, hub: Port) -> bool:
    return port.controller == hub.controller and port.number.startswith(f"{hub.number}.")


class SimulatedGround(Ground):
    """A host of its own for each scenario."""

    def __init__(self, topology: str = "three-controllers") -> None:
        self._buses = BUSES[topology]
        self.machine: Sandbox = Sandbox(topology)
        self.machine.wait("grep -q ^event /var/log/vl/manager-service.log")  # about the synchronisation
        self._before = len(self.received())

    def end(self) -> None:
        self.machine.stop()

    def plug(self, camera: str, port: Port) -> None:
        self.machine.change("plug", camera, self.slot(port))

    def unplug(self, port: Port) -> None:
        self.machine.change("unplug", self.slot(port))

    def rebind(self, port: Port) -> None:
        status = self.machine.run("sim", "status").splitlines()
        camera = next(line.split()[1] for line in status if line.split()[0] == self.slot(port))
        self.unplug(port)
        self.machine.wait(f"! usbdevctl channels | grep -q ' plugged *{self.slot(port)} '")
        self.plug(camera, port)

    def stop_manager(self) -> None:
        self.machine.stop_manager()

    def start_manager(self) -> None:
        self.machine.start_manager()

    def replace_tool(self, text: str) -> None:
        """The front ends a tool after ten seconds, but not the simulator, whose answers are files."""
        tool = "/usr/bin/v4l2-ctl"
        self.machine.shell(f"cat >/tmp/held <<'END'\n{text.format(tool=SIMULATED_TOOL)}END\nchmod +x /tmp/held; rm {tool}; "
                           f"printf '#!/bin/sh\\nexec timeout 10 /tmp/held \"$@\"\\n' >{tool}; chmod +x {tool}")  # fmt: skip

    def use_light_encoder(self) -> None:
        self.machine.shell(f"rm {ENCODER}; cat >{ENCODER} <<'END'\n{LIGHT_ENCODER}END\nchmod +x {ENCODER}")

    def received(self) -> list[str]:
        return self.machine.shell("grep ^event /var/log/vl/manager-service.log || true").splitlines()

    def controllers(self) -> Mapping[str, str]:
        return self._buses


class RealGround(Ground):
    """A guest."""

    locks = "/run/usbdev"  # which the services see at /run/lock

    def __init__(self, guest: Guest) -> None:
        self.machine: Guest = guest
        self._cameras: dict[Port, Plugged | PassedOn] = {}
        self._hubs: dict[Port, Hub] = {}
        self._replaced: list[str] = []

    def reset(self) -> RealGround:
        """Begins with the state of a new installation, in a guest that other scenarios have used."""
        self.machine.wait("systemctl is-active --quiet usbdev-devices usbdev-streams")
        self.shows({})
        template = "/usr/share/usbdev-host/sandbox/hosts/common/etc/config/usbdev.conf"
        self.machine.shell(f"for it in usbdev vl_pfstate; do cat {template} >{STATE}/$it.conf; done; "
                           "rm -f /var/lib/usbdev/log/event.db; systemd-tmpfiles --create usbdev-host.conf")  # fmt: skip
        self._before = len(self.received())
        return self

    def abandon(self) -> None:
        """Ends the guest and its cameras."""
        self.machine.stop()
        for camera in self._cameras.values():
            camera.end()

    def end(self) -> None:
        """Leaves nothing plugged in."""
        for port in [*self._hubs, *self._cameras]:
            if port in self._hubs or port in self._cameras:
                self.unplug(port)
        if TOOL in self._replaced:
            self.stop_manager()
        for program in self._replaced:
            self.machine.run("mv", f"{program}.machine", program)
        self.start_manager()

    def plug(self, camera: str, port: Port, *options: str) -> None:
        """A hub of the emulator is for slow devices."""
        if port.controller == "platform":
            self._cameras[port] = PassedOn(self.machine, camera, port)
            return
        place, _, on_hub = port.number.partition(".")
        hub = Port(port.controller, place)
        if on_hub and hub not in self._hubs:
            self._hubs[hub] = Hub(self.machine, hub)
        slow = on_hub or port.controller in ("uhci", "companion")
        self._cameras[port] = Plugged(self.machine, camera, port, *options, **({"speed": 12} if slow else {}))

    def unplug(self, port: Port) -> None:
        if port in self._hubs:
            self._hubs.pop(port).unplug()
        gone = [it for it in self._cameras if it == port or _is_on(it, port)]
        cameras = [self._cameras.pop(it) for it in gone]
        for camera in cameras:
            camera.unplug()
        for camera in cameras:
            camera.wait_until_gone()

    def pull(self, port: Port) -> None:
        self._cameras.pop(port).unplug()

    def rebind(self, port: Port) -> None:
        interface = f"{self.slot(port)}:1.0"
        self.machine.shell(f"echo {interface} >{DRIVER}/unbind")
        self.machine.wait(f"! usbdevctl channels | grep -q ' plugged *{self.slot(port)} '")
        self.machine.shell(f"echo {interface} >{DRIVER}/bind")

    def stop_manager(self) -> None:
        self.machine.run("systemctl", "stop", "usbdev-devices")

    def start_manager(self) -> None:
        self.machine.run("systemctl", "start", "usbdev-devices")

    def replace_tool(self, text: str) -> None:
        self._replace(TOOL, text.format(tool=f"{TOOL}.machine"))

    def use_light_encoder(self) -> None:
        self._replace(ENCODER, LIGHT_ENCODER)

    def _replace(self, program: str, text: str) -> None:
        self._replaced.append(program)
        self.machine.shell(f"mv {program} {program}.machine; cat >{program} <<'END'\n{text}END\nchmod +x {program}")

    def received(self) -> list[str]:
        return self.machine.shell("journalctl --unit=usbdev-streams --output=cat | grep ^event || true").splitlines()

    def controllers(self) -> Mapping[str, str]:
        return self.machine.controllers()
