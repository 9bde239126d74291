# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A sandboxed host on which many scripts run, one after the other. To start one takes longer than most scripts do, so it is
started once and made again what it was before each script: its shared memory and files. Processes end with their script."""

from __future__ import annotations

import json
import os
import shutil
import signal
import stat
import subprocess
import sys
import threading
import time
from collections.abc import Iterator
from contextlib import suppress
from pathlib import Path
from types import TracebackType
from typing import Any

REPOSITORY = Path(__file__).resolve().parent.parent
SANDBOX = REPOSITORY / "host/sandbox/sandbox"
# The parts of the host that it keeps, which are made again what they were,
KEPT = ("/dev", "/etc/config", "/home/httpd", "/mnt/ext", "/run", "/sys", "/tmp", "/var/log")
# and those that only a new sandbox makes, which no script may change.
FIXED = ("/", "/etc", "/home", "/mnt", "/usr", "/usr/bin", "/usr/sbin", "/var")
LONGEST = 300

Result = subprocess.CompletedProcess[str]


class RenewedHost:
    """Used in a "with" statement, at whose end the host ends. It is made with the given options of the sandbox. A script that
    takes longer than the seconds is killed."""

    def __init__(self, build: Path, *options: str, longest: int = LONGEST) -> None:
        command = [str(SANDBOX), "run", "--build", str(build), *options, "--", "/usr/bin/python3", "-ISB", __file__, str(longest)]
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def __enter__(self) -> RenewedHost:
        return self

    def __exit__(self, kind: type[BaseException] | None, value: BaseException | None, trace: TracebackType | None) -> None:
        self._process.communicate()

    def run(self, script: str) -> Result:
        """Runs a shell script on the host as it was at its start."""
        return self.run_each(script)[0]

    def run_each(self, *scripts: str) -> list[Result]:
        """The same, with each script after the first on the host that the one before it left."""
        assert self._process.stdin is not None and self._process.stdout is not None
        print(json.dumps(scripts), file=self._process.stdin, flush=True)
        answer = self._process.stdout.readline()
        assert answer, "the host has ended; it printed why"
        return [Result(script, *done) for script, done in zip(scripts, json.loads(answer))]


# What follows runs on the host.


class Files:
    """What is in the folders at the host's start: of each path its mode and what is in the file, or where the link leads."""

    def __init__(self) -> None:
        self._kept = dict(_all_there())
        self._fixed = _times_of_fixed()

    def restore(self) -> None:
        if _times_of_fixed() != self._fixed:
            raise RuntimeError(f"a script changed one of {', '.join(FIXED)}: it needs a sandbox of its own")
        there = dict(_all_there())
        for path in there:
            if path not in self._kept:
                _remove(path)
        for path, (mode, content) in self._kept.items():
            if there.get(path) != (mode, content):
                _make_again(path, mode, content)


def _all_there() -> Iterator[tuple[str, tuple[int, bytes | str]]]:
    """A folder comes before what is in it. What the machine shows there, as its terminals, is left out."""
    own = os.lstat(KEPT[0]).st_dev
    waiting = list(KEPT)
    while waiting:
        path = waiting.pop()
        now = os.lstat(path)
        if now.st_dev == own:
            yield path, (now.st_mode, _content(path, now.st_mode))
            if stat.S_ISDIR(now.st_mode):
                waiting += [f"{path}/{name}" for name in os.listdir(path)]


def _content(path: str, mode: int) -> bytes | str:
    if stat.S_ISLNK(mode):
        return os.readlink(path)
    return Path(path).read_bytes() if stat.S_ISREG(mode) else b""


def _make_again(path: str, mode: int, content: bytes | str) -> None:
    if not stat.S_ISDIR(mode) or not os.path.isdir(path) or os.path.islink(path):
        _remove(path)
    if isinstance(content, str):
        os.symlink(content, path)
        return
    if stat.S_ISDIR(mode):
        os.makedirs(path, exist_ok=True)
    else:
        Path(path).write_bytes(content)
    os.chmod(path, stat.S_IMODE(mode))


def _remove(path: str) -> None:
    if os.path.isdir(path) and not os.path.islink(path):
        shutil.rmtree(path)
    elif os.path.lexists(path):
        os.unlink(path)


def _times_of_fixed() -> list[int]:
    return [os.stat(path).st_mtime_ns for path in FIXED]


def _end_processes() -> None:
    """Ends all but this one and the first, which waits for those whose parent has ended."""
    while any(name.isdigit() and int(name) not in (1, os.getpid()) for name in os.listdir("/proc")):
        with suppress(ProcessLookupError):  # they have ended, and are waited for
            os.kill(-1, signal.SIGKILL)
        time.sleep(0.001)


def _remove_shared_memory() -> None:
    for kind in ("shm", "sem", "msg"):
        if len(Path(f"/proc/sysvipc/{kind}").read_text().splitlines()) > 1:
            subprocess.run(["ipcrm", "--all"], check=True)


def _run(script: str, longest: int) -> tuple[int, str, str]:
    """The script is not an argument, because the library searches the process list for words that may be in it. What it
    started ends with it, and so does not keep its output open."""
    text = os.memfd_create("script")
    os.write(text, script.encode())
    process = subprocess.Popen(
        ["sh", f"/proc/self/fd/{text}"],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, pass_fds=[text],
    )  # fmt: skip
    os.close(text)
    ending = threading.Thread(target=_end_after, args=(process,))
    ending.start()
    try:
        out, err = process.communicate(timeout=longest)
    except subprocess.TimeoutExpired:
        process.kill()
        out, err = process.communicate()
    ending.join()
    return process.returncode, out, err


def _end_after(process: subprocess.Popen[str]) -> None:
    process.wait()
    _end_processes()


def main() -> None:
    files = Files()
    for line in sys.stdin:
        scripts: list[Any] = json.loads(line)
        _remove_shared_memory()
        files.restore()
        print(json.dumps([_run(script, int(sys.argv[1])) for script in scripts]), flush=True)


if __name__ == "__main__":
    main()
