# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The programs that the sandbox puts into the host's folders, and where they come from."""

from __future__ import annotations

import os
from collections.abc import Iterator
from pathlib import Path

from boxlib.layout import HOST

SIM = HOST / "sim/bin"
OWN = HOST / "sandbox/bin"
SANDBOX = HOST / "sandbox/sandbox"
SERVICES = HOST / "services"
SHARE = HOST / "share"
OWNER = HOST / "owner"
FLEET = HOST / "fleet"
HOST_BIN = "/usr/host-bin"
HOST_SBIN = "/usr/host-sbin"

SERVICE_PROGRAMS = ("device-service", "login-service", "login-users", "manager-service", "streaming-service")
BUILT_FOR_BIN = ("usbdevctl", "gpuinfo_app", "hwinfo_app")
BUILT_FOR_SBIN = ("readcfg",)


class Programs:
    """The contents of /usr/bin and /usr/sbin in the sandbox: links to the machine's own programs, to the project's and to
    those of the build folder; the names of missing ones are in `missing`."""

    def __init__(self, build: Path) -> None:
        self._build = build
        self.missing: list[str] = []
        self.bin = self._machine_links("/usr/bin", HOST_BIN)
        self.sbin = self._machine_links("/usr/sbin", HOST_SBIN)
        self.bin |= {"ps": OWN / "ps", "sandbox": SANDBOX}
        self.bin |= {name: SIM / name for name in ("sim", "udevadm")} | {"v4l2-ctl": SIM / "v4l2-ctl-front"}
        self.sbin |= {"udevadm": SIM / "udevadm"}
        self.bin |= {name: SERVICES / name for name in SERVICE_PROGRAMS}
        self.bin |= {"share-page": SHARE / "share-page", "owner-page": OWNER / "owner-page", "fleet-service": FLEET / "fleet-service"}
        self.bin |= dict(self._built(BUILT_FOR_BIN))
        self.sbin |= dict(self._built(BUILT_FOR_SBIN))

    @staticmethod
    def _machine_links(folder: str, inside: str) -> dict[str, str | Path]:
        """Plain texts, because there are thousands."""
        return {name: f"{inside}/{name}" for name in os.listdir(folder)}

    def _built(self, names: tuple[str, ...]) -> Iterator[tuple[str, Path]]:
        for name in names:
            path = (self._build / name).resolve()
            if path.is_file():
                yield name, path
            else:
                self.missing.append(name)
