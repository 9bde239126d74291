# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How other machines reach this one, which owners are told with the links that they give away."""

from __future__ import annotations

import socket

from sharelib.service import is_loopback

EVERYWHERE = ("0.0.0.0", "::")
SOMEWHERE = {socket.AF_INET: "192.0.2.1", socket.AF_INET6: "2001:db8::1"}  # addresses that nobody has
ANY_PORT = 9


def address(served: str) -> str | None:
    """Returns the address of the same kind that this machine has in its network; None if it is in none."""
    family = socket.AF_INET6 if ":" in served else socket.AF_INET
    try:
        with socket.socket(family, socket.SOCK_DGRAM) as probe:
            probe.connect((SOMEWHERE[family], ANY_PORT))  # which sends nothing
            return str(probe.getsockname()[0])
    except OSError:
        return None


def is_open(served: str) -> bool:
    """Checks whether the pages are served to other machines, if there are any."""
    return not is_loopback(served)


def origin(served: str, port: int) -> str | None:
    """Returns the beginning of the pages' addresses for other machines; None if none can open them."""
    host = address(served) if served in EVERYWHERE else served
    if host is None or not is_open(host):
        return None
    return f"http://[{host}]:{port}" if ":" in host else f"http://{host}:{port}"
