# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs test programs, closed in, so that a mutant can do no harm."""

from __future__ import annotations

import math
import os
import signal
import subprocess
from pathlib import Path

# A read-only machine with its own /tmp and processes.
CLOSED_IN = (
    "bwrap --ro-bind / / --dev /dev --proc /proc --tmpfs /tmp --unshare-pid --unshare-ipc --cap-add ALL --die-with-parent"
).split()
LIMITS = "prlimit --as=8000000000 --fsize=100000000 --core=0".split()
WAITING = 10  # a program that waits, or that runs on a busy machine, may take that many times as long


def run(command: list[str], seconds: float, libraries: Path, mutant: int = 0, noticed: Path | None = None) -> bool | None:
    """Returns whether the command was successful, or None if it needed more than these seconds of a processor."""
    environment = os.environ | {"LD_LIBRARY_PATH": str(libraries), "USBDEV_MUTANT": str(mutant)}
    writable = []
    if noticed is not None:
        environment["USBDEV_NOTICED"] = str(noticed)
        writable = ["--bind", str(noticed), str(noticed)]
    limits = [*LIMITS, f"--cpu={math.ceil(seconds)}:{math.ceil(seconds) + 1}"]
    try:
        ended = subprocess.run([*CLOSED_IN, *writable, *limits, *command], timeout=WAITING * seconds, env=environment,
                               cwd=Path(command[0]).parent, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    except subprocess.TimeoutExpired:
        return None
    return None if ended.returncode == 128 + signal.SIGXCPU else ended.returncode == 0
