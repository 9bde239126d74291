# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The sandboxed host that these tests have for themselves, one after the other."""

from __future__ import annotations

import json
import os
import socket
import subprocess
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest

CONFIGURATION = Path("/etc/config/usbdev.conf")
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")


def usbdevctl(*arguments: str, given: str = "") -> subprocess.CompletedProcess[str]:
    """Runs the program with a standard input."""
    command = ["usbdevctl", *arguments]
    return subprocess.run(command, input=given, check=False, capture_output=True, text=True, timeout=240)


def failing(what: str, number: int, error: int, *command: str) -> subprocess.CompletedProcess[str]:
    """Runs the program with its number-th call of a name, or piece of memory, failing."""
    progress = Path("/tmp/progress")
    progress.write_bytes(bytes(64))
    plan = {
        "LD_PRELOAD": os.environ["USBDEV_FAILING"],
        "FAILING": f"{what} {number} {error} nothing {progress}",
        "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0",
    }
    return subprocess.run(
        ["usbdevctl", *command], env={**os.environ, **plan}, check=False, capture_output=True, text=True, timeout=240
    )


def document(*arguments: str, given: str = "") -> dict[str, Any]:
    """The JSON object that a command prints, without the schema's number."""
    result = json.loads(usbdevctl(*arguments, "--json", given=given).stdout)
    assert result.pop("schema") == 1
    return result


@pytest.fixture(autouse=True)
def empty() -> None:
    """No camera has a profile and no time-out is counted."""
    CONFIGURATION.write_text("<velmora/>")
    usbdevctl("timeouts", "reset")


@pytest.fixture(scope="session")
def camera() -> str:
    """The port of a camera that is plugged in."""
    subprocess.run(["sim", "plug", "--hardware-only", "usb2-camera", "3-1"], check=True)
    return "3-1"


@pytest.fixture
def profile(empty: None, camera: str) -> str:
    """A profile that the camera has, with a name."""
    CONFIGURATION.write_text(
        f"<velmora><ch4><exists>1</exists><profile>2</profile><usbslot>{camera}</usbslot><devname>Cam</devname>"
        "<profilename>Door</profilename><video><vnode>0</vnode></video></ch4></velmora>"
    )
    return "2"


@pytest.fixture
def login_service(tmp_path: Path) -> Iterator[None]:
    """The host's login service, which knows ann by the password "secret"."""
    subprocess.run(["login-users", "add", "ann"], input="secret", check=True, text=True)
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready:
        ready.bind(str(tmp_path / "ready"))
        ready.settimeout(20)
        service = subprocess.Popen(["login-service"], env={**os.environ, "NOTIFY_SOCKET": str(tmp_path / "ready")})
        ready.recv(64)
    yield
    service.terminate()
    service.wait()
