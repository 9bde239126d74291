# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the services cost in the guest, and how long they take. All times are the guest's own, since its start."""

from __future__ import annotations

import os
import time
from collections.abc import Iterator
from statistics import median

from ground.guest import Guest
from ground.plugging import Plugged

from comparison.programs import Services
from comparison.situations import A, FIRST

TICKS = os.sysconf("SC_CLK_TCK")
REST = 60
RUNS = 3
PICTURE = "/var/lib/usbdev/apps/Velmora2/hls/channel1/picture.jpg"


class Process:
    """A service's own process, and its counters."""

    def __init__(self, guest: Guest, unit: str) -> None:
        self._guest = guest
        self._folder = f"/proc/{guest.run('systemctl', 'show', '--property=MainPID', '--value', unit).strip()}"

    def processor(self) -> tuple[float, float]:
        """Returns the seconds of a processor of the process, and of the programs that it ran."""
        fields = self._guest.run("cat", f"{self._folder}/stat").rpartition(")")[2].split()
        own, others = (sum(map(int, fields[at : at + 2])) / TICKS for at in (11, 13))
        return own, others

    def status(self) -> dict[str, int]:
        words = (line.split() for line in self._guest.run("cat", f"{self._folder}/status").splitlines())
        return {it[0].rstrip(":"): int(it[1]) for it in words if len(it) > 1 and it[1].isdigit()}


def printed(guest: Guest, unit: str, text: str) -> float:
    """Waits for the newest line with the text that the unit has printed, and returns when that was."""
    journal = f"journalctl --unit={unit} --output=short-monotonic --grep='{text}' --lines=1 --since=-1h"
    line = guest.wait(f"{journal} | grep '^\\['")
    return float(line.partition("[")[2].partition("]")[0])


def plugged_in(guest: Guest, slot: str) -> float:
    line = guest.wait(f"dmesg | grep 'usb {slot}: new ' | tail -n 1 | grep .")
    return float(line.partition("[")[2].partition("]")[0])


def ready(guest: Guest, node: str) -> float:
    facts = guest.run("udevadm", "info", "--query=property", node)
    return int(facts.partition("USEC_INITIALIZED=")[2].partition("\n")[0]) / 1e6


def changed(guest: Guest, path: str, after: float) -> float:
    """Waits until a file is newer than a time, and returns when it was written."""
    since_start = f"echo $(stat -c %.Y {path}) $(date +%s.%N) $(cut -d ' ' -f 1 /proc/uptime) | awk '{{ print $1 - $2 + $3 }}'"
    return float(guest.wait(f"test -e {path} && at=$({since_start}) && echo $at | awk '{{ exit !($1 > {after}) }}' && echo $at"))


def again(guest: Guest, devices: Process) -> tuple[float, ...]:
    """Plugs in a camera whose profile streams, and takes it out when it has shown a picture."""
    before = devices.processor()
    camera = Plugged(guest, FIRST, A)
    try:
        node = camera.node()
        began = plugged_in(guest, camera.slot)
        picture = changed(guest, PICTURE, began)
        channel = printed(guest, "usbdev-devices", "plugged .* channel")
        stream = printed(guest, "usbdev-streams", "profile 0 streams ")
        own, tools = (after - earlier for after, earlier in zip(devices.processor(), before, strict=True))
        return channel - began, ready(guest, node) - began, tools, own, stream - channel, stream - ready(guest, node), picture - began
    finally:
        camera.unplug()
        camera.wait_until_gone()
        guest.wait(f"test ! -e {PICTURE}")


TIMES = ("from plugging in to the channel", "of which until udev is ready with the node", "of which the tools, of a processor",
         "of which the device manager itself, of a processor", "from the channel to the start of the encoder",
         "from udev's node to the start of the encoder", "from plugging in to the first picture")  # fmt: skip


def figures(guest: Guest) -> Iterator[tuple[str, str]]:
    services, devices = Services(guest), Process(guest, "usbdev-devices")
    camera = Plugged(guest, FIRST, A)
    services.set_up([camera.node()])
    services.start()
    guest.wait(f"test -e {PICTURE}")
    camera.unplug()
    camera.wait_until_gone()
    guest.wait(f"test ! -e {PICTURE}")
    for name, seconds in zip(TIMES, zip(*(again(guest, devices) for _ in range(RUNS)), strict=True), strict=True):
        yield name, f"{median(seconds):.2f} s ({min(seconds):.2f} to {max(seconds):.2f})"
    for unit in Services.units:
        yield from at_rest(unit, Process(guest, unit))


def at_rest(unit: str, process: Process) -> Iterator[tuple[str, str]]:
    before, earlier = process.processor(), process.status()
    time.sleep(REST)
    own = process.processor()[0] - before[0]
    status = process.status()
    woken = status["voluntary_ctxt_switches"] - earlier["voluntary_ctxt_switches"]
    yield f"{unit} at rest, over {REST} s", f"{woken} wake-ups, {own:.2f} s of a processor"
    yield f"{unit}, memory", f"{status['VmRSS'] / 1024:.0f} MB resident, of which {status['RssAnon'] / 1024:.0f} MB are its own"
