# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A call of the library, in a process of its own, that meets a neighbour."""

from __future__ import annotations

import os
import subprocess
import tempfile
import time
from collections.abc import Iterator
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path
from select import select
from typing import Protocol

from row import Row

BUILD = Path(os.environ["LD_LIBRARY_PATH"].split(":")[0])
PROGRAM = BUILD / "tests/torture/neighbours/neighbour_caller"
# What a reader that holds the lock may take from others, who have to find it free again after it.
MEANWHILE_SECONDS = 10
A_WHILE = 0.1


class Neighbour(Protocol):
    def await_call(self) -> None:
        """Returns when the neighbour keeps the call waiting."""

    def leave(self) -> None:
        """Lets the call go."""


@dataclass(frozen=True)
class Answer:
    result: int | None
    text: str
    messages: bytes
    seconds: float
    megabytes: float


class Caller:
    """The process; the lines that it reports are awaited one by one."""

    def __init__(self, call: str, argument: str, seconds: float) -> None:
        self._start = time.monotonic()
        self._deadline = self._start + seconds
        self._from, report = os.pipe()
        self._lines = b""
        self._messages = tempfile.TemporaryFile()
        self._process = subprocess.Popen(
            [PROGRAM, str(report), call, argument],
            stdin=subprocess.PIPE, stdout=self._messages, stderr=self._messages, pass_fds=[report],
        )  # fmt: skip
        os.close(report)
        self.await_line("begun", seconds)

    def ask_meanwhile(self) -> None:
        assert self._process.stdin is not None
        self._process.stdin.write(b"?")
        self._process.stdin.flush()

    def await_line(self, name: str, seconds: float) -> str | None:
        """Returns the rest of the line with that name; None when it does not come."""
        deadline = time.monotonic() + seconds
        while (found := self._line(name)) is None:
            left = max(0, deadline - time.monotonic())  # what has come counts, however late it is looked for
            if not select([self._from], [], [], left)[0]:
                return None
            part = os.read(self._from, 65536)
            if not part:
                return self._line(name)
            self._lines += part
        return found

    def _line(self, name: str) -> str | None:
        lines = (line.partition(" ") for line in self._lines.decode().split("\n")[:-1])
        return next((rest for first, _, rest in lines if first == name), None)

    def answer(self) -> Answer:
        """Waits for the end of the process, up to the bound."""
        assert self._process.wait(max(0.01, self._deadline - time.monotonic())) == 0, self.messages()
        result = self.await_line("result", 0.01)
        grown = self.await_line("grown", 0.01)
        assert grown is not None, self.messages()
        return Answer(
            result=None if result is None else int(result),
            text=self.await_line("text", 0.01) or "",
            messages=self.messages(),
            seconds=time.monotonic() - self._start,
            megabytes=int(grown) / 1024,
        )

    def messages(self) -> bytes:
        self._messages.seek(0)
        return self._messages.read(65536)

    def end(self) -> None:
        self._process.kill()
        self._process.wait()
        assert self._process.stdin is not None
        self._process.stdin.close()
        self._messages.close()
        os.close(self._from)


@contextmanager
def calling(call: str, argument: str, seconds: float) -> Iterator[Caller]:
    caller = Caller(call, argument, seconds)
    try:
        yield caller
    finally:
        caller.end()


def meet(row: Row, neighbour: Neighbour | None, argument: str) -> Answer:
    """Makes the row's call, and compares what comes of it, in which time and memory."""
    with calling(row.meets, argument, row.seconds) as caller:
        if row.outcome.waits and neighbour is not None:
            neighbour.await_call()
            _look_on(caller, row.outcome.locks)
            neighbour.leave()
        answer = caller.answer()
        assert answer.result == row.outcome.result, answer
        assert row.outcome.text in (None, answer.text)
        assert answer.megabytes <= row.megabytes
    return answer


def _look_on(caller: Caller, locks: bool) -> None:
    """The call waits; another one is answered meanwhile, unless the first holds the lock."""
    caller.ask_meanwhile()
    if not locks:
        assert caller.await_line("other", MEANWHILE_SECONDS) == "0"
    assert caller.await_line("result", A_WHILE) is None
    if locks:
        assert caller.await_line("other", A_WHILE) is None
