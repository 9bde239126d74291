# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Cameras that are plugged in and get no node for pictures."""

from __future__ import annotations

import asyncio
from collections.abc import Callable

from devicelib.world import World

SECONDS = 30  # a driver that has to be loaded first takes long on a small machine


class MissingNodes:
    """Reports such a camera once for each plug. Nothing announces that a node will not come, so each gets some time."""

    def __init__(self, report: Callable[[str], None]) -> None:
        self._report = report
        self._cameras: dict[tuple[str, int], asyncio.TimerHandle] = {}

    def follow(self, world: World) -> None:
        missing = {(slot, device.born) for slot, device in world.items() if device.has_video and device.camera() is None}
        for found in self._cameras.keys() - missing:
            self._cameras.pop(found).cancel()
        for new in missing - self._cameras.keys():
            self._cameras[new] = asyncio.get_running_loop().call_later(SECONDS, self._report, new[0])
