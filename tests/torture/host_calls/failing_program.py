# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs a program with a call, or memory, that fails where a test wants it to."""

from __future__ import annotations

import ctypes
import errno
import mmap
import os
import signal
import struct
import subprocess
import time
from dataclasses import dataclass, field
from pathlib import Path

LIBRARY = Path(os.environ["USBDEV_FAILING"])
LIMIT = 60  # seconds, several times what the longest wait of the library takes
NEVER = 2**31 - 1
PROGRESS = struct.Struct("ii32s")
SUBREAPER = 36  # of prctl: this process becomes the parent of whatever the program leaves behind

ctypes.CDLL(None).prctl(SUBREAPER, 1, 0, 0, 0)


@dataclass(frozen=True)
class Failure:
    """The number-th piece of memory or call fails ("memory", "any"), and then nothing more or those alike."""

    what: str
    number: int
    error: int
    then: str = "nothing"

    def __str__(self) -> str:
        return f"{self.what} {self.number} {errno.errorcode[self.error]}, then {self.then}"


@dataclass
class Outcome:
    """How a program ended, what it printed, and what failed in it."""

    status: int | None  # None: it did not return in time
    out: str
    err: str
    counted: int
    failed: int
    first_failed: str
    left: list[int] = field(default_factory=list)  # processes


class Runner:
    """Runs programs in a folder with room for what they print."""

    def __init__(self, folder: Path) -> None:
        self._progress_file = folder / "progress"
        self._progress_file.write_bytes(bytes(PROGRESS.size))
        with open(self._progress_file, "r+b") as file:
            self._progress = mmap.mmap(file.fileno(), PROGRESS.size)
        self._streams = [open(folder / name, "w+b") for name in ("out", "err")]  # noqa: SIM115 they stay open
        self._known = set(_children())

    def run(self, command: list[str], failure: Failure, given: bytes = b"", until: bytes = b"") -> Outcome:
        """Gives it a standard input; asks it to end as soon as it has printed `until`."""
        plan = f"{failure.what} {failure.number} {failure.error} {failure.then} {self._progress_file}"
        asan = os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"
        environment = {**os.environ, "LD_PRELOAD": str(LIBRARY), "FAILING": plan, "ASAN_OPTIONS": asan}
        for stream in self._streams:
            stream.seek(0)
            stream.truncate()
        self._progress[:] = bytes(PROGRESS.size)
        out, err = self._streams
        program = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=out, stderr=err, env=environment, close_fds=False
        )
        if until:
            self._stop_after(program, until)
        status = _end_of(program, given)
        left = self._children_left()
        counted, failed, name = PROGRESS.unpack(self._progress[:])
        texts = [self._text(stream) for stream in self._streams]
        return Outcome(status, *texts, counted, failed, name.rstrip(b"\0").decode(), left)

    def _stop_after(self, program: subprocess.Popen[bytes], until: bytes) -> None:
        deadline = time.monotonic() + LIMIT
        while program.poll() is None and time.monotonic() < deadline:
            self._streams[0].seek(0)
            if until in self._streams[0].read():
                return program.terminate()
            time.sleep(0.005)

    def _children_left(self) -> list[int]:
        """The processes that the program left and that do not end by themselves; ends them."""
        deadline = time.monotonic() + 5
        while (children := set(_children()) - self._known) and time.monotonic() < deadline:
            time.sleep(0.001)
        for child in children:
            os.kill(child, signal.SIGKILL)
        return sorted(children)

    @staticmethod
    def _text(stream) -> str:  # noqa: ANN001 a binary file
        stream.seek(0)
        return stream.read().decode(errors="replace")


def _end_of(program: subprocess.Popen[bytes], given: bytes) -> int | None:
    try:
        program.communicate(given, timeout=LIMIT)
        return program.returncode
    except subprocess.TimeoutExpired:
        program.kill()
        program.wait()
        return None


def _children() -> list[int]:
    """The children that have not ended; takes the state of those that have."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0] != 0:
            continue
    except ChildProcessError:
        return []
    return [int(child) for child in Path(f"/proc/self/task/{os.getpid()}/children").read_text().split()]
