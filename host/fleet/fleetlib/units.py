# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whether a unit of the machine's service manager runs: its processes have a control group, which nobody else can make. So it is
seen of the login service, too, which may write nothing where the others count."""

from __future__ import annotations

from pathlib import Path

GROUPS = Path("/sys/fs/cgroup/system.slice")


def runs(unit: str) -> bool | None:
    """None without a service manager, as in the sandbox."""
    if not GROUPS.is_dir():
        return None
    try:
        return "populated 1" in (GROUPS / unit / "cgroup.events").read_text(encoding="ascii").splitlines()
    except OSError:
        return False
