# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the manager receives from the library."""

from __future__ import annotations

import socket
import struct
from dataclasses import dataclass
from types import TracebackType

ADDRESS = ("127.0.0.1", 10171)
LAYOUT = struct.Struct("=16s16s6i")


@dataclass(frozen=True)
class Notification:
    profile: int
    video: int
    audio: int
    flag: int
    event: int
    target: int


class Manager:
    """Datagrams on the loopback are there once the sender returns."""

    def __enter__(self) -> Manager:
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._socket.bind(ADDRESS)
        self._socket.setblocking(False)
        return self

    def __exit__(self, kind: type[BaseException] | None, value: BaseException | None, at: TracebackType | None) -> None:
        self._socket.close()

    def received(self) -> list[Notification]:
        notifications: list[Notification] = []
        while True:
            try:
                datagram = self._socket.recv(1024)
            except BlockingIOError:
                return notifications
            notifications.append(Notification(*LAYOUT.unpack(datagram)[2:]))
