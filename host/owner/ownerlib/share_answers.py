# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The share link of a profile."""

from __future__ import annotations

from dataclasses import replace

from statelib import actions, problems, program
from usbdev import UsbdevError, aio, web

from ownerlib.answers import SignedIn

SHORTEST_PASSWORD = 6  # characters; whoever tries shorter ones soon has one
LONGEST_PASSWORD = 31  # bytes


class Share(SignedIn):
    async def get(self, profile: str) -> None:
        self.finish(await actions.share(int(profile), "show"))

    async def put(self, profile: str) -> None:
        given = self.members({"on": bool}, {"password": str | None})
        if not given["on"]:
            await program.ask("share", "off", f"pf{profile}")
            await self.did("unshared", {"profile": int(profile)})
        elif given.get("password") is not None:
            await _protect(profile, given["password"])
            await self.did("password_set", {"profile": int(profile)})
        else:
            await program.ask("share", "on", f"pf{profile}")
            if "password" in given:
                await _open(int(profile))
            await self.did("password_removed" if "password" in given else "shared", {"profile": int(profile)})
        self.finish(await actions.share(int(profile), "show"))


class Renewal(SignedIn):
    async def post(self, profile: str) -> None:
        renewed = await actions.share(int(profile), "renew")
        await self.did("link_replaced", {"profile": int(profile)})
        self.finish(renewed)


async def _protect(profile: str, password: str) -> None:
    if len(password) < SHORTEST_PASSWORD or len(password.encode()) > LONGEST_PASSWORD or "\n" in password:
        raise problems.invalid(f"A password is one line of {SHORTEST_PASSWORD} characters to {LONGEST_PASSWORD} bytes.")
    done = await program.run("share", "on", f"pf{profile}", "--password-stdin", "--json", secret=password)
    program.answer_of(done)


async def _open(profile: int) -> None:
    """Takes the password away, for which the program has no command. The link changes, as with every stored password."""
    try:
        link = await aio.call(web.share_link, profile)
        await aio.call(web.set_share_link, replace(link, pwdenable=0, shrpwd=""))
    except UsbdevError:
        raise problems.host_away("The share link cannot be stored.") from None
