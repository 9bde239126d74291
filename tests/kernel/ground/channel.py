# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Commands on another machine, through a socket: a guest's virtual serial port, or a sandboxed host's standard input."""

from __future__ import annotations

import base64
import itertools
import json
import socket
import threading
from concurrent.futures import Future
from typing import NamedTuple

PATIENCE = 240


class Done(NamedTuple):
    """How a command ended."""

    status: int
    output: bytes
    errors: str


class Channel:
    """Several commands can run at the same time; a thread gives each answer to whoever waits for it."""

    def __init__(self, end: socket.socket) -> None:
        self._socket = end
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
            answer.set_exception(RuntimeError("the machine has ended"))


class Machine:
    """Whatever runs commands at the other end of a channel."""

    _channel: Channel

    def start(self, *command: str) -> Future[Done]:
        return self._channel.start(*command)

    def run(self, *command: str) -> str:
        """Returns what a command prints; it has to succeed."""
        done = self.start(*command).result(timeout=2 * PATIENCE)
        assert done.status == 0, f"{command}: {done}"
        return done.output.decode()

    def shell(self, script: str) -> str:
        return self.run("sh", "-c", script)

    def wait(self, condition: str) -> str:
        """Waits until a line of shell succeeds, and returns what it prints."""
        return self.run("timeout", str(PATIENCE), "sh", "-c", f"until {condition}; do sleep 0.1; done")
