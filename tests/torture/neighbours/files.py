# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Hostile configuration files."""

from __future__ import annotations

import fcntl
import os
import re
import socket
import time
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from itertools import chain
from pathlib import Path

from row import Outcome, Row

KEYS = "<exists>1</exists><profile>0</profile><usbslot>3-1</usbslot>"
LARGEST = 1 << 20
PATIENCE = 20


@dataclass(frozen=True)
class FileOutcome(Outcome):
    """The result of reading the channel of profile 0, and its device's name; then that of writing to the file."""

    written: int = -1  # 0: the file can be written, and read again
    code: int | None = None  # of the message about an open that fails


DAMAGED = FileOutcome("reading and writing fail, and the file stays as it is", -1, code=-4)
UNREADABLE = FileOutcome("reading and writing fail, and it stays as it is", -1, code=-3)
NOT_OURS = FileOutcome("no channel is found, and writing fails", -1)
NO_PROFILE = FileOutcome("the profile counts as missing", -1)


def read(name: str, words: str = "it is read and written") -> FileOutcome:
    return FileOutcome(words, 0, name, written=0)


READ = read("Camera")


def channel(keys: str, profile: str = KEYS) -> bytes:
    """A file with one channel."""
    return f"<velmora><ch0>{profile}{keys}</ch0></velmora>\n".encode()


def device(name: str) -> bytes:
    return channel(f"<devname>{name}</devname>")


WHOLE = device("Camera")

Placing = Callable[[Path], None]


def link_to(target: str) -> Placing:
    return lambda path: path.symlink_to(target)


def sparse(size: int) -> Placing:
    def place(path: Path) -> None:
        path.touch()
        os.truncate(path, size)

    return place


def listening(path: Path) -> None:
    with socket.socket(socket.AF_UNIX) as server:
        server.bind(str(path))


def behind_a_link(path: Path) -> None:
    Path("/tmp/neighbour.conf").write_bytes(WHOLE)
    path.symlink_to("/tmp/neighbour.conf")


def rows(*stated: tuple) -> list[Row]:  # type: ignore[type-arg]
    return [Row(name, "read a channel", neighbour, *rest) for name, neighbour, *rest in stated]


CUT = rows(
    ("an empty file", b"", DAMAGED),
    *((f"a file that is cut after {tenths} tenths", WHOLE[: len(WHOLE) * tenths // 10], DAMAGED) for tenths in range(1,
    10)),
    ("a file of zero bytes, as after a power cut", bytes(len(WHOLE)), DAMAGED),
    ("a file of line ends", b"\n" * 99, DAMAGED),
    ("a file with a zero byte within a value", WHOLE.replace(b"Cam", b"Ca\0"), DAMAGED),
    ("a file with a zero byte after its end", WHOLE + b"\0", DAMAGED),
    ("a file that is written twice", WHOLE + WHOLE, DAMAGED),
    ("a file with text before its root", b"set " + WHOLE, DAMAGED),
    ("a program in place of the file", b"\x7fELF\x02\x01\x01" + bytes(99), DAMAGED),
    ("random bytes in place of the file", bytes((i * 197 + 89) % 255 + 1 for i in range(4096)), DAMAGED),
    ("a JSON text in place of the file", b'{"ch0": {"exists": 1}}', DAMAGED),
)  # fmt: skip

MARKUP = rows(
    ("a file whose tags cross", b"<velmora><ch0><exists>1</ch0></exists></velmora>", DAMAGED),
    ("a file with a comment without end", WHOLE.replace(b"<profile>", b"<!-- <profile>"), DAMAGED),
    ("a file with a CDATA section without end", device("<![CDATA[Camera"), DAMAGED),
    ("a file with an instruction without end", b"<?xml version='1.0'" + WHOLE[:40], DAMAGED),
    ("a file with an attribute without quotes", WHOLE.replace(b"<ch0>", b"<ch0 a=b>"), DAMAGED),
    ("a file with a tag of a number", WHOLE.replace(b"devname", b"9devname"), DAMAGED),
    ("a file with a billion laughs",
     b'<!DOCTYPE l [<!ENTITY a "ha"><!ENTITY b "' + b"&a;" * 99 + b'"><!ENTITY c "' + b"&b;" * 99 + b'">]>'
     + device("&c;"),
     read("&c;", "entities stay as they are; it is read and written")),
    ("a file with an entity that opens a file", b'<!DOCTYPE l [<!ENTITY f SYSTEM "/etc/passwd">]>' + device("&f;"),
     read("&f;", "the entity stays as it is; it is read and written")),
    ("a file with an entity that names itself", b'<!DOCTYPE l [<!ENTITY a "&a;">]>' + device("&a;"),
     read("&a;", "the entity stays as it is; it is read and written")),
    ("a file with a reference to a character beyond all", device("x&#x7fffffff;y"), FileOutcome(
        "some name is read; it is written", 0, written=0)),
    ("a file with a reference to a zero byte", device("Cam&#0;era"), read("Cam",
     "the value ends there; it is written")),
    ("a file whose root is another one", WHOLE.replace(b"velmora", b"other"), NOT_OURS),
    ("a file whose root is in another name space", WHOLE.replace(b"velmora", b"v:velmora"), NOT_OURS),
    ("a file with comments within a value", device("Ca<!-- x -->me<!-- y -->ra"), READ),
    ("a file with CDATA sections within a value", device("Ca<![CDATA[me]]>ra"), READ),
    ("a file with instructions within a value", device("Ca<?x me?>ra"), read("Cara",
     "the instruction is not part of the value")),
    ("a file with elements within a value", device("Ca<b>me</b>ra"), read("Cara",
     "the element is not part of the value")),
    ("a file with attributes in place of values", channel("", '<exists v="1"/><profile v="0"/>'), NO_PROFILE),
    ("a file with the same attribute twice", WHOLE.replace(b"<ch0>", b'<ch0 a="1" a="2">'), READ),
    ("a file with markup within a value", device("&lt;script&gt;"), read("<script>")),
)  # fmt: skip

ENCODED = rows(
    ("a file in characters of two bytes", WHOLE.decode().encode("utf-16"), DAMAGED),
    ("a file in characters of four bytes", WHOLE.decode().encode("utf-32-be"), DAMAGED),
    ("a file with a byte order mark", b"\xef\xbb\xbf" + WHOLE, READ),
    ("a file in another encoding than it states", b'<?xml version="1.0" encoding="UTF-16"?>' + WHOLE, READ),
    ("a file with bytes that are not UTF-8", WHOLE.replace(b"Cam", b"C\xff\xc0\xaf"), FileOutcome(
        "the bytes are kept; it is written", 0, r"C\xff\xc0\xafera", written=0)),
    ("a file with the line ends of another system", WHOLE.replace(b"><", b">\r\n<"), READ),
    ("a file with line ends of three kinds", WHOLE.replace(b"><", b">\r\n\n\r<"), READ),
    ("a file whose escape is a zero byte", device(r"Cam\x00era"), FileOutcome("it is read as it stands", 0,
                                                                                r"Cam\x5cx00era", written=0)),
)  # fmt: skip

LARGE = rows(
    ("a file of a hundred megabytes", sparse(100 << 20), DAMAGED),
    ("a file of a terabyte", sparse(1 << 40), DAMAGED),
    ("a file of as many elements as fit", b"<velmora>" + b"<a/>" * (LARGEST // 4 - 9) + b"</velmora>", NO_PROFILE, 10,
     40),
    ("a file of one value as long as fits", device("x" * (LARGEST - 200)), read("x" * 255,
     "the name is cut to its field"), 10, 16),
    ("a file ten thousand levels deep", b"<velmora>" + b"<a>" * 10000 + b"</a>" * 10000 + b"</velmora>", DAMAGED, 10,
     8),
    ("a file a hundred thousand levels deep and cut", b"<velmora>" + b"<a>" * 100000, DAMAGED, 10, 16),
    ("a file of a hundred thousand attributes", b"<velmora" + b' a="1"' * 100000 + b"/>", NO_PROFILE, 10, 16),
    ("a file with a name of a megabyte for a tag", b"<" + b"v" * (LARGEST - 3) + b"/>", NOT_OURS),
)  # fmt: skip

VALUES = rows(
    ("a file with the same channel twice", WHOLE.replace(b"</velmora>",
     b"<ch0><devname>Other</devname></ch0></velmora>"),
     read("Camera", "the first one counts; it is written")),
    ("a file with the same key twice", channel("<devname>Camera</devname><devname>Other</devname>"),
     read("Camera", "the first one counts; it is written")),
    ("a file whose profile is in an eleventh channel", WHOLE.replace(b"ch0", b"ch10"), NO_PROFILE),
    ("a file with ten thousand channels", b"<velmora>" + b"".join(b"<ch%d/>" % i for i in range(10000)) + b"</velmora>",
     NO_PROFILE, 10, 8),
    ("a file whose number has 21 digits", channel("", "<exists>1</exists><profile>" + "0" * 20 + "1</profile>"),
     NO_PROFILE),
    ("a file whose number is beyond 32 bits", channel("", "<exists>1</exists><profile>4294967296</profile>"),
     NO_PROFILE),
    ("a file whose number is negative", channel("", "<exists>1</exists><profile>-7</profile>"), NO_PROFILE),
    ("a file whose number is a word", channel("", "<exists>1</exists><profile>none</profile>"), NO_PROFILE),
    ("a file whose number has a fraction", channel("", "<exists>1</exists><profile>0.0</profile>"), NO_PROFILE),
    ("a file whose number is empty", channel("", "<exists>1</exists><profile></profile>"), NO_PROFILE),
    ("a file whose port is kilobytes long", channel("<devname>Camera</devname>", KEYS.replace("3-1", "3-1" * 2000)),
     READ),
    ("a file whose device name has line ends", device("Ca\nme\rra"), FileOutcome(
        "the line ends are kept as one kind; it is written", 0, r"Ca\x0ame\x0ara", written=0)),
)  # fmt: skip

PLACES = rows(
    ("a folder in place of the file", lambda path: path.mkdir(), UNREADABLE),
    ("a pipe in place of the file", os.mkfifo, UNREADABLE),
    ("a socket in place of the file", listening, UNREADABLE),
    ("a link to a device without end", link_to("/dev/zero"), UNREADABLE),
    ("a link to a device that is always full", link_to("/dev/full"), UNREADABLE),
    ("a link to itself", link_to("/etc/config/usbdev.conf"), UNREADABLE),
    ("a link to the memory of the process", link_to("/proc/self/mem"), DAMAGED),
    ("a link to the kernel's messages", link_to("/proc/self/status"), DAMAGED),
    ("a link into a folder that is missing", link_to("/nowhere/usbdev.conf"), FileOutcome("reading and writing fail",
     -1, code=-2)),
    ("a link to a file elsewhere", behind_a_link, read("Camera", "it is read and written, and the link stays")),
)  # fmt: skip

class Locked:
    """Another program that has locked the file for writing."""

    def begin(self, path: Path) -> None:
        self._file = path.open("rb")
        fcntl.flock(self._file, fcntl.LOCK_EX)

    def await_call(self) -> None:
        """Returns when somebody else waits for the lock."""
        waiting = re.compile(rf"->.*:{os.fstat(self._file.fileno()).st_ino} ")
        deadline = time.monotonic() + PATIENCE
        while not waiting.search(Path("/proc/locks").read_text()):
            assert time.monotonic() < deadline, "nobody waits for the lock"
            time.sleep(0.002)

    def leave(self) -> None:
        self._file.close()


LOCKED = [
    Row("a file that another program has locked", "write a name", Locked(), Outcome("it is written", 0).later_for_all())
]
TABLE: Sequence[Row] = list(chain(CUT, MARKUP, ENCODED, LARGE, VALUES, PLACES))
