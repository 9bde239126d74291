# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Functions of which only one may run at a time: logins in a process, device events on a host."""

from __future__ import annotations

import fcntl
import os
import threading
from collections.abc import Callable, Iterator
from contextlib import AbstractContextManager, contextmanager
from functools import wraps
from typing import ParamSpec, TypeVar

P = ParamSpec("P")
R = TypeVar("R")

# Every program that calls the library for a device event locks this file.
HOTPLUG_LOCK = "/var/lock/usbdev-hotplug.lock"


@contextmanager
def _device_events() -> Iterator[None]:
    """Holds the host's lock. Commands that the library runs do not inherit it."""
    file = os.open(HOTPLUG_LOCK, os.O_RDWR | os.O_CREAT | os.O_CLOEXEC | os.O_NOFOLLOW, 0o600)
    try:
        fcntl.flock(file, fcntl.LOCK_EX)
        yield
    finally:
        os.close(file)


class Turn:
    """Decorates functions of one kind, which run one after the other."""

    def __init__(self, lock: Callable[[], AbstractContextManager[object]]) -> None:
        self._lock = lock

    def __call__(self, function: Callable[P, R]) -> Callable[P, R]:
        @wraps(function)
        def in_turn(*arguments: P.args, **named: P.kwargs) -> R:
            with self._lock():
                return function(*arguments, **named)

        turns[in_turn] = self
        return in_turn


turns: dict[Callable[..., object], Turn] = {}  # of each decorated function
_login = threading.Lock()
login = Turn(lambda: _login)
device_event = Turn(_device_events)
