# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Passes the library's notifications on to other programs of the host. The library sends each to one port only, which the
manager has, so the others connect to a socket file."""

from __future__ import annotations

import asyncio
import os
import socket
from contextlib import suppress

from servicelib.lifecycle import say

FILE = "/var/lock/usbdev-notifications"
MODE = 0o660
MOST_READERS = 32
WAITING = 32


class Hub:
    """Does without readers where the socket file cannot be made, because the streams do not need it."""

    def __init__(self) -> None:
        self._readers: set[socket.socket] = set()
        self._loop = asyncio.get_running_loop()
        self._door = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET | socket.SOCK_NONBLOCK)

    def open(self) -> None:
        """Makes the socket file in place of that of a manager which was killed. Readers who wait for it may connect when it
        gets its permissions."""
        try:
            with suppress(FileNotFoundError):
                os.unlink(FILE)
            self._door.bind(FILE)
            self._door.listen(WAITING)
            os.chmod(FILE, MODE)
        except OSError as problem:
            say(f"notifications are not passed on: {problem.strerror}")
            return
        self._loop.add_reader(self._door, self._let_in)

    def pass_on(self, notification: bytes) -> None:
        """Sends it to every reader, also to those who have just connected. One whose queue is full does not read any more."""
        self._let_in()
        for reader in list(self._readers):
            try:
                reader.send(notification)
            except OSError:
                self._drop(reader)

    def close(self) -> None:
        for reader in list(self._readers):
            self._drop(reader)
        if self._loop.remove_reader(self._door):
            with suppress(FileNotFoundError):
                os.unlink(FILE)
        self._door.close()

    def _let_in(self) -> None:
        with suppress(OSError):  # nobody waits any more
            while True:
                self._add(self._door.accept()[0])

    def _add(self, reader: socket.socket) -> None:
        if len(self._readers) >= MOST_READERS:
            reader.close()
            return
        reader.setblocking(False)
        self._readers.add(reader)
        self._loop.add_reader(reader, self._drop, reader)  # what a reader sends, or its end

    def _drop(self, reader: socket.socket) -> None:
        self._loop.remove_reader(reader)
        self._readers.discard(reader)
        reader.close()
