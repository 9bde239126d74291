# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "fleet-service"."""

from __future__ import annotations

import argparse
import asyncio
from pathlib import Path
from typing import Any

from servicelib import lifecycle
from statelib import sources
from statelib.picture import Picture
from statelib.problems import Problem
from statelib.versions import versions

from fleetlib import settings
from fleetlib.backlog import Backlog
from fleetlib.commands import Commands
from fleetlib.connection import Connection
from fleetlib.keeping import keep
from fleetlib.publisher import Publisher
from fleetlib.requests import Requests
from fleetlib.settings import Settings, SettingsError
from fleetlib.topics import Topics

WRONG_SETTINGS = 78  # after which the service manager does not start it again
UNKNOWN = {"usbdevctl": None, "library": None, "kernel": None}


async def _serve(given: Settings) -> None:
    publisher = Publisher(given, await _versions(), Backlog())
    picture = Picture(lambda section, value: None, publisher.note)
    sources.follow(picture.change, publisher.logged)
    work = [picture.follow(), keep(publisher.connection, publisher.work)]
    if given.commands is not None:
        commands = Commands(given, given.commands, Requests())
        work += [commands.follow(), keep(commands.connection, commands.work)]
    await _until_stopped(f"publishing to {given.broker.address}:{given.broker.port} as {given.host}", work)


async def _until_stopped(what: str, work: list[Any]) -> None:
    """Works until a signal ends that. What fails ends the service."""
    tasks = [asyncio.create_task(one) for one in work]
    stopped = asyncio.create_task(lifecycle.serve_until_stopped(what))
    done, _ = await asyncio.wait([*tasks, stopped], return_when=asyncio.FIRST_COMPLETED)
    for task in tasks:
        task.cancel()
    await asyncio.wait(tasks)
    for task in done:
        task.result()


async def _remove(given: Settings) -> None:
    """Removes what the broker keeps of this host."""
    topics = Topics(given.host, given.prefix)
    connection = Connection(given.broker, given.login, f"usbdev-{given.host}", lambda message: None)
    await connection.open()
    for topic in (topics.discovery, topics.availability, topics.state):
        await connection.publish(topic, b"", retain=True)
    connection.leave()


async def _versions() -> dict[str, Any]:
    try:
        return await versions()
    except Problem:
        return UNKNOWN


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(
        prog="fleet-service", description="Publishes the state and the events of the host to an MQTT broker."
    )
    parser.add_argument("--settings", metavar="FILE", type=Path, default=settings.FILE, help=f"settings (default: {settings.FILE})")
    parser.add_argument("--remove", action="store_true", help="remove from the broker what it keeps of this host, and end")
    options = parser.parse_args(arguments)
    try:
        given = settings.read(options.settings)
    except SettingsError as problem:
        lifecycle.say(str(problem))
        return WRONG_SETTINGS
    return lifecycle.run(_remove(given) if options.remove else _serve(given))
