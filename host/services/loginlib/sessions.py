# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The open sessions. They end at the logout, when no request has asked for them for some time, and with the service."""

from __future__ import annotations

import secrets
import time
from collections.abc import Callable

IDLE_SECONDS = 30 * 60


class Sessions:
    def __init__(self, clock: Callable[[], float] = time.monotonic) -> None:
        self._clock = clock
        self._last_use: dict[str, float] = {}

    def open(self) -> str:
        self._forget_idle()
        session = secrets.token_hex(16)
        self._last_use[session] = self._clock()
        return session

    def use(self, session: str) -> bool:
        """Returns whether the session is open, and keeps it open."""
        self._forget_idle()
        if session not in self._last_use:
            return False
        self._last_use[session] = self._clock()
        return True

    def close(self, session: str) -> bool:
        """Closes the session; returns whether it was open."""
        self._forget_idle()
        return self._last_use.pop(session, None) is not None

    def _forget_idle(self) -> None:
        oldest = self._clock() - IDLE_SECONDS
        self._last_use = {session: used for session, used in self._last_use.items() if used > oldest}
