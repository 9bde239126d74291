# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the programs of the host are asked to do, and where a failure may stay unseen, each with its reason."""

from __future__ import annotations

import re
from dataclasses import dataclass

SETUP = """
echo secret | login-users add ann
echo '3-1.1 7' >>/etc/config/usbports.conf
for plugged in 'hd-usb-camera 3-1.1' 'hd-usb-camera 3-1.2' 'hd-pro-webcam 5-1' 'usb2-camera 1-2' 'nameless-webcam 1-3'
do sim plug $plugged; done
for given in '3-1.1 0' '5-1 1' '1-2 2'; do usbdevctl assign $given; done
usbdevctl rename 0 Door
echo secret | usbdevctl share on 0 --password-stdin
usbdevctl export /tmp/shared/all
usbdevctl rename 0 Garden
sim unplug 1-2
# The simulated manager of devices reports sound before the picture, which takes its place.
sed -i '/<usbslot>5-1</,$s/<anode>-1</<anode>0</' /etc/config/usbdev.conf
"""


@dataclass(frozen=True)
class Scenario:
    """A command line, its standard input, and what it prints last before it is asked to end."""

    line: str
    given: bytes = b""
    until: bytes = b""

    @property
    def has_messages(self) -> bool:
        """The host's tools print none, nor does usbdevctl into a line that a shell completes."""
        return self.line.startswith("usbdevctl") and "__words" not in self.line

    @property
    def name(self) -> str:
        return re.sub(r"\W+", "_", self.line).strip("_")


SHOWING = [
    Scenario(line)
    for line in (
        "usbdevctl --version",
        "usbdevctl --help",
        "usbdevctl completion bash",
        "usbdevctl __words cameras",
        "usbdevctl channels",
        "usbdevctl channels --json",
        "usbdevctl devices --json",
        "usbdevctl explain ch1 --json",
        "usbdevctl slot list --json",
        "usbdevctl formats 0 --json",
        "usbdevctl profiles --json",
        "usbdevctl free --json",
        "usbdevctl check ch4 3 --json",
        "usbdevctl stream show 0 --json",
        "usbdevctl caps 0 --json",
        "usbdevctl status --json",
        "usbdevctl share show 0 --json",
        "usbdevctl share check SSID TOKEN --json",
        "usbdevctl log --json",
        "usbdevctl timeouts --json",
        "usbdevctl host info --json",
        "usbdevctl host model --json",
        "usbdevctl host codec --json",
        "usbdevctl host port ch0 --json",
        "usbdevctl package Halvane --json",
        "usbdevctl report --json",
        "usbdevctl watch --count 1 --json",
        "readcfg System Model",
        "readcfg System None -d nothing",
        "gpuinfo_app -l",
        "gpuinfo_app -s Intel HD Graphics",
    )
] + [
    Scenario("usbdevctl log --follow --json", until=b"\n"),
    Scenario("usbdevctl login ann", given=b"secret\n"),
    Scenario("usbdevctl session SID --json"),
]

CHANGING = [
    Scenario(line)
    for line in (
        "usbdevctl slot off 3-1.1 --json",
        "usbdevctl slot on 3-1.1 --json",
        "usbdevctl unplug --type camera --slot 3-1.1 --json",
        "usbdevctl assign ch4 3 --json",
        "usbdevctl clear 0 --json",
        "usbdevctl forget ch3 --json",
        "usbdevctl rename 0 New --json",
        "usbdevctl stream set 0 --fps 22 --json",
        "usbdevctl export /tmp/shared/exported --json",
        "usbdevctl volume 1 --json",
        "usbdevctl sps 0 1 --json",
        "usbdevctl share off 0 --json",
        "usbdevctl share renew 0 --json",
        "usbdevctl timeouts add 0 --json",
        "usbdevctl timeouts reset --json",
    )
] + [Scenario("usbdevctl share on 1 --password-stdin --json", given=b"secret\n")]

MOVING = [
    Scenario(line)
    for line in (
        "usbdevctl plug --type camera --node 0 --slot 3-1.3 --name X --json",
        "usbdevctl sync --json",
        "usbdevctl move 0 ch4 --json",
    )
]

IMPORTING = [Scenario("usbdevctl import /tmp/shared/garden --json")]

GROUPS = {"showing": SHOWING, "changing": CHANGING, "moving": MOVING, "importing": IMPORTING}


@dataclass(frozen=True)
class Unseen:
    """Where a failure may stay unseen: which lines, which failing calls, what is then another one than usual."""

    lines: str
    calls: str
    what: tuple[str, ...]
    reason: str

    def covers(self, line: str, call: str, wrong: str) -> bool:
        matches = re.fullmatch(self.lines, line) and re.fullmatch(self.calls, call)
        return matches is not None and wrong in self.what


QUESTION = "popen|pclose|fgets|fopen|fclose|fread|system|select|memory"
ASKING = r"usbdevctl (explain|formats|caps|check|assign|plug|sync|move|import|status|report|host|package).*"
FOLLOWED = r"usbdevctl (slot|plug|unplug|sync|assign|clear|forget|move|import).*"
UNSEEN = [
    Unseen(
        ASKING,
        QUESTION,
        ("output", "change", "status 3"),
        "the library takes a question to the host without an answer as one answered with nothing",
    ),
    Unseen(FOLLOWED, "(?!posix_spawn|lstat).*", ("change",), "the hand-over that follows a stored change is tried once"),
    Unseen(
        "usbdevctl --version",
        "realpath|memory",
        ("output",),
        "a library whose file is not told of has no known version",
    ),
    Unseen(
        "usbdevctl --help",
        "memory",
        ("output",),
        "the library that reads command lines leaves out what it cannot hold",
    ),
    Unseen(
        "usbdevctl session.*",
        "socket|connect|memory",
        ("status 3",),
        "the library returns the same for a session that is not open and for a service that cannot be asked",
    ),
    Unseen("usbdevctl sync.*", ".*", ("output",), "a start-up shows the channels as they are, stored or not"),
    Unseen("usbdevctl report.*", ".*", ("output",), "a report shows what can be read of a host that is not well"),
    Unseen(
        "usbdevctl (stream set|import).*",
        ".*",
        ("output",),
        "the library does not report a line of the event log that could not be stored",
    ),
    Unseen(
        "usbdevctl (status|share check).*",
        ".*",
        ("output", "status 3"),
        "the library answers no for a stream whose configuration it cannot read",
    ),
]
