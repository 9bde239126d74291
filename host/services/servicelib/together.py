# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "with-services": runs the services as long as a command runs."""

from __future__ import annotations

import argparse
import os
import signal
import socket
import subprocess
import sys
import tempfile
from collections.abc import Iterator
from contextlib import ExitStack, closing, contextmanager
from pathlib import Path

HERE = Path(__file__).resolve().parent.parent
LOGS = Path("/var/log/vl")
SERVICES = ("login-service", "manager-service", "streaming-service")
CANNOT_START = 125
LOOK_SECONDS = 0.1
# The command, or a reboot of the host in it, sends this signal to this process to restart the services.
RESTART = signal.SIGUSR1
PID_VARIABLE = "HOST_SERVICES_PID"

Service = subprocess.Popen[bytes]


class ServiceError(Exception):
    """A service did not start; the text names it and gives the reason."""


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="with-services", description="Runs a command together with the host's services.")
    parser.add_argument("command", nargs="+", metavar="COMMAND", help="the command and its arguments, after --")
    options = parser.parse_args(arguments)
    try:
        with closing(Services()) as services:
            services.start()
            return _run(options.command, services)
    except (ServiceError, OSError) as problem:
        print(f"with-services: {problem}", file=sys.stderr)
        return CANNOT_START


def _run(command: list[str], services: Services) -> int:
    """Runs the command and passes signals to it. An interrupt from the terminal reaches the command itself."""
    process = subprocess.Popen(command, env={**os.environ, PID_VARIABLE: str(os.getpid())})
    signal.signal(signal.SIGINT, signal.SIG_IGN)
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda received, _: process.send_signal(received))
    signal.signal(RESTART, lambda *_: services.restart())
    status = process.wait()
    return status if status >= 0 else 128 - status


class Services:
    """All services; after start() they are ready."""

    def __init__(self) -> None:
        self._running = ExitStack()

    def start(self) -> None:
        with _ready_socket() as ready:
            services = {name: self._running.enter_context(_service(name, ready.getsockname())) for name in SERVICES}
            for _ in services:
                _wait_for_one(ready, services)

    def restart(self) -> None:
        """Restarts all. Prints a line about one that does not start again; the command continues without it."""
        self.close()
        try:
            self.start()
        except ServiceError as problem:
            print(f"with-services: {problem}", file=sys.stderr)

    def close(self) -> None:
        self._running.close()


@contextmanager
def _ready_socket() -> Iterator[socket.socket]:
    with tempfile.TemporaryDirectory() as folder, socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready:
        ready.bind(f"{folder}/ready")
        ready.settimeout(LOOK_SECONDS)
        yield ready


@contextmanager
def _service(name: str, ready: str) -> Iterator[Service]:
    """Starts a service. Its output goes to its own log. An interrupt from the terminal does not reach it."""
    LOGS.mkdir(parents=True, exist_ok=True)
    with open(LOGS / f"{name}.log", "ab") as log:
        process = subprocess.Popen(
            [HERE / name],
            stdin=subprocess.DEVNULL, stdout=log, stderr=log,
            env={**os.environ, "NOTIFY_SOCKET": ready}, start_new_session=True,
        )  # fmt: skip
    try:
        yield process
    finally:
        process.terminate()
        process.wait()


def _wait_for_one(ready: socket.socket, services: dict[str, Service]) -> None:
    while True:
        try:
            ready.recv(64)
            return
        except TimeoutError:
            for name, process in services.items():
                if process.poll() is not None:
                    raise ServiceError(f"{name} ended at its start; see {LOGS / name}.log") from None
