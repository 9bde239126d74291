# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How other machines reach this one, which owners are told with the links that they give away."""

from __future__ import annotations

import socket

from sharelib.service import is_loopback

EVERYWHERE = ("0.0.0.0", "::")
SOMEWHERE = ("192.0.2.1", 9)  # an address that nobody has


def address() -> str | None:
    """Returns the address that this machine has in its network; None if it is in none."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        try:
            probe.connect(SOMEWHERE)  # which sends nothing
        except OSError:
            return None
        return str(probe.getsockname()[0])


def origin(served: str, port: int) -> str | None:
    """Returns the beginning of the pages' addresses for other machines; None if the pages are served to this one only."""
    host = address() if served in EVERYWHERE else served
    if host is None or is_loopback(host):
        return None
    return f"http://[{host}]:{port}" if ":" in host else f"http://{host}:{port}"
