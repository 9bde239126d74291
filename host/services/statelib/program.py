# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""usbdevctl, which decides what the library leaves to its callers: its answers are those that a terminal shows."""

from __future__ import annotations

import asyncio
import json
from asyncio.subprocess import DEVNULL, PIPE
from dataclasses import dataclass
from typing import Any

from servicelib.counts import counts

from statelib.problems import Problem, host_away

PROGRAM = "/usr/bin/usbdevctl"
SECONDS = 20
# Of cameras that do not answer the library lets go after 15 seconds each.
SECONDS_WITH_CAMERA = 60
OK, REFUSED, MISUSED, NOTHING = range(4)
NO_CAMERA = "has no camera; there are:"


@dataclass(frozen=True)
class Done:
    status: int
    out: str
    err: str

    @property
    def object(self) -> dict[str, Any]:
        """Returns what the program printed with --json."""
        try:
            return dict(json.loads(self.out))
        except ValueError:
            raise host_away("The channel configuration cannot be read.") from None

    @property
    def complaints(self) -> list[str]:
        """Returns what the program said on standard error, without its name; the library's own messages have none."""
        return [line.removeprefix("usbdevctl: ") for line in self.err.splitlines() if line.startswith("usbdevctl: ")]


async def run(*arguments: str, secret: str | None = None, seconds: float = SECONDS) -> Done:
    """Runs the program with the arguments; the secret is a line of its standard input, because all can read command lines."""
    with counts.timed("commands", arguments[0].removeprefix("--")):
        return await _run(*arguments, secret=secret, seconds=seconds)


async def _run(*arguments: str, secret: str | None, seconds: float) -> Done:
    try:
        process = await asyncio.create_subprocess_exec(
            PROGRAM, *arguments, stdin=DEVNULL if secret is None else PIPE, stdout=PIPE, stderr=PIPE)
    except OSError:
        raise host_away("The program usbdevctl cannot be started.") from None
    line = None if secret is None else f"{secret}\n".encode()
    try:
        async with asyncio.timeout(seconds):
            out, err = await process.communicate(line)
    except TimeoutError:
        raise host_away(f"The host did not answer within {seconds:.0f} seconds.") from None
    finally:
        if process.returncode is None:
            process.kill()
            await process.wait()
    return Done(process.returncode or 0, out.decode(errors="replace"), err.decode(errors="replace"))


async def ask(*arguments: str, seconds: float = SECONDS) -> dict[str, Any]:
    """Returns the program's JSON; raises Problem if it failed, or there is nothing to which the request applies."""
    return answer_of(await run(*_with_json(arguments), seconds=seconds))


def answer_of(done: Done) -> dict[str, Any]:
    if done.status not in (OK, NOTHING):
        raise failed(done)
    if not done.out:
        raise _nothing_there(done)
    return done.object


def _with_json(arguments: tuple[str, ...]) -> list[str]:
    """Puts the option before "--", after which every word is an argument."""
    place = arguments.index("--") if "--" in arguments else len(arguments)
    return [*arguments[:place], "--json", *arguments[place:]]


def failed(done: Done) -> Problem:
    """Returns the problem for a call that ended with an error: what the program said, as sentences."""
    why, *advice = done.complaints or ["usbdevctl failed"]
    if why.startswith("the channel configuration cannot be read"):
        return host_away("The channel configuration cannot be read.")
    if why.endswith(NO_CAMERA):
        return _nothing_there(done)
    if refusal := _refusal(done):
        return Problem(409, "refused", " ".join(map(sentence, done.complaints)), why=why, advice=None, **refusal)
    told = {"reason": "failed", "why": why, "advice": advice[0] if advice else None}
    return Problem(409, "refused", sentence(why), sentence(advice[0]) if advice else None, **told)


def _refusal(done: Done) -> dict[str, Any]:
    """Returns the name and the values of the first refusal, if the program printed them."""
    try:
        first = json.loads(done.out)["refusals"][0]
    except (ValueError, LookupError):
        return {}
    return {name: first[name] for name in ("reason", "other_channel", "collision")}


def _nothing_there(done: Done) -> Problem:
    """Returns the problem for a channel or profile without a camera; the program lists all others after it."""
    why = (done.complaints or ["there is nothing here"])[0]
    return Problem(404, "not_found", sentence(why.partition("; there are:")[0]), None)


def sentence(text: str) -> str:
    return text[:1].upper() + text[1:] + "."
