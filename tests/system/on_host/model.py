# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The channels as the rules make them, in memory: which device sits where, and which profile it serves.

It does not contain conflicts: which camera waits for which is tested separately.
"""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass, field
from typing import NamedTuple

ATTACHED, GONE, DISPLACED = 1, 0, -1
NONE = -1

class Camera(NamedTuple):
    """A camera that is plugged in."""

    slot: str
    name: str
    node: int


@dataclass
class ModelChannel:
    exists: int | None = None
    slot: str = ""
    device: str = ""
    profile: int = NONE
    node: int = NONE

    def knows(self, camera: Camera) -> bool:
        return (self.slot, self.device) == (camera.slot, camera.name)

    def attach(self, camera: Camera) -> None:
        self.exists, self.node = ATTACHED, camera.node

    def detach(self) -> None:
        self.exists, self.node = GONE, NONE


@dataclass
class Model:
    channels: list[ModelChannel] = field(default_factory=lambda: [ModelChannel() for _ in range(10)])

    def plug(self, camera: Camera) -> None:
        own, displaced = self._decisive_channel(camera)
        if own is not None:
            own.attach(camera)
            return
        chosen = self._place_for(camera.slot, displaced)
        if chosen is None:
            return
        chosen.slot, chosen.device = camera.slot, camera.name
        chosen.attach(camera)
        if displaced is not None:
            displaced.exists = DISPLACED

    def unplug(self, slot: str) -> None:
        for channel in self.channels:
            if channel.slot == slot and channel.exists == ATTACHED:
                channel.detach()
                return

    def assign(self, slot: str, profile: int) -> bool:
        """A displaced channel counts as attached here."""
        present = [it for it in self.channels if it.exists]
        holder = next((it for it in present if it.profile == profile), None)
        if holder is not None:
            return holder.slot == slot
        channel = next((it for it in present if it.slot == slot), None)
        if channel is None or channel.profile != NONE:
            return False
        channel.profile = profile
        return True

    def clear(self, profile: int) -> bool:
        channel = next((it for it in self.channels if it.profile == profile), None)
        if channel is None:
            return False
        channel.profile = NONE
        return True

    def start_up(self, cameras: Iterable[Camera]) -> None:
        """The cameras in the order in which the host lists them."""
        found: dict[int, Camera] = {}
        new = []
        for camera in cameras:
            number = next((number for number, it in enumerate(self.channels) if it.knows(camera)), None)
            if number is None:
                new.append(camera)
            else:
                found[number] = camera
        for number, channel in enumerate(self.channels):
            if channel.exists not in (ATTACHED, GONE):
                continue
            if number in found:
                channel.attach(found[number])
            else:
                channel.detach()
        for camera in new:
            self.plug(camera)

    def _decisive_channel(self, camera: Camera) -> tuple[ModelChannel | None, ModelChannel | None]:
        """Of the port's channels with a profile the first one that decides: the camera's own, or one whose camera was
        never unplugged, which is displaced."""
        for channel in self.channels:
            if channel.slot != camera.slot or channel.profile == NONE:
                continue
            if channel.knows(camera):
                return channel, None
            if channel.exists == ATTACHED:
                return None, channel
        return None, None

    def _place_for(self, slot: str, displaced: ModelChannel | None) -> ModelChannel | None:
        """The last channel without a profile that knows the port, as far as it is searched, else the first free one."""
        scanned = self.channels
        if displaced is not None:
            scanned = scanned[: next(number for number, it in enumerate(scanned) if it is displaced)]
        knowing = [it for it in scanned if it.slot == slot and it.profile == NONE]
        free = [it for it in self.channels if it.slot != slot and it.profile == NONE and it.exists != ATTACHED]
        return next(iter([*knowing[-1:], *free]), None)
