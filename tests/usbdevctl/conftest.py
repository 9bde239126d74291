# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Runs shell scripts on fresh sandboxed hosts, where usbdevctl and sim are in the search path, and reads the help."""

from __future__ import annotations

import base64
import json
import os
import re
import subprocess
from collections.abc import Callable
from dataclasses import dataclass
from functools import cache
from pathlib import Path
from typing import Any

import pytest

REPOSITORY = Path(__file__).resolve().parent.parent.parent
SANDBOX = REPOSITORY / "host/sandbox/sandbox"
BUILD = Path(os.environ.get("USBDEV_BUILD_DIR", REPOSITORY / "build/release"))
USBDEVCTL = BUILD / "usbdevctl"

RunOnHost = Callable[[str], "subprocess.CompletedProcess[str]"]


@pytest.fixture
def on_host() -> RunOnHost:
    """Runs a script on a host of its own that nothing is plugged into."""

    def run(script: str) -> subprocess.CompletedProcess[str]:
        command = [str(SANDBOX), "run", "--build", str(BUILD), "--", "sh", "-c", script]
        return subprocess.run(command, check=False, capture_output=True, text=True, timeout=240)

    return run


@dataclass
class Done:
    """The result of a command: its exit status and what it printed."""

    status: int
    out: str
    err: str

    @property
    def json(self) -> dict[str, Any]:
        return json.loads(self.out)


def run_all(on_host: RunOnHost, *lines: str) -> list[Done]:
    """Runs the shell's lines on one host; the result of each."""
    script = "".join(
        f"{{ {line}; }} >/tmp/out 2>/tmp/err; echo $? >/tmp/status\n"
        "for file in status out err; do base64 -w0 /tmp/$file; echo; done\n"
        for line in lines
    )
    texts = [base64.b64decode(line).decode() for line in on_host(script).stdout.splitlines()]
    return [Done(int(texts[at]), texts[at + 1], texts[at + 2]) for at in range(0, len(texts), 3)]


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
