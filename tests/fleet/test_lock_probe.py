# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The wait for the lock of the configuration, as a scrape measures it."""

from __future__ import annotations

import asyncio
from fcntl import LOCK_EX, LOCK_NB, LOCK_SH, LOCK_UN, flock
from pathlib import Path

import pytest
from conftest import soon
from fleetlib import lock_probe
from fleetlib.lock_probe import LockProbe
from servicelib.counts import Counts


@pytest.fixture
def file(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    """The configuration."""
    made = tmp_path / "usbdev.conf"
    made.touch()
    monkeypatch.setattr(lock_probe, "CONFIGURATION", made)
    return made


@pytest.fixture
def waits(monkeypatch: pytest.MonkeyPatch) -> list[float]:
    """What was measured."""
    found: list[float] = []
    monkeypatch.setattr(lock_probe, "counts", counted := Counts())
    monkeypatch.setattr(counted, "add_time", lambda seconds, name: found.append(seconds))
    return found


def test_a_free_lock_is_taken_at_once_and_given_back(file: Path, waits: list[float]) -> None:
    asyncio.run(LockProbe().measure())
    with file.open() as other:
        flock(other, LOCK_EX | LOCK_NB)
    assert len(waits) == 1


def test_the_wait_lasts_as_long_as_somebody_has_the_lock(file: Path, waits: list[float]) -> None:
    async def scenario() -> None:
        with file.open() as other:
            flock(other, LOCK_SH)  # for which a change waits, too
            measuring = asyncio.create_task(LockProbe().measure())
            for _ in range(2):  # until its own task has begun, and with it the wait
                await asyncio.sleep(0)
            await asyncio.sleep(0.05)
            assert not measuring.done() and not waits
            flock(other, LOCK_UN)
            await measuring
        assert waits[0] >= 0.05

    asyncio.run(scenario())


def test_who_asks_meanwhile_waits_for_the_same_try(file: Path, waits: list[float]) -> None:
    async def scenario() -> None:
        probe = LockProbe()
        with file.open() as other:
            flock(other, LOCK_EX)
            asking = [asyncio.create_task(probe.measure()) for _ in range(20)]
            await asyncio.sleep(0.01)
            asking[0].cancel()
            flock(other, LOCK_UN)
            await asyncio.wait(asking)
        assert len(waits) == 1
        await probe.measure()
        assert len(waits) == 2

    asyncio.run(scenario())


def test_a_lock_that_nobody_gives_back_is_waited_for_only_so_long(file: Path, waits: list[float], monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(lock_probe, "LONGEST_SECONDS", 0.05)

    async def scenario() -> None:
        with file.open() as other:
            flock(other, LOCK_EX)
            await LockProbe().measure()
        await soon(lambda: len(waits) == 1)

    asyncio.run(scenario())
    assert waits[0] >= 0.05


def test_without_a_configuration_nothing_is_measured(file: Path, waits: list[float]) -> None:
    file.unlink()
    asyncio.run(LockProbe().measure())
    assert waits == []
