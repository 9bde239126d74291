# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What services count, in their files."""

from __future__ import annotations

import asyncio
import json
import os
import stat
import subprocess
import sys
from collections.abc import Callable
from fcntl import LOCK_NB, LOCK_SH, flock
from pathlib import Path
from typing import Any

import pytest
from conftest import REPOSITORY
from servicelib import counts
from servicelib.counts import Counts

ENVIRONMENT = {**os.environ, "PYTHONPATH": str(REPOSITORY / "host/services")}


@pytest.fixture(autouse=True)
def folder(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    monkeypatch.setattr(counts, "FOLDER", tmp_path / "counts")
    monkeypatch.setattr(counts, "PAUSE_SECONDS", 0.01)
    return counts.FOLDER


def content(folder: Path, service: str = "pages") -> Any:
    return json.loads((folder / service).read_text())


async def soon(condition: Callable[[], object]) -> None:
    while not condition():
        await asyncio.sleep(0.005)


def test_the_file_is_there_from_the_begin(folder: Path) -> None:
    Counts().begin("pages")
    assert content(folder) == {"numbers": [], "times": []}
    assert stat.S_IMODE((folder / "pages").stat().st_mode) == 0o640 and stat.S_IMODE(folder.stat().st_mode) == 0o750


def test_what_is_counted_is_written_soon_and_together(folder: Path) -> None:
    async def scenario() -> None:
        made = Counts()
        made.begin("pages")
        first = (folder / "pages").stat().st_ino
        for _ in range(1000):
            made.add("plug_events", "camera", "plugged")
        made.add_time(0.5, "commands", "explain")
        assert (folder / "pages").stat().st_ino == first
        await soon(lambda: content(folder)["numbers"])
        assert content(folder)["numbers"] == [["plug_events", "camera", "plugged", 1000]]
        assert content(folder)["times"] == [["commands", "explain", 0.5, [0, 0, 0, 0, 0, 1, 0, 0, 0, 0]]]

    asyncio.run(scenario())


def test_it_is_not_written_more_often_than_that(folder: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    async def scenario() -> None:
        made, written = Counts(), list[None]()
        made.begin("pages")
        monkeypatch.setattr(made, "write", lambda: written.append(None))
        for _ in range(1000):
            made.add("plug_events", "camera", "plugged")
        await soon(lambda: written)
        await asyncio.sleep(0.05)
        assert len(written) == 1

    asyncio.run(scenario())


def is_locked(file: Path) -> bool:
    with file.open() as opened:
        try:
            flock(opened, LOCK_SH | LOCK_NB)
        except BlockingIOError:
            return True
    return False


def test_the_file_is_locked_as_long_as_the_service_runs_also_while_it_runs_programs(folder: Path) -> None:
    service = (
        "import subprocess, sys; from pathlib import Path; from servicelib import counts; counts.FOLDER = Path(sys.argv[1])\n"
        "counts.counts.begin('pages'); counts.counts.write()\n"
        "subprocess.Popen(['sleep', '60'], stdout=subprocess.DEVNULL); print('ready', flush=True); input()"
    )
    with subprocess.Popen([sys.executable, "-c", service, folder], stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=ENVIRONMENT) as process:
        assert process.stdout is not None and process.stdout.readline() == b"ready\n"
        assert is_locked(folder / "pages")
        process.kill()
        process.wait()
    assert not is_locked(folder / "pages")


def test_a_time_belongs_to_the_first_bound_that_is_not_shorter(folder: Path) -> None:
    made = Counts()
    for seconds in (0, 0.003, 0.0031, 30, 31):
        made.add_time(seconds, "commands", "explain")
    made.begin("pages")
    assert content(folder)["times"][0][-1] == [2, 1, 0, 0, 0, 0, 0, 0, 1, 1]


def test_what_fails_took_its_time_too(folder: Path) -> None:
    made = Counts()
    with pytest.raises(KeyError), made.timed("commands", "explain"):
        raise KeyError
    made.begin("pages")
    assert sum(content(folder)["times"][0][-1]) == 1


def test_what_was_counted_before_the_begin_is_not_forgotten(folder: Path) -> None:
    made = Counts()
    made.add("plug_events", "camera", "plugged")
    made.begin("devices")
    assert content(folder, "devices")["numbers"] == [["plug_events", "camera", "plugged", 1]]


def test_a_service_works_where_it_cannot_write(folder: Path) -> None:
    folder.parent.joinpath("counts").write_text("no folder")

    async def scenario() -> None:
        made = Counts()
        made.begin("pages")
        made.add("plug_events", "camera", "plugged")
        await asyncio.sleep(0.05)

    asyncio.run(scenario())


def test_nothing_that_somebody_else_put_there_is_written_to(folder: Path) -> None:
    folder.mkdir()
    other = folder.parent / "other"
    other.write_text("precious")
    (folder / ".pages").symlink_to(other)
    (folder / "pages").symlink_to(other)
    Counts().begin("pages")
    assert other.read_text() == "precious" and content(folder)["numbers"] == []
