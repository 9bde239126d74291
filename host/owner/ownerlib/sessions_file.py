# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The file with the open sessions, which this server alone may read and write. What is not such a file is ignored."""

from __future__ import annotations

import json
import os
import re
import stat
import tempfile
from contextlib import ExitStack, suppress
from dataclasses import asdict, dataclass
from pathlib import Path
from typing import Any

MODE = 0o600
LARGEST = 1 << 16  # bytes
LONGEST_USER = 64


@dataclass(frozen=True)
class KeptSession:
    hash: str  # of its id
    user: str
    used: int  # seconds since 1970


@dataclass(frozen=True)
class Kept:
    users: int | None  # which stamp the host's users had
    sessions: list[KeptSession]


class SessionsFile:
    def __init__(self, file: Path) -> None:
        self._file = file

    def read(self) -> Kept | None:
        """Returns what was stored; None if it is not there, cut, or not this server's own."""
        try:
            return _parsed(json.loads(self._content()))
        except (OSError, ValueError, KeyError, TypeError, RecursionError):
            return None

    def write(self, kept: Kept) -> None:
        """Stores all of it, or leaves no file: what was stored before may have a session that has ended."""
        with ExitStack() as on_failure:
            on_failure.callback(self._remove)
            with tempfile.NamedTemporaryFile("w", dir=self._file.parent, prefix=f"{self._file.name}.", delete=False) as file:
                on_failure.callback(os.unlink, file.name)
                json.dump(asdict(kept), file)
                file.flush()
                os.fsync(file.fileno())
            os.replace(file.name, self._file)
            on_failure.pop_all()

    def _remove(self) -> None:
        with suppress(OSError):
            self._file.unlink()

    def _content(self) -> bytes:
        opened = os.open(self._file, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC)
        with open(opened, "rb") as file:
            about = os.fstat(opened)
            if not stat.S_ISREG(about.st_mode) or stat.S_IMODE(about.st_mode) != MODE or about.st_uid != os.geteuid():
                raise ValueError
            return file.read(LARGEST)


def _parsed(content: Any) -> Kept:
    sessions = [KeptSession(one["hash"], one["user"], one["used"]) for one in content["sessions"]]
    if not isinstance(content["users"], (int, type(None))) or not all(_is_session(one) for one in sessions):
        raise ValueError
    return Kept(content["users"], sessions)


def _is_session(one: KeptSession) -> bool:
    if not isinstance(one.user, str) or not 0 < len(one.user.encode()) <= LONGEST_USER:
        return False
    return isinstance(one.used, int) and isinstance(one.hash, str) and re.fullmatch("[0-9a-f]{64}", one.hash) is not None
