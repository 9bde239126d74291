# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Names of USB ports, as in the kernel: "3-1" on bus 3, "3-1.2" on the hub in port 3-1."""

from __future__ import annotations

import re
from typing import NamedTuple

from simlib.errors import SimError

MOST_TIERS = 6


class Port(NamedTuple):
    bus: int
    path: tuple[int, ...]

    @property
    def slot(self) -> str:
        return f"{self.bus}-{self.devpath}"

    @property
    def devpath(self) -> str:
        return ".".join(map(str, self.path))

    @property
    def hub(self) -> Port | None:
        """Returns the port of the hub that this port belongs to; None for a port of the root hub."""
        return Port(self.bus, self.path[:-1]) if len(self.path) > 1 else None


def parse_port(text: str) -> Port:
    match = re.fullmatch(r"([1-9]\d{0,2})-([1-9]\d{0,2}(?:\.[1-9]\d{0,2})*)", text)
    if match is None:
        raise SimError(f"'{text}' is not a USB port; ports look like 3-1 or, on a hub, 3-1.2")
    path = tuple(int(part) for part in match[2].split("."))
    if len(path) > MOST_TIERS:
        raise SimError(f"'{text}' is deeper than USB allows: at most {MOST_TIERS} numbers")
    return Port(int(match[1]), path)
