# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Servers that behave badly: each connection is served by a script, which is a list of steps."""

from __future__ import annotations

import socket
import struct
import threading
from collections.abc import Callable, Sequence
from contextlib import suppress

PATIENCE = 20
LOOPBACK = "127.0.0.1"


class Stage:
    """Where a step acts: the connection, and the moment when the neighbour has to go."""

    def __init__(self) -> None:
        self.connection = socket.socket()
        self.listener = socket.socket()
        self.waits = threading.Event()
        self.leave = threading.Event()


Step = Callable[[Stage], None]


def request(stage: Stage) -> bytes:
    heard = b""
    while b"\r\n\r\n" not in heard and (part := stage.connection.recv(4096)):
        heard += part
    return heard


def hear(stage: Stage) -> None:
    """Reads a request up to its empty line."""
    request(stage)


def hear_a_little(stage: Stage) -> None:
    stage.connection.recv(64)


def say(words: bytes) -> Step:
    return lambda stage: stage.connection.sendall(words)


def say_slowly(words: bytes, seconds: float) -> Step:
    """A byte at a time."""

    def dribble(stage: Stage) -> None:
        for byte in words:
            stage.connection.sendall(bytes([byte]))
            stage.leave.wait(seconds)

    return dribble


def flood(words: bytes) -> Step:
    """Says it again and again, until the other side has gone."""

    def pour(stage: Stage) -> None:
        while True:
            stage.connection.sendall(words)

    return pour


def shout(words: bytes) -> Step:
    """Sends a byte out of band among the words."""

    def send(stage: Stage) -> None:
        stage.connection.sendall(words[:10])
        stage.connection.send(b"!", socket.MSG_OOB)
        stage.connection.sendall(words[10:])

    return send


def hold(stage: Stage) -> None:
    """Keeps the connection until it is told to go."""
    stage.waits.set()
    stage.leave.wait(PATIENCE)


def pause(seconds: float) -> Step:
    return lambda stage: stage.leave.wait(seconds) and None


def echo(stage: Stage) -> None:
    stage.connection.sendall(request(stage))


def reset(stage: Stage) -> None:
    """Breaks the connection instead of closing it."""
    stage.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def close_for_writing(stage: Stage) -> None:
    """Says no more, but goes on listening."""
    stage.connection.shutdown(socket.SHUT_WR)
    while stage.connection.recv(4096):
        pass


def go_away(stage: Stage) -> None:
    """Listens no more; nobody else gets a connection."""
    stage.listener.shutdown(socket.SHUT_RDWR)


class Server:
    """Listens on the loopback address and serves one connection for each script."""

    def __init__(self, *scripts: Sequence[Step]) -> None:
        self._scripts = scripts
        self._stage = Stage()
        self.served = 0

    def begin(self, port: int) -> int:
        self._listener = self._stage.listener = socket.create_server((LOOPBACK, port))
        self._listener.settimeout(PATIENCE)
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()
        return self._listener.getsockname()[1]

    def await_call(self) -> None:
        assert self._stage.waits.wait(PATIENCE)

    def leave(self) -> None:
        self._stage.leave.set()

    def end(self) -> None:
        self.leave()
        with suppress(OSError):  # it has gone already
            go_away(self._stage)  # ends the wait for a connection that did not come
        self._thread.join(PATIENCE)
        self._listener.close()

    def _serve(self) -> None:
        for script in self._scripts:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            self.served += 1
            with connection:
                connection.settimeout(PATIENCE)
                self._play(script, connection)

    def _play(self, script: Sequence[Step], connection: socket.socket) -> None:
        self._stage.connection = connection
        try:
            for step in script:
                step(self._stage)
        except OSError:
            pass  # the library has closed the connection


class Nobody:
    """A port at which nobody listens."""

    def begin(self, port: int) -> int:
        self._bound = socket.socket()
        self._bound.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self._bound.bind((LOOPBACK, port))
        return self._bound.getsockname()[1]

    def end(self) -> None:
        self._bound.close()


class NeverAccepts:
    """A listener whose queue is full, so that nobody gets a connection before it goes."""

    def begin(self, port: int) -> int:
        self._listener = socket.socket()
        self._listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self._listener.bind((LOOPBACK, port))
        self._listener.listen(0)
        self._queue = [socket.create_connection(self._listener.getsockname())]
        return self._listener.getsockname()[1]

    def await_call(self) -> None:
        """The queue was full before the call."""

    def leave(self) -> None:
        self._listener.close()

    def end(self) -> None:
        self.leave()
        for waiting in self._queue:
            waiting.close()


class Receiver:
    """A manager who never reads the datagrams that it gets, with little room for them, and may answer each."""

    def __init__(self, answers: int = 0) -> None:
        self._answers = answers

    def begin(self, port: int) -> int:
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 2048)
        self._socket.settimeout(PATIENCE)
        self._socket.bind((LOOPBACK, port))
        self._thread = threading.Thread(target=self._answer, daemon=True)
        self._thread.start()
        return port

    def _answer(self) -> None:
        if self._answers:
            try:
                _, sender = self._socket.recvfrom(64)
                for _ in range(self._answers):
                    self._socket.sendto(bytes(60000), sender)
            except OSError:
                pass  # the library's socket has gone

    def end(self) -> None:
        self._thread.join(PATIENCE)
        self._socket.close()
