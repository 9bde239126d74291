# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How much slower the guest's emulated processor is than this machine's: the programs that run between a camera's node and its
first picture, all from the guest's root, in the view of the services, there and here."""

from __future__ import annotations

import json
import subprocess
from collections.abc import Iterator

from ground.guest import Guest
from ground.root import GuestRoot

# What the library runs when a known camera is back. No camera is asked, because there is none here.
QUESTIONS = """
/bin/cat /proc/cpuinfo | /bin/grep vendor_id
/sbin/readcfg Halvane Install_Path -c -d none -f /etc/config/bndl.conf
/sbin/readcfg Halvane Enable -c -d none -f /etc/config/bndl.conf
/sbin/readcfg System Model -f /etc/config/Tundrel.conf
/usr/bin/v4l2-ctl -d /dev/null --list-formats-ext
/bin/ps | /bin/grep v4l2-ctl | /bin/grep /dev/video0 | /bin/grep -v grep | /bin/awk '{print $1}'
/sbin/udevadm info --name=/dev/null --attribute-walk
""".strip().splitlines()
PROGRAMS = {
    "the library's questions to a camera that is back": QUESTIONS,
    "of which v4l2-ctl with its front": QUESTIONS[4:5],
    "of which the list of processes": QUESTIONS[5:6],
    "loading Python": ["exec /usr/bin/python3 -IBc pass"],
    "loading ffmpeg": ["exec /usr/bin/ffmpeg -version"],
}
# Prints the least of some runs, because other programs use the processor too.
TIMING = """
import json, os, subprocess, sys, time
def seconds(commands):
    began = time.monotonic()
    for command in commands:
        subprocess.run(["sh", "-c", command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return time.monotonic() - began
print(json.dumps({name: min(seconds(commands) for _ in range(7)) for name, commands in json.loads(sys.argv[1]).items()}))
"""
IN_THE_VIEW = ("/usr/share/usbdev-host/view/enter", "/usr/bin/python3", "-IBc", TIMING, json.dumps(PROGRAMS))
ENTER = """
cd "$0" && mount --bind . . && cd . && cd "$0" && mount -t proc proc proc && mount --rbind /dev dev
for it in run tmp var/lib/usbdev; do mount -t tmpfs tmpfs "$it" || exit; done
mkdir run/usbdev var/lib/usbdev/config var/lib/usbdev/apps var/lib/usbdev/log
pivot_root . mnt && umount -l /mnt && exec "$@"
"""


def slowness(guest: Guest, root: GuestRoot) -> Iterator[tuple[str, str, str, str]]:
    there = json.loads(guest.run(*IN_THE_VIEW))
    here = json.loads(subprocess.run(["unshare", "--mount", "--pid", "--fork", "sh", "-c", ENTER, root.folder, *IN_THE_VIEW],
                                     check=True, stdout=subprocess.PIPE, text=True).stdout)  # fmt: skip
    for name in PROGRAMS:
        yield name, f"{1000 * here[name]:.0f} ms", f"{there[name]:.2f} s", f"{there[name] / here[name]:.0f}"
