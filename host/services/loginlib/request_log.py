# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The log of requests, one JSON object per line. It shows who asked for what, but no password, and no whole session."""

from __future__ import annotations

import json
import os
from datetime import datetime, timezone
from pathlib import Path

DEFAULT_FILE = Path("/var/log/vl/login-requests.log")
STANDARD_OUTPUT = Path("-")
# Enough to distinguish sessions, but not enough to use one.
SHOWN_OF_A_SESSION = 8


class RequestLog:
    def __init__(self, file: Path) -> None:
        self._out = open(_opened(file), "w", encoding="utf-8", buffering=1)

    def add(self, client: str, path: str, status: int, facts: dict[str, object]) -> None:
        time = datetime.now(timezone.utc).isoformat(timespec="seconds")
        entry = {"time": time, "client": client, "path": path, "status": status, **facts}
        self._out.write(json.dumps(entry) + "\n")


def _opened(file: Path) -> int:
    if file == STANDARD_OUTPUT:
        return os.dup(1)
    file.parent.mkdir(parents=True, exist_ok=True)
    return os.open(file, os.O_WRONLY | os.O_APPEND | os.O_CREAT, 0o600)


def shown(session: str) -> str:
    return session[:SHOWN_OF_A_SESSION]
