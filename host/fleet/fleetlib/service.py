# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "fleet-service"."""

from __future__ import annotations

import argparse
import asyncio
import signal
from collections.abc import Callable, Coroutine
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from servicelib import lifecycle
from servicelib.counts import counts
from statelib import sources
from statelib.picture import Picture
from statelib.problems import Problem
from statelib.versions import versions

from fleetlib import metrics, metrics_page, settings
from fleetlib.backlog import Backlog
from fleetlib.commands import Commands
from fleetlib.connection import Connection
from fleetlib.keeping import keep
from fleetlib.publisher import Publisher
from fleetlib.requests import Requests
from fleetlib.settings import Metrics, Settings, SettingsError
from fleetlib.topics import Topics

WRONG_SETTINGS = 78  # after which the service manager does not start it again
UNKNOWN = {"usbdevctl": None, "library": None, "kernel": None}

State = dict[str, Any]


@dataclass
class Part:
    """Of what the service does: what that is, who gets each state, who hears of new events and of a reload, and what runs
    meanwhile."""

    what: str
    note: Callable[[State | None], None]
    logged: Callable[[], None] = lambda: None
    reload: Callable[[], None] = lambda: None
    work: list[Coroutine[Any, Any, None]] = field(default_factory=list)


async def _serve(published: Settings | None, served: Metrics | None) -> None:
    counts.begin("fleet")
    version = await _versions()
    parts = [_publish(published, version)] if published is not None else []
    parts += [_show(served, version)] if served is not None else []

    def note(state: State | None) -> None:
        for part in parts:
            part.note(state)

    def logged() -> None:
        for part in parts:
            part.logged()

    def reload() -> None:
        for part in parts:
            part.reload()

    asyncio.get_running_loop().add_signal_handler(signal.SIGHUP, reload)
    picture = Picture(lambda section, value: None, note)
    sources.follow(picture.change, logged)
    work = [one for part in parts for one in part.work]
    await _until_stopped(", ".join(part.what for part in parts), [picture.follow(), *work])


def _publish(given: Settings, version: State) -> Part:
    publisher = Publisher(given, version, Backlog())
    work = [keep(publisher.connection, publisher.work)]
    if given.commands is not None:
        commands = Commands(given, given.commands, Requests())
        work += [commands.follow(), keep(commands.connection, commands.work)]
    what = f"publishing to {given.broker.address}:{given.broker.port} as {given.host}"
    return Part(what, publisher.note, publisher.logged, work=work)


def _show(given: Metrics, version: State) -> Part:
    host = metrics.Host(version)
    context = settings.server_context(given)
    where = metrics_page.listen(given, host, context)
    return Part(where, host.note, reload=lambda: metrics_page.read_certificate_again(given, context))


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


async def _remove(given: Settings | None) -> None:
    """Removes what the broker keeps of this host."""
    if given is None:
        return
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
        prog="fleet-service", description="Publishes the state and the events of the host to a broker, and serves metrics."
    )
    parser.add_argument("--settings", metavar="FILE", type=Path, default=settings.FILE, help=f"settings (default: {settings.FILE})")
    parser.add_argument("--remove", action="store_true", help="remove from the broker what it keeps of this host, and end")
    options = parser.parse_args(arguments)
    try:
        published, served = settings.read(options.settings)
    except SettingsError as problem:
        lifecycle.say(str(problem))
        return WRONG_SETTINGS
    return lifecycle.run(_remove(published) if options.remove else _serve(published, served))
