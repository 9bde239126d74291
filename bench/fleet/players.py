# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Many played hosts in a few processes, which do what they are told: see bench/measure-many-hosts."""

from __future__ import annotations

import asyncio
import json
import multiprocessing
from multiprocessing.connection import Connection as Pipe
from pathlib import Path
from random import Random
from typing import Any

from conftest import settings
from fleetlib import keeping
from played import PlayedHost, Value

PROCESSES = 2
Noted = list[tuple[str, float]]


def without_time(text: bytes) -> Value:
    """Returns a document without the time at which it was sent."""
    return {name: value for name, value in json.loads(text).items() if name != "time"}


class Player:
    """The hosts of one process."""

    def __init__(self, hosts: dict[str, PlayedHost]) -> None:
        self._hosts = hosts
        self._kept = [asyncio.create_task(keeping.keep(host.connection, host.work)) for host in hosts.values()]

    async def connect(self) -> None:
        """Returns when the broker has all states."""
        await asyncio.gather(*(host.taken.wait() for host in self._hosts.values()))

    async def storm(self, changes: int) -> None:
        """Each host changes so many times, each time when the broker has its state."""

        async def change(host: PlayedHost) -> None:
            for _ in range(changes):
                host.go_on()
                await host.taken.wait()

        await asyncio.gather(*map(change, self._hosts.values()))

    async def calm(self, seed: int, changes: int, per_second: float) -> Noted:
        """So many changes happen, at random moments on random hosts; returns when each was noted."""
        chance, loop = Random(seed), asyncio.get_running_loop()
        noted, moment = Noted(), loop.time()
        for turn in range(changes):
            moment += chance.expovariate(per_second)
            await asyncio.sleep(moment - loop.time())
            name = list(self._hosts)[turn % len(self._hosts)]
            await self._hosts[name].taken.wait()
            noted.append((name, self._hosts[name].go_on()))
        await self.connect()
        return noted

    async def truth(self) -> dict[str, Value]:
        return {name: host.truth() for name, host in self._hosts.items()}


async def _play(pipe: Pipe, names: list[str], lives: list[Path], port: int) -> None:
    keeping.say = lambda text: None  # of hundreds of hosts
    player = Player({name: PlayedHost(settings(port, name), life) for name, life in zip(names, lives)})
    while (order := await asyncio.to_thread(pipe.recv)) is not None:
        task, arguments = order
        pipe.send(await getattr(player, task)(*arguments))


def _process(pipe: Pipe, names: list[str], lives: list[Path], port: int) -> None:
    asyncio.run(_play(pipe, names, lives, port))


class Players:
    """All processes, each with its part of the hosts; the lives are given out in turn."""

    def __init__(self, count: int, port: int, lives: list[Path]) -> None:
        self._pipes = []
        for part in range(min(PROCESSES, count)):
            numbers = range(part, count, PROCESSES)
            here, there = multiprocessing.Pipe()
            arguments = (there, [f"host{number}" for number in numbers], [lives[number % len(lives)] for number in numbers], port)
            multiprocessing.Process(target=_process, args=arguments, daemon=True).start()
            self._pipes.append(here)

    def all(self, task: str, *arguments: Any) -> list[Any]:
        """Has each process do that, and returns their results."""
        for pipe in self._pipes:
            pipe.send((task, arguments))
        return [pipe.recv() for pipe in self._pipes]

    def end(self) -> None:
        for pipe in self._pipes:
            pipe.send(None)
