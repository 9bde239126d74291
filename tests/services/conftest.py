# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs shell scripts on fresh sandboxed hosts, with or without the services beside them."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable
from pathlib import Path

import pytest

HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parent.parent
sys.path[:0] = [str(REPOSITORY / "host/services")]

# What the scripts may use: a call of the library, and patience until a command succeeds.
SHELL = f"""
call() {{ /usr/bin/python3 -B {HERE}/call_library.py "$@"; }}
until_true() {{ timeout 40 sh -c 'until eval "$0"; do sleep 0.1; done' "$*" || echo "never true: $*" >&2; }}
"""

RunOnHost = Callable[..., "subprocess.CompletedProcess[str]"]


@pytest.fixture
def on_host() -> RunOnHost:
    """Runs a script on a host of its own; the further arguments are options of the sandbox."""

    def run(script: str, *options: str) -> subprocess.CompletedProcess[str]:
        sandbox = [str(REPOSITORY / "host/sandbox/sandbox"), "run", "--build", os.environ["USBDEV_BUILD_DIR"]]
        command = [*sandbox, *options, "--", "sh", "-c", SHELL + script]
        return subprocess.run(command, check=False, capture_output=True, text=True, timeout=300)

    return run


@pytest.fixture
def with_services(on_host: RunOnHost) -> RunOnHost:
    """Runs a script on a host of its own while the services run."""
    return lambda script: on_host(script, "--services")


def seed() -> int:
    """Returns the seed of a random run, which is printed."""
    chosen = int(os.environ.get("USBDEV_SEED", "1"))
    print(f"USBDEV_SEED={chosen}")
    return chosen
