# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hostile tools of the host."""

from __future__ import annotations

from collections.abc import Sequence
from itertools import chain
from typing import Any

from hostile_tool import (
    HANG, OWN, STOP, TELL, WAIT, Tool, dangling, flooding, folder, for_another_machine, never_ending, not_executable,
    nothing, without_interpreter,
)  # fmt: skip
from row import Outcome, Row
from thoroughness import times

FORMAT = b"\tIndex       : 0\n\tPixel Format: 'MJPG'\n"
SIZE = b"\t\tSize: Discrete 640x480\n"
RATE = b"\t\t\tInterval: Discrete 0.033s (30.000 fps)\n"
LISTING = FORMAT + SIZE + RATE
MANY = times(10, 500)
WALK = b"  looking at parent device:\n    KERNELS==\"3-1\"\n"
VENDOR = b"    ATTRS{idVendor}==\"046d\"\n"
PRODUCT = b"    ATTRS{idProduct}==\"0825\"\n"
IDS = WALK + VENDOR + PRODUCT
PATH = b"looking at device '/devices/pci0000:00/0000:03:00.0/usb3/3-1/video4linux/video0':\n"
ATTACK = b"$(touch${IFS}/tmp/hacked)"
OTHER_ATTACK = b";touch${IFS}/tmp/hacked;"

NO_FORMAT = Outcome("no format is kept", 0, "")
LISTED = Outcome("the format is kept", 1, "640x480+1+1")
PART = Outcome("what was printed counts", 1, "640x480+1+0")
NO_IDS = Outcome("no id is found", 0, "")
FOUND_IDS = Outcome("both ids are found", 1, "046d:0825")
NO_PACKAGE = Outcome("the package counts as missing", -1, "")
NO = Outcome("the answer is no", 0)
YES = Outcome("the answer is yes", 1)


def rows(meets: str, tool: str, *stated: tuple[Any, ...]) -> list[Row]:
    """Each row: a name, what the tool does, one act or several in a tuple, the outcome, and other bounds."""
    result = []
    for name, acts, *rest in stated:
        result.append(Row(name, meets, Tool(tool, *(acts if isinstance(acts, tuple) else (acts,))), *rest))
    return result


QUERIES = rows(
    "list formats",
    "v4l2-ctl",
    ("a format query that is missing", nothing, NO_FORMAT),
    ("a format query that may not be executed", not_executable, NO_FORMAT),
    ("a format query that is a folder", folder, NO_FORMAT),
    ("a format query that is a link to nowhere", dangling, NO_FORMAT),
    ("a format query for another processor", for_another_machine, NO_FORMAT),
    ("a format query whose interpreter is missing", without_interpreter, NO_FORMAT),
    ("a format query that prints nothing", "exit 0", NO_FORMAT),
    ("a format query that prints only on standard error", (f"{OWN}/cat /etc/passwd >&2",), NO_FORMAT),
    ("a format query that fails after its listing", (LISTING, "exit 255"), LISTED),
    ("a format query that is killed within its listing", (FORMAT + SIZE, "kill -KILL $$"), PART),
    ("a format query that floods", flooding("Index : Size: Discrete 1x1"), NO_FORMAT),
    ("a format query that never stops", never_ending("Pixel Format: MJPG: Size"), NO_FORMAT),
    ("a format query whose line never ends", f"exec {OWN}/cat /dev/zero", NO_FORMAT),
    ("a format query with a line of ten megabytes", (FORMAT, f"{OWN}/head -c 10000000 /dev/zero | {OWN}/tr '\\0' x",
     b"\n" + SIZE),
     Outcome("the reading ends after 1024 parts of it", 1, "0x0+0+0")),
    ("a format query that prints zero bytes before each line", b"\0".join(LISTING.splitlines(True)), Outcome(
        "lines that begin with one count as empty", 0, "")),
    ("a format query whose last line lacks its line feed", LISTING.rstrip(b"\n"), LISTED),
    ("a format query with the line ends of another system", LISTING.replace(b"\n", b"\r\n"), LISTED),
    ("a format query that prints byte by byte",
     f"printf \"%s\" \"$({OWN}/printf '{LISTING.decode().replace(chr(39), chr(39) + chr(92) + chr(39) * 2)}')\"",
     LISTED),
    ("a format query that prints after a second", (f"{OWN}/sleep 1", LISTING), LISTED),
    ("a format query that closes its output and stays", (LISTING, "exec >&-", WAIT), LISTED.later()),
    ("a format query that hangs before it prints", WAIT, NO_FORMAT.later()),
    ("a format query that hangs after it prints", (LISTING, WAIT), LISTED.later()),
    ("a format query that is stopped", (STOP, LISTING), LISTED.later()),
    ("a format query whose child keeps the output open", (LISTING, f"{WAIT} &"), LISTED.later()),
    ("a format query that repeats a rate and never ends", (LISTING + RATE, HANG), LISTED),
    ("a format query whose text drives a terminal", FORMAT + b"\t\tSize: \x1b[2J\x1b]0;\a 1x1\n" + SIZE + RATE, Outcome(
        "it counts as a size of 1 by 1", 1, "1x1+2+1")),
    ("a format query whose text is not UTF-8", FORMAT + b"\xff\xfe: \xc0\xaf\n" + SIZE + RATE, LISTED),
    ("a format query whose index is beyond any number", LISTING.replace(b": 0", b": 99999999999999999999"), LISTED),
    ("a format query whose size is negative", LISTING.replace(b"640x480", b"-640x-480"), Outcome(
        "the size is kept as printed", 1, "-640x-480+1+1")),
    ("a format query whose size is beyond any number", LISTING.replace(b"640x480", b"9" * 30 + b"x" + b"9" * 30),
     Outcome(
        "the size is kept as a number of 32 bits", 1)),
    ("a format query whose size is words", LISTING.replace(b"640x480", b"widexhigh"), Outcome(
        "the size is kept as nothing", 1, "0x0+1+1")),
    ("a format query whose size has steps", LISTING.replace(b"Discrete 640x480", b"Stepwise 16x16 - 640x480"), Outcome(
        "the first of them is kept", 1, "16x16+1+1")),
    ("a format query whose rate is not a number", LISTING.replace(b"30.000", b"nan"), LISTED),
    ("a format query whose rate is without bound", LISTING.replace(b"30.000", b"1e999"), Outcome(
        "the rate is kept, and one above 60 is reported", 1, "640x480+1+1 over 60")),
    ("a format query whose rate lacks its bracket", LISTING.replace(b"(", b""), PART),
    ("a format query with a thousand formats", FORMAT * 500, Outcome("8 formats are kept", 8)),
    ("a format query with a hundred sizes", FORMAT + b"".join(SIZE.replace(b"640", b"%d" % w) for w in range(100)),
     Outcome(
        "32 sizes are kept", 1, "0x480+32+0")),
    ("a format query with a hundred rates", FORMAT + SIZE + b"".join(RATE.replace(b"30", b"%d" % r) for r in range(1,
     60)),
     Outcome("30 rates are kept", 1, "640x480+1+30")),
    ("a format query that prints its camera twice", FORMAT + SIZE + FORMAT + SIZE, Outcome(
        "both formats are kept", 2, "640x480+1+0 640x480+1+0")),
    ("a format query that prints text for a shell", LISTING.replace(b"30.000", ATTACK), Outcome(
        "the rate is 0, and nothing is run", 1, "640x480+1+1")),
)  # fmt: skip

WALKS = rows(
    "find ids",
    "udevadm",
    ("a device query that is missing", nothing, NO_IDS),
    ("a device query that floods before the device", flooding("ATTRS{idVendor}==\"dead\""), NO_IDS, 30),
    ("a device query that never stops within the device", (WALK, TELL, f"exec {OWN}/yes KERNELS"), NO_IDS.later()),
    ("a device query that hangs", WAIT, NO_IDS.later()),
    ("a device query that is killed after the vendor", (WALK + VENDOR, "kill -SEGV $$"), Outcome(
        "one id is enough, as described", 1, "046d:")),
    ("a device query whose ids are kilobytes long", WALK + VENDOR.replace(b"046d", b"a" * 5000), Outcome(
        "nothing is read from a line without end", 1)),
    ("a device query whose ids are longer than an id", IDS.replace(b"046d", b"a" * 30), Outcome(
        "the ids are cut to 15 characters", 1, "a" * 15)),
    ("a device query that prints the device twice", IDS + IDS.replace(b"046d", b"dead"), FOUND_IDS),
    ("a device query with a zero byte within an id", IDS.replace(b"046d", b"04\0d"), Outcome(
        "the id ends there", 1, "04:0825")),
    ("a device query whose id drives a terminal", IDS.replace(b"046d", b"\x1b[2J"), Outcome(
        "the id is kept as it is", 1, r"\x1b[2J:0825")),
    ("a device query without equals signs", IDS.replace(b"==\"0", b" \"0"), NO_IDS),
) + rows(
    "find a bridge",
    "udevadm",
    ("a device query whose bridge comes after a flood",
     (f"{OWN}/yes 'ATTRS{{class}}==\"0x03\"' | {OWN}/head -c 1000000", b"ATTRS{class}==\"0x060400\"\n"), YES),
    ("a device query that names bridges without end", never_ending("ATTRS{class}==\"0x060400\""), YES),
) + rows(
    "find a bridge's path",
    "udevadm",
    ("a device query whose path is kilobytes long", PATH.replace(b"/0000:03", b"/0000" * 999 + b":03"), Outcome(
        "no path is found", 0, "")),
    ("a device query whose path begins with usb", b"looking at device usb devices\n", Outcome("no path is found", 0,
     "")),
) + rows(
    "judge a hanging query",
    "udevadm",
    ("a device query that prints vendors only", flooding("ATTRS{idVendor}==\"0603\""), NO, 30),
)  # fmt: skip

REGISTRY = rows(
    "find a package",
    "readcfg",
    ("a package registry that is missing", nothing, NO_PACKAGE),
    ("a package registry that prints nothing", "exit 0", NO_PACKAGE),
    ("a package registry that hangs", WAIT, NO_PACKAGE.later()),
    ("a package registry that prints an empty line", b"\n", Outcome("the path is empty", 0, "")),
    ("a package registry that prints a line of megabytes", f"{OWN}/head -c 10000000 /dev/zero | {OWN}/tr '\\0' x",
     Outcome(
        "126 characters are kept", 0, "x" * 126)),
    ("a package registry that never stops", never_ending("/opt"), Outcome("the first line counts", 0, "/opt")),
    ("a package registry that fails with a path", (b"/opt\n", "exit 1"), Outcome("the path counts", 0, "/opt")),
    ("a package registry that says failure and more", b"READCFG_FAILD, but /opt\n", NO_PACKAGE),
) + rows(
    "find a playlist",
    "readcfg",
    ("a package registry whose path is text for a shell", ATTACK + b"\n", NO),
    ("a package registry whose path climbs", b"../../../../etc\n", NO),
) + rows(
    "accept a session",
    "readcfg",
    ("a registry whose TCP port is beyond any number", b"99999999999999999999\n",
     Outcome("the session counts as closed", -1)),
    ("a registry whose TCP port is negative", b"-1\n", Outcome("the session counts as closed", -1)),
)  # fmt: skip

PROBES = rows(
    "find a source",
    "ps",
    ("a process list that is missing", nothing, NO),
    ("a process list that floods", flooding("1 HDpipe 1"), YES),
    ("a process list whose number is a word", b"many HDpipe 1\n", YES),
    ("a process list that hangs", WAIT, NO.later()),
    ("a process list in zero bytes", f"{OWN}/head -c 1000000 /dev/zero", NO),
) + rows(
    "has a GPU",
    "gpuinfo_app",
    ("a GPU tool that is missing", nothing, NO),
    ("a GPU tool that names a GPU after a shell's substitution", ATTACK + b": GPU\n", NO),
    ("a GPU tool that names a GPU after a shell's command", OTHER_ATTACK + b": GPU\n", NO),
    ("a GPU tool that names an option", b"-rf: GPU\n", NO),
    ("a GPU tool whose line lacks a colon", b"gpu0\n", NO),
    ("a GPU tool that forgets the GPU that it named", ("[ \"$1\" = -l ] && echo 'gpu0: a GPU'; exit 3",), NO),
    ("a GPU tool that never stops", never_ending("gpu0: driver_installed=1"), YES),
) + rows(
    "find a panel number",
    "hwinfo_app",
    ("a panel tool that is missing", nothing, Outcome("no number is found", -1)),
    ("a panel tool that prints words", b"rear\n", Outcome("the number is 0", 0)),
    ("a panel tool whose number has a word after it", b"-5 rear\n", Outcome("the number is the one printed", -5)),
) + rows(
    "make a hash",
    "cat",
    ("a source of randomness that is missing", nothing, Outcome("the text stays", 0, "untouched")),
    ("a source of randomness without end", never_ending("aaaa-aaaa"), Outcome("the first line counts", 0, "a" * 8)),
    ("a source of randomness with a line too long", b"b" * 5000 + b"\n", Outcome("32 characters are kept", 0,
     "b" * 32)),
    ("a source of randomness in zero bytes", bytes(40), Outcome("the text is empty", 0, "")),
) + rows(
    "is limited",
    "cat",
    ("a processor file that cannot be read", nothing, NO),
    ("a processor file that floods", flooding("vendor_id : Other"), NO, 30),
    ("a processor file that is not given out", WAIT, NO.later()),
)  # fmt: skip

DRIVERS = rows(
    "read a camera",
    "ls",
    ("a listing that is missing", nothing, Outcome("nothing is found", 0, "")),
    ("a listing whose node does not exist", b"video7\n", Outcome("the call fails", -1)),
    ("a listing whose node is a word", b"video\n", Outcome("node 0 is taken, which is not there", -1)),
) + rows(
    "start up",
    "ls",
    ("a listing of interfaces for a shell", OTHER_ATTACK + b":1.0\n",
     Outcome("they are passed over", 0)),
    ("a listing of many interfaces that are none", f"{OWN}/seq -f '%.0f-1:1.0' {MANY}", Outcome("they are passed over",
     0), 60),
    ("a listing of one interface again and again", f"{OWN}/yes '3-1:1.0' | {OWN}/head -n {MANY}", Outcome(
        "the start-up goes on", 0), 60),
    ("a listing that hangs", WAIT, Outcome("the start-up goes on", 0).later_for_all()),
) + rows(
    "start up",
    "awk",
    ("a host without awk", nothing, Outcome("the start-up goes on", 0)),
) + rows(
    "plug in",
    "grep",
    ("a host without grep", nothing, Outcome("the camera gets its channel", 0)),
) + rows(
    "list cameras",
    "v4l2-ctl",
    ("a format query that hangs within a listing", WAIT, Outcome("the listing is made", 0).later_for_all()),
) + rows(
    "share",
    "ln",
    ("a link tool that is missing", nothing, Outcome("the link is stored, as described", 0)),
    ("a link tool that fails", "exit 255", Outcome("the link is stored, as described", 0)),
    ("a link tool that is killed", "kill -KILL $$", Outcome("the link is stored, as described", 0)),
    ("a link tool that hangs", WAIT, Outcome("the link is stored", 0).later_for_all()),
)  # fmt: skip

TABLE: Sequence[Row] = list(chain(QUERIES, WALKS, REGISTRY, PROBES, DRIVERS))
