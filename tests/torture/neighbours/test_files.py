# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whatever the configuration file is, a call ends as it is described, and a damaged file stays as it is."""

from __future__ import annotations

import os
import shutil
from collections.abc import Iterator
from dataclasses import replace

import meeting
import pytest
from conftest import CONFIGURATION, Figures
from files import LOCKED, READ, TABLE, WHOLE, FileOutcome, Placing
from row import Outcome, Row, named

FOLDER = CONFIGURATION.parent


def remove() -> None:
    if CONFIGURATION.is_dir() and not CONFIGURATION.is_symlink():
        shutil.rmtree(CONFIGURATION)
    CONFIGURATION.unlink(missing_ok=True)


@pytest.fixture(autouse=True)
def no_file() -> Iterator[None]:
    remove()
    yield
    remove()


def place(neighbour: bytes | Placing) -> None:
    if isinstance(neighbour, bytes):
        CONFIGURATION.write_bytes(neighbour)
    else:
        neighbour(CONFIGURATION)


def state() -> tuple[object, ...]:
    """What must not change: the names of the folder, what stands in the file's place, and where a link leads."""
    found = os.lstat(CONFIGURATION)
    leads = os.readlink(CONFIGURATION) if CONFIGURATION.is_symlink() else ""
    return sorted(os.listdir(FOLDER)), found.st_ino, found.st_mode, found.st_size, found.st_mtime_ns, leads


def read(row: Row, outcome: FileOutcome) -> meeting.Answer:
    answer = meeting.meet(row, None, "")
    message = f"open:[{CONFIGURATION}] failed, ret: {outcome.code}\n"
    assert answer.messages.decode() == (message if outcome.code else "")
    return answer


@pytest.mark.parametrize(**named(TABLE))
def test_a_file(row: Row, figures: Figures) -> None:
    outcome = row.outcome
    assert isinstance(outcome, FileOutcome)
    place(row.neighbour)
    before = state()
    answer = read(row, outcome)
    figures.add(answer.seconds, answer.megabytes)
    meeting.meet(replace(row, meets="write a name", outcome=Outcome("", outcome.written)), None, "Renamed")
    assert outcome.written == 0 or state() == before
    read(row, outcome)


@pytest.mark.parametrize(**named(LOCKED))
def test_a_locked_file(row: Row, figures: Figures) -> None:
    CONFIGURATION.write_bytes(WHOLE)
    row.neighbour.begin(CONFIGURATION)
    read(replace(row, meets="read a channel", outcome=READ), READ)
    answer = meeting.meet(row, row.neighbour, "Renamed")
    figures.add(answer.seconds, answer.megabytes)
