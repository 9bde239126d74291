# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What is asked and changed of one channel."""

from __future__ import annotations

from typing import Any

from statelib import actions, problems, program
from statelib.problems import Problem

from ownerlib.answers import SignedIn


class Formats(SignedIn):
    """What the camera offers, which it is asked for."""

    async def get(self, channel: str) -> None:
        asked = await program.ask("formats", f"ch{channel}", seconds=program.SECONDS_WITH_CAMERA)
        found: dict[str, list[Any]] = {}
        for offered in asked["formats"]:
            found.setdefault(offered["codec"], []).extend(offered["sizes"])
        self.finish({"codecs": [{"codec": codec, "sizes": sizes} for codec, sizes in found.items()]})


class Assignment(SignedIn):
    """Whether a camera may get a profile, and if not, why."""

    async def get(self, channel: str) -> None:
        profile = self.get_query_argument("profile", "")
        if profile not in ("0", "1", "2", "3"):
            raise problems.invalid("The request has no proper profile.")
        self.finish(await check(channel, profile))


class ChannelProfile(SignedIn):
    async def put(self, channel: str) -> None:
        given = self.members({"profile": int}, {"anyway": bool})
        if given["profile"] not in range(4):
            raise problems.invalid("The request has no proper profile.")
        anyway = ("--anyway",) if given.get("anyway") else ()
        profile = str(given["profile"])
        done = await program.run("assign", f"ch{channel}", profile, *anyway, "--json", seconds=program.SECONDS_WITH_CAMERA)
        if done.status == program.REFUSED:
            raise await _refusal(channel, profile, done)
        assigned = program.answer_of(done)
        await self.did("started", {"channel": int(channel)}, profile=given["profile"])
        self.finish({"now_waiting": assigned["now_waiting"]})

    async def delete(self, channel: str) -> None:
        await program.ask("clear", f"ch{channel}")
        await self.did("ended", {"channel": int(channel)})
        self.finish_empty()


class Switch(SignedIn):
    async def put(self, channel: str) -> None:
        given = self.members({"on": bool}, {"for": int})
        switched = await actions.switch(int(channel), given["on"])
        where = {"channel": int(channel)}
        other = self.camera(**where)
        if "for" in given and other:
            await self.did("instead", {"channel": given["for"]}, switched=where, **other)
        else:
            await self.did("switched_on" if given["on"] else "switched_off", where)
        self.finish(switched)


class Channel(SignedIn):
    async def delete(self, channel: str) -> None:
        await program.ask("forget", f"ch{channel}")
        await self.did("forgotten", {"channel": int(channel)})
        self.finish_empty()


async def check(channel: str, profile: str) -> dict[str, Any]:
    checked = await program.ask("check", f"ch{channel}", profile, seconds=program.SECONDS_WITH_CAMERA)
    return {name: checked[name] for name in ("allowed", "reason", "other_channel", "collision", "why", "advice")}


async def _refusal(channel: str, profile: str, done: program.Done) -> Problem:
    """Returns the refusal with its name, which only the check tells."""
    checked = await check(channel, profile)
    if checked["allowed"]:  # by now, or something else failed
        return program.failed(done)
    cure = checked["advice"] and program.sentence(checked["advice"])
    told = {name: checked[name] for name in ("reason", "other_channel", "collision", "why", "advice")}
    return Problem(409, "refused", program.sentence(checked["why"]), cure, **told)
