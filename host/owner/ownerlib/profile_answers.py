# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is asked and changed of one profile: its name, its camera and its stream."""

from __future__ import annotations

from statelib import actions, problems, program
from statelib.stream_settings import KINDS, differences
from usbdev.records import CHANNELS

from ownerlib.answers import SignedIn

LONGEST_NAME = 255  # bytes
CHANNEL_NUMBERS = [str(number) for number in range(CHANNELS)]
NO_CHANNEL = f"The request needs a channel, 0 to {CHANNELS - 1}."


class Name(SignedIn):
    async def put(self, profile: str) -> None:
        name = self.members({"name": str})["name"]
        if len(name.encode()) > LONGEST_NAME:
            raise problems.invalid(f"The name has more than {LONGEST_NAME} bytes.")
        renamed = await program.ask("rename", f"pf{profile}", "--", name)
        before = self.camera(profile=int(profile)) or {"name": ""}
        await self.did("renamed", {"profile": int(profile)}, name=renamed["profile_name"], before=before["name"])
        self.finish({"name": renamed["profile_name"]})


class Move(SignedIn):
    """The profile on another camera, and before that, what would change."""

    async def get(self, profile: str) -> None:
        channel = self.get_query_argument("channel", "")
        if channel not in CHANNEL_NUMBERS:
            raise problems.invalid(NO_CHANNEL)
        planned = await program.ask("move", profile, f"ch{channel}", "--dry-run", seconds=program.SECONDS_WITH_CAMERA)
        self.finish({"differences": differences(planned)})

    async def post(self, profile: str) -> None:
        channel = self.members({"channel": int})["channel"]
        if channel not in range(CHANNELS):
            raise problems.invalid(NO_CHANNEL)
        moved = await program.ask("move", profile, f"ch{channel}", seconds=program.SECONDS_WITH_CAMERA)
        to = self.camera(channel=channel) or {"name": "", "port": ""}
        await self.did("moved", {"profile": int(profile)}, camera=to["name"], port=to["port"])
        self.finish({"differences": differences(moved), "page": moved["page"]})


class Stream(SignedIn):
    async def patch(self, profile: str) -> None:
        stored = await actions.set_stream(int(profile), self.members({}, KINDS))
        taken = {name: value for name, value in stored["taken"].items() if name not in stored["not_stored"] and value is not None}
        await self.did("changed", {"profile": int(profile)}, settings=taken)
        self.finish(stored)
