# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""When data goes to the machine: as it asks (bulk), or by the clock (isochronous)."""

from __future__ import annotations

import asyncio
from collections import deque
from collections.abc import Callable, Iterator

from usbcamera.redirection import CANCELLED, IO_ERROR, SUCCESS, Connection
from usbcamera.stream import LARGEST_BULK_PAYLOAD, Stream

STEP = 0.005


class BulkSource:
    """Answers each request of the machine as soon as there is a payload, and takes pictures only for that."""

    def __init__(self, stream: Stream, connection: Connection, before_picture: Callable[[], bool]) -> None:
        self._stream, self._connection, self._before_picture = stream, connection, before_picture
        self._waiting: deque[tuple[int, int]] = deque()
        self._payloads: Iterator[bytes] = iter(())
        self._pieces: deque[bytes] = deque()
        self._timer: asyncio.TimerHandle | None = None

    def ask(self, identifier: int, length: int) -> None:
        self._waiting.append((identifier, max(1, length)))
        self._answer()

    def cancel(self, identifier: int) -> None:
        for request in [it for it in self._waiting if it[0] == identifier]:
            self._waiting.remove(request)
            self._connection.bulk(identifier, self._stream.endpoint, CANCELLED)

    def fail(self) -> None:
        while self._waiting:
            self._connection.bulk(self._waiting.popleft()[0], self._stream.endpoint, IO_ERROR)

    def restart(self) -> None:
        """Drops what is left of a picture: the machine expects the beginning of one."""
        self._payloads = iter(())
        self._pieces.clear()

    def _answer(self) -> None:
        while self._waiting and self._has_piece(self._waiting[0][1]):
            identifier, _ = self._waiting.popleft()
            self._connection.bulk(identifier, self._stream.endpoint, SUCCESS, self._pieces.popleft())

    def _has_piece(self, size: int) -> bool:
        """Some controllers ask for a packet at a time. A payload ends with a packet that is not full, or at its largest size."""
        if not self._pieces and (payload := self._next_payload()):
            self._pieces.extend(payload[at : at + size] for at in range(0, len(payload), size))
            if len(payload) % size == 0 and len(payload) < LARGEST_BULK_PAYLOAD:
                self._pieces.append(b"")
        return bool(self._pieces)

    def _next_payload(self) -> bytes | None:
        if payload := next(self._payloads, None):
            return payload
        now = asyncio.get_running_loop().time()
        due = self._stream.next_due(now)
        if due > now:
            self._wait(due)
        elif self._before_picture():
            self._payloads = self._stream.picture(now)
            return next(self._payloads, None)
        return None

    def _wait(self, due: float) -> None:
        if self._timer is None:
            self._timer = asyncio.get_running_loop().call_at(due, self._due)

    def _due(self) -> None:
        self._timer = None
        self._answer()


class IsochronousSource:
    """Sends so many packets a second, in steps; what comes too late is left out."""

    def __init__(self, send: Callable[[int], None], packets_a_second: float) -> None:
        self._send, self._rate = send, packets_a_second
        self._task: asyncio.Task[None] | None = None

    def start(self) -> None:
        if self._task is None:
            self._task = asyncio.get_running_loop().create_task(self._run())

    def stop(self) -> None:
        if self._task is not None:
            self._task.cancel()
            self._task = None

    async def _run(self) -> None:
        clock = asyncio.get_running_loop().time
        start, sent = clock(), 0
        while True:
            due = int((clock() - start) * self._rate)
            late = due - sent - int(10 * STEP * self._rate)
            sent += max(0, late)
            for number in range(sent, due):
                self._send(number)
            sent = due
            await asyncio.sleep(STEP)


class PacketsOfPictures:
    """Puts the payloads of a stream into isochronous packets."""

    def __init__(self, stream: Stream, connection: Connection, before_picture: Callable[[], bool]) -> None:
        self._stream, self._connection, self._before_picture = stream, connection, before_picture
        self._payloads: Iterator[bytes] = iter(())

    def send(self, number: int) -> None:
        self._connection.isochronous(number, self._stream.endpoint, self._payload())

    def _payload(self) -> bytes:
        if payload := next(self._payloads, None):
            return payload
        now = asyncio.get_running_loop().time()
        if self._stream.next_due(now) <= now and self._before_picture():
            self._payloads = self._stream.picture(now)
            return next(self._payloads, self._stream.nothing())
        return self._stream.nothing()
