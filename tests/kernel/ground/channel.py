# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Commands in the guest, through a virtual serial port."""

from __future__ import annotations

import base64
import itertools
import json
import socket
import threading
from concurrent.futures import Future
from pathlib import Path
from typing import NamedTuple


class Done(NamedTuple):
    """How a command ended."""

    status: int
    output: bytes
    errors: str


class Channel:
    """Several commands can run at the same time; a thread gives each answer to whoever waits for it."""

    def __init__(self, path: Path) -> None:
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(str(path))
        self._numbers = itertools.count(1)
        self._waiting: dict[int, Future[Done]] = {0: Future()}
        self.ready = self._waiting[0]
        self._sending = threading.Lock()
        threading.Thread(target=self._read, daemon=True).start()

    def close(self) -> None:
        self._socket.shutdown(socket.SHUT_RDWR)
        self._socket.close()

    def start(self, *command: str) -> Future[Done]:
        with self._sending:
            number = next(self._numbers)
            answer = self._waiting[number] = Future()
            self._socket.sendall(json.dumps({"id": number, "command": command}).encode() + b"\n")
        return answer

    def _read(self) -> None:
        with self._socket.makefile("rb") as lines:
            for line in lines:
                it = json.loads(line)
                output, errors = base64.b64decode(it["output"]), base64.b64decode(it["errors"]).decode(errors="replace")
                self._waiting.pop(it["id"]).set_result(Done(it["status"], output, errors))
        for answer in self._waiting.values():
            answer.set_exception(RuntimeError("the guest has ended"))
