# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Tools of the host that hang, flood, talk nonsense or are not there: the library goes on, end to end."""

from __future__ import annotations

import os
import threading
import time
from collections.abc import Callable, Iterator
from pathlib import Path

import pytest
import usbdevlib
from usbdev import Format, devices, profiles

ReplaceTool = Callable[[str, str], None]

ONE_RATE = """\
\tIndex       : 0
\tPixel Format: 'MJPG'
\t\tSize: Discrete 640x480
\t\t\tInterval: Discrete 0.033s (30.000 fps)
"""


@pytest.fixture
def replace_tool() -> Iterator[ReplaceTool]:
    """Puts a shell script in the place of a tool; an empty one takes the tool away."""
    replaced: list[tuple[Path, Path]] = []

    def replace(path: str, script: str) -> None:
        tool = Path(path)
        replaced.append((tool, tool.readlink()))
        tool.unlink()
        if script:
            tool.write_text(f"#!/bin/sh\n{script}\n")
            tool.chmod(0o755)

    yield replace
    for tool, target in replaced:
        tool.unlink(missing_ok=True)
        tool.symlink_to(target)


@pytest.fixture
def short_lived_shell() -> Iterator[None]:
    """A shell that becomes its command, as small hosts have it. One that stays names the query in the process list
    too, and is what is killed then."""
    shell = Path("/usr/bin/sh")
    target = shell.readlink()
    link_to(shell, Path("/usr/host-bin/bash"))
    yield
    link_to(shell, target)


def link_to(link: Path, target: Path) -> None:
    link.unlink()
    link.symlink_to(target)


@pytest.fixture
def fifo(tmp_path: Path) -> Callable[[str], Path]:
    def make(name: str) -> Path:
        os.mkfifo(tmp_path / name)
        return tmp_path / name

    return make


def wait_until(condition: Callable[[], bool]) -> None:
    deadline = time.monotonic() + 20
    while not condition():
        assert time.monotonic() < deadline, "waited in vain"
        time.sleep(0.002)


def is_running(process: int) -> bool:
    return Path(f"/proc/{process}").exists()


class HangingQuery:
    """A v4l2-ctl that lists one rate, waits for leave, lists the rate again and never ends."""

    def __init__(self, replace_tool: ReplaceTool, fifo: Callable[[str], Path], manners: str = "") -> None:
        self._go, never = fifo("go"), fifo("never")
        self._asked = self._go.with_name("asked")
        listing = self._go.with_name("listing")
        listing.write_text(ONE_RATE)
        replace_tool(
            "/usr/bin/v4l2-ctl",
            f"{manners}\ncat {listing}\necho $$ >{self._asked}.new; mv {self._asked}.new {self._asked}\n"
            f"read word <{self._go}\ntail -n 1 {listing}\nread word <{never}",
        )

    def process(self) -> int:
        """Waits until it has been asked."""
        wait_until(self._asked.exists)
        return int(self._asked.read_text())

    def let_go(self) -> None:
        self._go.write_text("\n")


class Asking:
    """The formats of node 0, asked for on a thread of its own."""

    def __init__(self) -> None:
        self.formats: tuple[Format, ...] = ()
        self._thread = threading.Thread(target=self._ask, daemon=True)
        self._thread.start()

    def _ask(self) -> None:
        self.formats, _ = devices.camera_formats(0)

    def join(self) -> None:
        self._thread.join(20)


@pytest.mark.usefixtures("short_lived_shell")
def test_a_format_query_that_never_ends_after_a_repeated_rate_is_killed(host, replace_tool, fifo):
    host.hardware.plug("usb2-camera", "3-1")
    query = HangingQuery(replace_tool, fifo)
    asking = Asking()
    process = query.process()
    query.let_go()
    asking.join()
    assert len(asking.formats) == 1 and not is_running(process)
    assert [len(size.fps) for size in asking.formats[0].sizes] == [1]


@pytest.mark.usefixtures("short_lived_shell")
def test_the_query_of_a_stubborn_camera_is_killed_the_hard_way(host, replace_tool, fifo):
    """Its vendor and product are known to leave queries that ignore a termination request."""
    host.hardware.plug("usb2-camera", "3-1")
    walk = Path("/run/usbdev-sim/nodes/video0/walk")
    walk.write_text(walk.read_text().replace('"0c45"', '"0603"').replace('"6366"', '"8612"'))
    query = HangingQuery(replace_tool, fifo, manners="trap '' TERM")
    asking = Asking()
    process = query.process()
    query.let_go()
    asking.join()
    assert len(asking.formats) == 1 and not is_running(process)


@pytest.mark.usefixtures("short_lived_shell")
def test_while_a_camera_does_not_answer_others_are_read_and_assigned(host, replace_tool, fifo):
    host.plug("usb2-camera", "1-1")
    query = HangingQuery(replace_tool, fifo)
    plugging = threading.Thread(daemon=True, target=host.plug, args=("pc-camera", "3-1"))
    plugging.start()
    query.process()
    assert usbdevlib.assign("1-1", 0) == 0
    assert profiles.stream_info(0).vnode == 0
    assert usbdevlib.clear(0) == 0
    assert plugging.is_alive()
    query.let_go()
    plugging.join(20)
    assert [(it.slot, it.exists, it.parked_behind) for it in host.channels()[:2]] == [("1-1", 1, -1), ("3-1", 1, -1)]


NONSENSE = "head -c 20000 /usr/host-bin/bash"
ENDLESS_LINE = "exec cat /dev/zero"
ENDLESS_LINES = "exec yes 'Index : Size: Discrete 1x1 Pixel Format'"
MANY_LINES = "yes | head -n 100000"
SILENT = "exit 0"
MISSING = ""


@pytest.mark.parametrize("manner", [NONSENSE, ENDLESS_LINE, ENDLESS_LINES, SILENT, MISSING])
def test_a_camera_whose_formats_cannot_be_listed_is_not_supported(host, replace_tool, manner):
    replace_tool("/usr/bin/v4l2-ctl", manner)
    host.plug("usb2-camera", "3-1")
    channel = host.channels()[0]
    assert (channel.slot, channel.exists, channel.parked_behind) == ("3-1", 1, 999)


@pytest.mark.parametrize("manner", [NONSENSE, MANY_LINES, MISSING])
@pytest.mark.parametrize("tool", ["/usr/sbin/udevadm", "/usr/sbin/readcfg", "/usr/bin/gpuinfo_app", "/usr/bin/ps"])
def test_a_camera_is_plugged_assigned_and_found_again_whatever_else_fails(host, replace_tool, tool, manner):
    replace_tool(tool, manner)
    host.plug("usb2-camera", "3-1")
    assert usbdevlib.assign("3-1", 0) == 0
    host.reboot("plug 8mp-camera 1-1")
    channel = host.channels()[0]
    assert (channel.slot, channel.exists, channel.profile, channel.vnode) == ("3-1", 1, 0, host.node("3-1"))
    assert channel.parked_behind == -1
    assert host.links()[channel.link].endswith("/hls/channel1")


@pytest.mark.parametrize(
    ("tool", "manner"), [("/usr/bin/ls", NONSENSE), ("/usr/bin/ls", MISSING), ("/usr/bin/awk", MISSING)]
)
def test_a_start_that_cannot_list_the_devices_keeps_the_profiles(host, replace_tool, tool, manner):
    host.plug("usb2-camera", "3-1")
    usbdevlib.assign("3-1", 0)
    replace_tool(tool, manner)
    usbdevlib.start_up()
    assert [it.profile for it in host.channels()[:1]] == [0]
