# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What a service counts and measures, for the one that shows it to a monitoring system (docs/fleet.md): each service has a
small file, which it replaces when something was counted. The client of such a system has a way of its own for many processes,
but to load it takes each of them 40 ms and 5 MB. The service has its file locked as long as it runs, because one that has another
user does not see its process."""

from __future__ import annotations

import asyncio
import atexit
import json
import os
import time
from bisect import bisect_left
from collections.abc import Iterator
from contextlib import contextmanager, suppress
from fcntl import LOCK_EX, LOCK_NB, flock
from pathlib import Path
from typing import TextIO

FOLDER = Path("/var/lock/usbdev-counts")
FOLDER_MODE = 0o750
MODE = 0o640
PAUSE_SECONDS = 0.1  # what is counted meanwhile is written together
BOUNDS = (0.003, 0.01, 0.03, 0.1, 0.3, 1.0, 3.0, 10.0, 30.0)  # seconds


class Counts:
    """Nothing depends on it, so it does without the file where that cannot be written."""

    def __init__(self) -> None:
        self._file: Path | None = None
        self._locked: TextIO | None = None  # the file, as it was written last
        self._waits = False
        self._numbers: dict[tuple[str, ...], int] = {}
        self._times: dict[tuple[str, ...], list[int]] = {}  # how many are within each bound and above the one before
        self._sums: dict[tuple[str, ...], float] = {}

    def begin(self, service: str) -> None:
        """Writes the file from now on, under the name of the service, on the event loop that runs."""
        self._file = FOLDER / service
        with suppress(OSError):
            FOLDER.mkdir(mode=FOLDER_MODE, exist_ok=True)
        self.write()
        atexit.register(self.write)

    def add(self, *name: str) -> None:
        """Adds one to what the words name: what is counted, and of which kind it is."""
        self._numbers[name] = self._numbers.get(name, 0) + 1
        self._write_soon()

    def add_time(self, seconds: float, *name: str) -> None:
        self._times.setdefault(name, [0] * (len(BOUNDS) + 1))[bisect_left(BOUNDS, seconds)] += 1
        self._sums[name] = self._sums.get(name, 0.0) + seconds
        self._write_soon()

    @contextmanager
    def timed(self, *name: str) -> Iterator[None]:
        """Adds the time that the block takes, also if it fails."""
        began = time.monotonic()
        try:
            yield
        finally:
            self.add_time(time.monotonic() - began, *name)

    def _write_soon(self) -> None:
        if self._file is not None and not self._waits:
            self._waits = True
            asyncio.get_running_loop().call_later(PAUSE_SECONDS, self.write)

    def write(self) -> None:
        if self._file is None:
            return
        self._waits = False
        content = {
            "numbers": [[*name, number] for name, number in self._numbers.items()],
            "times": [[*name, self._sums[name], times] for name, times in self._times.items()],
        }
        new = self._file.with_name(f".{self._file.name}")
        with suppress(OSError):
            new.unlink(missing_ok=True)
            file = open(os.open(new, os.O_WRONLY | os.O_CREAT | os.O_EXCL, MODE), "w", encoding="ascii")
            flock(file, LOCK_EX | LOCK_NB)
            json.dump(content, file)
            file.flush()
            new.rename(self._file)
            self._locked = file  # which closes the one before


counts = Counts()  # of this process
