# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a command can change on the sandboxed host: taken, put back and compared."""

from __future__ import annotations

import ctypes
import fcntl
import os
import re
import sqlite3
import xml.etree.ElementTree as ElementTree
from pathlib import Path

CONFIGURATION = Path("/etc/config/usbdev.conf")
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")
EVENT_LOG = Path("/var/log/vl/event.db")
SHARED = Path("/tmp/shared")  # what commands export and import
FOLDERS = (CONFIGURATION.parent, APPLICATION, EVENT_LOG.parent, Path("/run/usbdev-sim/cards/card0"), SHARED)
COUNTERS = (ctypes.c_uint32 * 4)

MADE_UP = (
    (re.compile(r"\b[0-9a-f]{32}\b"), "ID"),
    (re.compile(r"\b[0-9]{8}\b"), "NUMBER"),
    (re.compile(r"\b[0-9]{4}-[0-9]{2}-[0-9]{2}[ T][0-9:]{8}Z?"), "TIME"),
)


def without_made_up(text: str) -> str:
    """The text with one word for every identifier that is made from chance, and one for every time."""
    for made_up, word in MADE_UP:
        text = made_up.sub(word, text)
    return text


def _content(path: Path) -> bytes:
    return b"-> " + os.readlink(path).encode() if path.is_symlink() else path.read_bytes()


class World:
    """The host's files and the time-out counters, as they are now."""

    def __init__(self, library: ctypes.CDLL) -> None:
        library.vl_attach_log_shm.restype = ctypes.c_void_p
        self._counters = COUNTERS.from_address(library.vl_attach_log_shm(library.vl_create_log_shm()))
        self._taken: dict[Path, bytes] = {}
        self._taken_counters: list[int] = []

    @staticmethod
    def _files() -> dict[Path, bytes]:
        found = (Path(entry.path) for folder in FOLDERS for entry in os.scandir(folder))
        return {path: _content(path) for path in found if path.is_symlink() or path.is_file()}

    def take(self) -> None:
        self._taken = self._files()
        self._taken_counters = list(self._counters)

    def put_back(self) -> None:
        now = self._files()
        for path in now.keys() - self._taken.keys():
            path.unlink()
        for path, content in self._taken.items():
            if now.get(path) == content:
                continue
            path.unlink(missing_ok=True)
            if content.startswith(b"-> "):
                path.symlink_to(content[3:].decode())
            else:
                path.write_bytes(content)
        self._counters[:] = self._taken_counters

    def stored(self) -> dict[str, object]:
        """Everything that a command can store, in a form that is the same each time it is done."""
        files = self._files()
        links = sorted(
            (without_made_up(path.name), without_made_up(content.decode()))
            for path, content in files.items()
            if path.parent == APPLICATION
        )
        others = {
            str(path): without_made_up(content.decode(errors="replace"))
            for path, content in files.items()
            if path.parent not in (APPLICATION, EVENT_LOG.parent)
        }
        return {"links": links, "counters": list(self._counters), **others}


def events() -> list[str]:
    if not EVENT_LOG.exists():
        return []
    with sqlite3.connect(EVENT_LOG) as log:
        return [text for (text,) in log.execute("SELECT text FROM event ORDER BY id")]


def wrongs_of_files() -> list[str]:
    """What is wrong with the files that every command must leave whole, free and alone."""
    wrongs = []
    try:
        ElementTree.parse(CONFIGURATION)
    except (OSError, ElementTree.ParseError) as problem:
        wrongs.append(f"the configuration is damaged: {problem}")
    for path in (CONFIGURATION, CONFIGURATION.parent, Path("/run/lock/usbdev-hotplug.lock")):
        if path.exists() and not _is_free(path):
            wrongs.append(f"{path} is locked")
    temporary = [name for folder in (CONFIGURATION.parent, SHARED) for name in os.listdir(folder) if _is_temporary(name)]
    wrongs += [f"{name} is left" for name in temporary]
    return wrongs


def _is_free(path: Path) -> bool:
    descriptor = os.open(path, os.O_RDONLY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
        return True
    except BlockingIOError:
        return False
    finally:
        os.close(descriptor)


def _is_temporary(name: str) -> bool:
    return name.startswith(".") or re.search(r"\.\w{6}$", name) is not None
