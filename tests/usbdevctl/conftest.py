"""Runs shell scripts on fresh sandboxed hosts, where usbdevctl and sim are in the search path."""

from __future__ import annotations

import os
import subprocess
from collections.abc import Callable
from pathlib import Path

import pytest

SANDBOX = Path(__file__).resolve().parent.parent.parent / "host/sandbox/sandbox"

RunOnHost = Callable[[str], "subprocess.CompletedProcess[str]"]


@pytest.fixture
def on_host() -> RunOnHost:
    """Runs a script on a host of its own that nothing is plugged into."""

    def run(script: str) -> subprocess.CompletedProcess[str]:
        command = [str(SANDBOX), "run", "--build", os.environ["USBDEV_BUILD_DIR"], "--", "sh", "-c", script]
        return subprocess.run(command, check=False, capture_output=True, text=True, timeout=60)

    return run
