# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The files of a plugged camera: sysfs, the device nodes and the prepared answers of the tools."""

from __future__ import annotations

import os
import shutil
from pathlib import Path

from simlib import bandwidth
from simlib.catalogue import SoundCard
from simlib.machine import Machine, PluggedCamera
from simlib.topology import Topology
from simlib.walk import VideoNode, render_walk

VIDEO_DRIVER = "uvcvideo"
SOUND_DRIVER = "snd-usb-audio"
VIDEO_INTERFACES = 2
SOUND_INTERFACES = 2


class Hardware:
    """The file tree of the simulated host, below its root."""

    def __init__(self, root: Path) -> None:
        self._root = root
        self._sys = root / "sys"
        self._sim = root / "run/usbdev-sim"

    def add_buses(self, topology: Topology) -> None:
        """Creates what is there without a camera."""
        for bus in topology.buses.values():
            root_hub = self._sys / bus.devpath.lstrip("/")
            root_hub.mkdir(parents=True)
            for name, value in (("speed", bus.speed), ("maxchild", bus.ports)):
                (root_hub / name).write_text(f"{value}\n", encoding="ascii")
            _link(self._sys / "bus/usb/devices" / root_hub.name, root_hub)

    def appear(self, machine: Machine, plugged: PluggedCamera) -> None:
        """Creates all files of a camera, the device nodes last, so that all others exist when a node appears."""
        for function, nodes in plugged.functions():
            first = function.first_interface
            self._bind(VIDEO_DRIVER, machine, plugged, range(first, first + VIDEO_INTERFACES))
            for index, node in enumerate(nodes):
                self._add_video_node(machine, plugged, VideoNode(function, index, node))
        if plugged.camera.sound is not None:
            self._add_sound_card(machine, plugged, plugged.camera.sound)
        self._add_bandwidth(machine, plugged)
        for node in plugged.nodes:
            (self._root / f"dev/video{node}").touch()

    def vanish(self, machine: Machine, plugged: PluggedCamera) -> None:
        """Removes what appear() created; the drivers stay loaded."""
        for node in plugged.nodes:
            (self._root / f"dev/video{node}").unlink(missing_ok=True)
            (self._sys / f"class/video4linux/video{node}").unlink(missing_ok=True)
            shutil.rmtree(self._sim / f"nodes/video{node}", ignore_errors=True)
        if plugged.card is not None:
            (self._sys / f"class/sound/card{plugged.card}").unlink(missing_ok=True)
            shutil.rmtree(self._sim / f"cards/card{plugged.card}", ignore_errors=True)
        for driver in (VIDEO_DRIVER, SOUND_DRIVER):
            for link in (self._sys / "bus/usb/drivers" / driver).glob(f"{plugged.port.slot}:*"):
                link.unlink()
        (self._sys / "bus/usb/devices" / plugged.port.slot).unlink(missing_ok=True)
        shutil.rmtree(self._device(machine, plugged), ignore_errors=True)

    def unload_drivers(self) -> None:
        """Removes the drivers' folders, as a start does until there is a camera."""
        for driver in (VIDEO_DRIVER, SOUND_DRIVER):
            shutil.rmtree(self._sys / "bus/usb/drivers" / driver, ignore_errors=True)
            shutil.rmtree(self._module(driver), ignore_errors=True)

    def _module(self, driver: str) -> Path:
        return self._sys / "module" / driver.replace("-", "_")

    def _device(self, machine: Machine, plugged: PluggedCamera) -> Path:
        return self._sys / machine.topology.devpath(plugged.port).lstrip("/")

    def _bind(self, driver: str, machine: Machine, plugged: PluggedCamera, numbers: range) -> None:
        folder = self._load_driver(driver)
        for number in numbers:
            interface = self._device(machine, plugged) / f"{plugged.port.slot}:1.{number}"
            interface.mkdir(parents=True)
            _link(folder / interface.name, interface)

    def _load_driver(self, driver: str) -> Path:
        folder = self._sys / "bus/usb/drivers" / driver
        if not folder.exists():
            folder.mkdir(parents=True)
            for name in ("bind", "new_id", "remove_id", "uevent", "unbind"):
                (folder / name).touch()
            self._module(driver).mkdir(parents=True, exist_ok=True)
            _link(folder / "module", self._module(driver))
        return folder

    def _add_video_node(self, machine: Machine, plugged: PluggedCamera, node: VideoNode) -> None:
        name = f"video{node.number}"
        interface = machine.interface_devpath(plugged, node.function)
        device = self._sys / interface.lstrip("/") / "video4linux" / name
        device.mkdir(parents=True)
        (device / "name").write_text(f"{plugged.camera.name_of(node.function)}\n", encoding="utf-8")
        (device / "index").write_text(f"{node.index}\n", encoding="ascii")
        _link(self._sys / "class/video4linux" / name, device)
        answers = self._sim / "nodes" / name
        answers.mkdir(parents=True)
        (answers / "walk").write_text(render_walk(machine, plugged, node), encoding="utf-8")
        (answers / "formats").write_bytes(plugged.camera.listing(node.function.nodes[node.index]))

    def _add_bandwidth(self, machine: Machine, plugged: PluggedCamera) -> None:
        device, port = self._device(machine, plugged), plugged.port
        streaming = [function.first_interface + 1 for function, _ in plugged.functions()]
        bandwidth.add_files(device, streaming, machine.speed_at(port, plugged.camera))
        _link(self._sys / "bus/usb/devices" / port.slot, device)
        for function, nodes in plugged.functions():
            setting = device / f"{port.slot}:1.{function.first_interface + 1}" / bandwidth.SETTING
            for node in nodes:
                _link(self._sim / f"nodes/video{node}/setting", setting)

    def _add_sound_card(self, machine: Machine, plugged: PluggedCamera, sound: SoundCard) -> None:
        first = sound.first_interface
        self._bind(SOUND_DRIVER, machine, plugged, range(first, first + SOUND_INTERFACES))
        name = f"card{plugged.card}"
        device = self._device(machine, plugged) / f"{plugged.port.slot}:1.{first}/sound" / name
        device.mkdir(parents=True)
        _link(self._sys / "class/sound" / name, device)
        facts = self._sim / "cards" / name
        facts.mkdir(parents=True)
        for key in ("name", "entry_count", "channel_mode", "channel_count"):
            (facts / key).write_text(f"{getattr(sound, key)}\n", encoding="utf-8")
        (facts / "volume").write_text("0\n", encoding="ascii")


def _link(link: Path, target: Path) -> None:
    link.parent.mkdir(parents=True, exist_ok=True)
    link.symlink_to(os.path.relpath(target, link.parent))
