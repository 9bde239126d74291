# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The owner's server and the host that it needs. These tests run on a sandboxed host, of which they are the only users."""

from __future__ import annotations

import os
import socket
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path

import pytest
from client import HOST, PASSWORD, USER, Client

sys.path[:0] = [str(HOST / folder) for folder in ("owner", "share", "services")]


class Service:
    """One of the host's services, which is ready after start()."""

    def __init__(self, name: str, folder: Path) -> None:
        self._name = name
        self.log = folder / f"{name}.log"
        self._ready = str(folder / f"{name}.ready")

    def start(self) -> None:
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready, self.log.open("ab") as log:
            Path(self._ready).unlink(missing_ok=True)
            ready.bind(self._ready)
            ready.settimeout(20)
            environment = {**os.environ, "NOTIFY_SOCKET": self._ready}
            self._process = subprocess.Popen([self._name], stdout=log, stderr=log, env=environment)
            ready.recv(64)

    @property
    def pid(self) -> int:
        return self._process.pid

    def send(self, signal: int) -> None:
        self._process.send_signal(signal)

    def end(self) -> None:
        self._process.terminate()
        assert self._process.wait() == 0


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
