# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs shell scripts on fresh sandboxed hosts, with or without the services beside them."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable, Iterator
from pathlib import Path

import pytest

HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parent.parent
sys.path[:0] = [str(REPOSITORY / "host/services"), str(REPOSITORY / "tests")]

from renewed_host import RenewedHost  # noqa: E402

# What the scripts may use: a call of the library, patience until a command succeeds, and the start of a service.
SHELL = f"""
call() {{ /usr/bin/python3 -B {HERE}/call_library.py "$@"; }}
until_true() {{ timeout 40 sh -c 'until eval "$0"; do sleep 0.1; done' "$*" || echo "never true: $*" >&2; }}
begin() {{
  mkdir -p /var/log/vl; : >>"/var/log/vl/$1.log"
  setsid "$1" >>"/var/log/vl/$1.log" 2>&1 </dev/null &
  until_true grep -q listening "/var/log/vl/$1.log"
}}
"""

RunOnHost = Callable[..., "subprocess.CompletedProcess[str]"]


@pytest.fixture(scope="module")
def host() -> Iterator[RenewedHost]:
    with RenewedHost(Path(os.environ["USBDEV_BUILD_DIR"])) as started:
        yield started


@pytest.fixture
def on_host(host: RenewedHost) -> RunOnHost:
    """Runs a script on a fresh host."""
    return lambda script: host.run(SHELL + script)


@pytest.fixture
def on_new_host() -> RunOnHost:
    """Runs a script on a host of its own; the further arguments are options of the sandbox."""

    def run(script: str, *options: str) -> subprocess.CompletedProcess[str]:
        sandbox = [str(REPOSITORY / "host/sandbox/sandbox"), "run", "--build", os.environ["USBDEV_BUILD_DIR"]]
        command = [*sandbox, *options, "--", "sh", "-c", SHELL + script]
        return subprocess.run(command, check=False, capture_output=True, text=True, timeout=300)

    return run


@pytest.fixture
def with_services(on_new_host: RunOnHost) -> RunOnHost:
    """Runs a script on a host of its own while all services run."""
    return lambda script: on_new_host(script, "--services")


# With all of them beside each other half of the time of such a test would be their start.
@pytest.fixture
def with_login(on_host: RunOnHost) -> RunOnHost:
    return lambda script: on_host("begin login-service\n" + script)


@pytest.fixture
def with_manager(on_host: RunOnHost) -> RunOnHost:
    return lambda script: on_host("begin manager-service\n" + script)


@pytest.fixture
def with_streaming_service(on_host: RunOnHost) -> RunOnHost:
    return lambda script: on_host("begin streaming-service\n" + script)


def seed() -> int:
    """Returns the seed of a random run, which is printed."""
    chosen = int(os.environ.get("USBDEV_SEED", "1"))
    print(f"USBDEV_SEED={chosen}")
    return chosen
