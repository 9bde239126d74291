# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How many notifications the manager has lost: the kernel drops those for which its socket has no room, and counts them."""

from __future__ import annotations

import socket
import sys
from pathlib import Path

TABLE = Path("/proc/net/udp")
PLACE, DROPS = 1, -1  # columns


def address(port: int) -> str:
    """Returns a port of the loopback address as the table has it."""
    return f"{int.from_bytes(socket.inet_aton('127.0.0.1'), sys.byteorder):08X}:{port:04X}"


ADDRESS = address(10171)


def of_manager() -> int:
    """Returns 0 if it does not run: a new socket begins with that too."""
    try:
        rows = [line.split() for line in TABLE.read_text(encoding="ascii").splitlines()]
        return sum(int(row[DROPS]) for row in rows if row[PLACE] == ADDRESS)
    except (OSError, ValueError, LookupError):
        return 0
