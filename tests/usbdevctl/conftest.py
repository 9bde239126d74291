# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs shell scripts on fresh sandboxed hosts, where usbdevctl and sim are in the search path, and reads the help."""

from __future__ import annotations

import json
import os
import re
import subprocess
import sys
from collections.abc import Callable, Iterator
from dataclasses import dataclass
from functools import cache
from pathlib import Path
from typing import Any

import pytest

sys.dont_write_bytecode = True
REPOSITORY = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(REPOSITORY / "tests"))

from renewed_host import RenewedHost  # noqa: E402

BUILD = Path(os.environ.get("USBDEV_BUILD_DIR", REPOSITORY / "build/release"))
USBDEVCTL = BUILD / "usbdevctl"

RunOnHost = Callable[[str], "subprocess.CompletedProcess[str]"]


@pytest.fixture(scope="session")
def host() -> Iterator[RenewedHost]:
    with RenewedHost(BUILD) as started:
        yield started


@pytest.fixture
def on_host(host: RenewedHost) -> RunOnHost:
    """Runs a script on a fresh host that nothing is plugged into."""
    return host.run


@dataclass
class Done:
    """The result of a command: its exit status and what it printed."""

    status: int
    out: str
    err: str

    @property
    def json(self) -> dict[str, Any]:
        return json.loads(self.out)


def run_all(host: RenewedHost, *lines: str) -> list[Done]:
    """Runs the shell's lines on one fresh host; the result of each."""
    return [Done(done.returncode, done.stdout, done.stderr) for done in host.run_each(*lines)]


@cache
def help_of(*command: str) -> dict[str, list[str] | str]:
    """The help of the program or of a command: its whole text, and the commands and options that it names."""
    text = subprocess.run([USBDEVCTL, *command, "--help"], check=True, capture_output=True, text=True).stdout
    section, names = "", {"commands": [], "options": []}
    for line in text.splitlines():
        heading = re.match(r"([\w ]+):$", line)
        section = heading.group(1).lower() if heading else section
        if section not in ("", "options", "positionals") and (found := re.match(r"  ([\w-]+)", line)):
            names["commands"].append(found.group(1))
        if section == "options" and (found := re.match(r"  (?:-\w,)?(--[\w-]+)", line)):
            names["options"].append(found.group(1))
    return {"text": text, **names}
