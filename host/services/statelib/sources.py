# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Where changes come from: the manager's notifications, and the files of the host's configuration, of its event log and
of its streams. Nothing is asked again and again."""

from __future__ import annotations

import asyncio
import socket
from collections.abc import Callable
from pathlib import Path

from servicelib import changes
from servicelib.places import CONFIGURATION, STREAMS

from statelib import event_log

HUB = Path("/var/lock/usbdev-notifications")
BEGIN = "live.mp4"  # in a stream's folder: as long as the stream runs
FAILURE = "failure"  # in a stream's folder: why it fails, see docs/services.md
REPLACED = changes.WRITTEN | changes.RENAMED | changes.REMOVED
LARGEST_NOTIFICATION = 4096


def follow(changed: Callable[[], None], logged: Callable[[], None]) -> None:
    """Calls `changed` after each change and `logged` after each new event, as long as the event loop runs."""
    _files(CONFIGURATION.parent, REPLACED, {CONFIGURATION.name}, changed)
    event_log.FILE.parent.mkdir(parents=True, exist_ok=True)
    journal = f"{event_log.FILE.name}-journal"  # the log is changed as long as this is there
    _files(event_log.FILE.parent, changes.REMOVED | changes.WRITTEN, {event_log.FILE.name, journal}, logged)
    for folder in STREAMS.iterdir():
        _files(folder, REPLACED, {FAILURE, BEGIN}, changed)  # a camera has bandwidth of its bus from a stream's begin to its end
    hub = Notifications(changed)
    _files(HUB.parent, changes.ATTRIBUTES, {HUB.name}, hub.connect)
    hub.connect()


def _files(folder: Path, kinds: int, names: set[str], changed: Callable[[], None]) -> None:
    """Follows the files with these names in a folder."""
    wanted = names | {""}
    changes.follow(str(folder), kinds, lambda found: changed() if found & wanted else None)


class Notifications:
    """The connection to the manager. If there is none, it is made when the manager has made its socket file again."""

    def __init__(self, changed: Callable[[], None]) -> None:
        self._changed = changed
        self._connection: socket.socket | None = None

    def connect(self) -> None:
        if self._connection is not None:
            return
        connection = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET | socket.SOCK_NONBLOCK)
        try:
            connection.connect(str(HUB))
        except OSError:
            connection.close()
            return
        self._changed()  # in the meantime, perhaps
        self._connection = connection
        asyncio.get_running_loop().add_reader(connection, self._receive, connection)

    def _receive(self, connection: socket.socket) -> None:
        try:
            received = connection.recv(LARGEST_NOTIFICATION)
        except BlockingIOError:
            return
        except OSError:
            received = b""
        if received:
            self._changed()
            return
        asyncio.get_running_loop().remove_reader(connection)
        connection.close()
        self._connection = None
