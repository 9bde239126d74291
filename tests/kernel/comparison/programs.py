# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The programs that are compared, each set up for two cameras as its manual says, and what each shows of them."""

from __future__ import annotations

import json
import subprocess
from abc import ABC, abstractmethod
from collections.abc import Sequence

from ground.channel import PATIENCE
from ground.guest import Guest
from usbcamera.pictures import recognise

WIDTH, HEIGHT, RATE = 160, 120, 10  # which the emulator can encode, and both cameras have
DECODE = "ffmpeg -nostdin -v error -i - -frames:v 1 -f rawvideo -pix_fmt gray -".split()
FAILED = "error|fail|unable|can't|no space|no such"


class Program(ABC):
    """Streams are counted from 0, in the order of the cameras with which the program was set up."""

    name: str
    packages: tuple[str, ...] = ()

    def __init__(self, guest: Guest) -> None:
        self._guest = guest

    @abstractmethod
    def set_up(self, nodes: Sequence[str]) -> None: ...

    @abstractmethod
    def start(self) -> None: ...

    @abstractmethod
    def stop(self) -> None: ...

    @abstractmethod
    def get(self, stream: int) -> str:
        """Returns a line of shell that prints the stream's newest picture."""

    @abstractmethod
    def log(self) -> str:
        """Returns a line of shell that prints what the program has said."""

    def seen(self, stream: int) -> tuple[int, int] | str:
        """Returns number and tag of the camera's picture, or what is there instead."""
        done = self._guest.start("timeout", "10", "sh", "-c", self.get(stream)).result(PATIENCE)
        if done.status != 0 or not done.output:
            return "nothing"
        picture = subprocess.run(DECODE, input=done.output, capture_output=True).stdout
        found = recognise(picture, WIDTH, HEIGHT) if len(picture) == WIDTH * HEIGHT else None
        return found or "a picture of its own"

    def complaint(self) -> str:
        lines = self._guest.shell(f"{self.log()} | grep -iE \"{FAILED}\" | tail -n 1").strip()
        return lines or "nothing"


class Motion(Program):
    name, packages = "motion", ("motion",)

    def set_up(self, nodes: Sequence[str]) -> None:
        cameras = "\n".join(f"camera /etc/motion/camera{it}.conf" for it, _ in enumerate(nodes, 1))
        settings = f"s/^width .*/width {WIDTH}/; s/^height .*/height {HEIGHT}/; s/^framerate .*/framerate {RATE}/; /^camera /d"
        self._guest.shell(f"install -d -o motion /var/log/motion; cd /etc/motion; sed -i '{settings}' motion.conf; "
                          f"echo '{cameras}' >>motion.conf")  # fmt: skip
        for number, node in enumerate(nodes, 1):
            self._guest.shell(f"printf 'camera_id {number}\\nvideo_device {node}\\n' >/etc/motion/camera{number}.conf")

    def start(self) -> None:
        self._guest.run("systemctl", "start", "motion")

    def stop(self) -> None:
        self._guest.run("systemctl", "stop", "motion")

    def get(self, stream: int) -> str:
        return f"busybox wget -q -O - http://127.0.0.1:8081/{stream + 1}/current"

    def log(self) -> str:
        return "cat /var/log/motion/motion.log"


class Ustreamer(Program):
    name, packages = "ustreamer", ("ustreamer",)

    def set_up(self, nodes: Sequence[str]) -> None:
        self._nodes = nodes

    def start(self) -> None:
        size = f"--resolution={WIDTH}x{HEIGHT}"
        for number, node in enumerate(self._nodes):
            self._guest.run("systemd-run", f"--unit=ustreamer{number}", "ustreamer", f"--device={node}", size,
                            f"--desired-fps={RATE}", f"--port={8090 + number}")  # fmt: skip

    def stop(self) -> None:
        self._guest.shell("systemctl stop 'ustreamer*'; systemctl reset-failed")

    def get(self, stream: int) -> str:
        return f"busybox wget -q -O - http://127.0.0.1:{8090 + stream}/snapshot"

    def log(self) -> str:
        return "journalctl --unit='ustreamer*' --output=cat"


class Services(Program):
    """The project's own."""

    name = "usbdev"
    units = ("usbdev-devices", "usbdev-streams")

    def set_up(self, nodes: Sequence[str]) -> None:
        """The manager looks at the profiles when it starts; later, it hears of changed settings only."""
        self._guest.run("systemctl", "start", self.units[0])
        for profile, node in enumerate(nodes):
            self._use(profile, int(node.removeprefix("/dev/video")))

    def start(self) -> None:
        self._guest.run("systemctl", "start", *self.units)

    def stop(self) -> None:
        self._guest.run("systemctl", "stop", *self.units)

    def get(self, stream: int) -> str:
        return f"cat /var/lib/usbdev/apps/Velmora2/hls/channel{stream + 1}/picture.jpg"

    def log(self) -> str:
        return "for it in 0 1; do usbdevctl explain pf$it || true; done"

    def complaint(self) -> str:
        return " ".join(self._guest.shell(self.log()).split())

    def _use(self, profile: int, node: int) -> None:
        size = ("--size", f"{WIDTH}x{HEIGHT}", "--fps", str(RATE), "--codec", "mjpeg")
        self._guest.wait(f"usbdevctl channels --json | tr -d ' ' | grep -q '\"video_node\":{node},'")
        rows = json.loads(self._guest.run("usbdevctl", "channels", "--json"))["channels"]
        slot = next(row["slot"] for row in rows if row["video_node"] == node)
        self._guest.run("usbdevctl", "assign", slot, str(profile))
        self._guest.run("usbdevctl", "stream", "set", str(profile), *size)
