# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The owner's server and the host that it needs. These tests run on a sandboxed host, of which they are the only users."""

from __future__ import annotations

import json
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path

import pytest
from client import HOST, ORIGIN, PASSWORD, USER, Client

sys.path[:0] = [str(HOST / folder) for folder in ("owner", "share", "services", "sim")]
sys.path.append(str(Path(__file__).resolve().parent.parent))

from browser import Owner
from host_service import Service
from simlib.cli import main as sim
from viewer import browsing


@pytest.fixture(scope="session")
def login_service(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Service]:
    """With one user, ann."""
    subprocess.run(["login-users", "add", USER], input=f"{PASSWORD}\n", text=True, check=True)
    service = Service("login-service", tmp_path_factory.mktemp("login"))
    service.start()
    yield service
    service.end()


@pytest.fixture(scope="session")
def server(tmp_path_factory: pytest.TempPathFactory, login_service: Service) -> Iterator[Service]:
    service = Service("owner-page", tmp_path_factory.mktemp("owner"))
    service.start()
    yield service
    service.end()


@pytest.fixture(scope="session")
def owner(server: Service) -> Client:
    """A user who is signed in."""
    client = Client()
    assert client.sign_in().status == 200
    return client


def run(command: str) -> str:
    """Runs a command on the host; what it prints."""
    return subprocess.run(["sh", "-ec", command], check=True, stdout=subprocess.PIPE, text=True).stdout


@pytest.fixture(scope="session")
def window(server: Service) -> Iterator[Owner]:
    """The browser of a user."""
    with browsing() as browser:
        browser.get(ORIGIN)
        yield Owner(browser, ORIGIN)


@pytest.fixture
def manager(tmp_path: Path) -> Iterator[Service]:
    """Encodes the streams."""
    service = Service("manager-service", tmp_path)
    service.start()
    yield service
    service.end()


def forget_all() -> None:
    """Leaves a host without cameras and hubs."""
    for port in ("1-1", "1-2", "3-1", "5-1"):
        sim(["unplug", port])
    channels = json.loads(run("usbdevctl channels --json"))["channels"]
    run("; ".join(f"usbdevctl forget {channel['slot']}" for channel in channels if channel["slot"]))


@pytest.fixture
def ann(window: Owner) -> Iterator[Owner]:
    """Is signed in, and looks at the overview of a host without cameras. No page gives the browser a reason to complain."""
    forget_all()
    window.evaluate("localStorage.removeItem('language')")
    window.size(1280, 1000)
    window.prefer(color_scheme="light")
    window.open()
    window.wait(window.heading)
    if window.heading() == "Sign in":
        window.sign_in(USER, PASSWORD)
    window.sees("No camera is plugged in")
    window.complaints()
    yield window
    assert window.complaints() == []


@pytest.fixture
def door(ann: Owner) -> Owner:
    """There is one camera, which is called Door."""
    sim(["plug", "usb2-camera", "3-1"])
    run("usbdevctl assign 3-1 0; usbdevctl rename 0 Door")
    ann.sees_on_card(0, "Door")
    return ann
