# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A service of the host that a test starts, stops and ends."""

from __future__ import annotations

import os
import socket
import subprocess
from pathlib import Path


class Service:
    """Is ready after start()."""

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

    def wait(self) -> None:
        """Waits for the end of a service that was killed."""
        self._process.wait()

    def end(self) -> None:
        self._process.terminate()
        assert self._process.wait() == 0
