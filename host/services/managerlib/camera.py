# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The node of a camera."""

from __future__ import annotations

import os
import stat
from contextlib import suppress

NODE = "/dev/video{}"
SIMULATED_SETTING = "/run/usbdev-sim/nodes/video{}/setting"
Identity = tuple[int, ...]


def identity(node: int) -> Identity | None:
    """Returns what is different when a camera was plugged in again, and when udev has set its permissions; None without a
    node."""
    status = _status(node)
    return status and (status.st_ino, status.st_rdev, status.st_mode, status.st_uid, status.st_gid)


def is_simulated(node: int) -> bool:
    """Checks whether the node is a plain file, as those of simulated cameras are."""
    status = _status(node)
    return status is not None and stat.S_ISREG(status.st_mode)


def simulate_stream(node: int, streams: bool) -> None:
    """Reserves bandwidth for a simulated camera as long as it streams, as the kernel does for a real one."""
    with suppress(OSError), open(SIMULATED_SETTING.format(node), "r+", encoding="ascii") as setting:
        setting.write(f"{int(streams):2}\n")


def _status(node: int) -> os.stat_result | None:
    try:
        return os.stat(NODE.format(node))
    except OSError:
        return None
