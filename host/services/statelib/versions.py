# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The versions of what runs on the host."""

from __future__ import annotations

import os
from typing import Any

from statelib import program


async def versions() -> dict[str, Any]:
    words = (await program.run("--version")).out.split()
    return {"usbdevctl": words[1], "library": words[3], "kernel": os.uname().release}
