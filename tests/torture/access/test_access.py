# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page on who may do what is true of a host on which an evening goes by."""

from __future__ import annotations

import os
import sys
from collections.abc import Iterator
from pathlib import Path

import page
import pytest
from observation import EVENING, File, Observation, observe

sys.path.append(str(Path(__file__).resolve().parent.parent))

from thoroughness import report

ORDINARY = {"with-services", *page.Processes().run_by}


@pytest.fixture(scope="module")
def seen() -> Observation:
    return observe()


def row_of(file: File) -> tuple[str, str] | None:
    rows = ((pattern, mode) for pattern, mode in page.file_rows() if (mode == "link") == (file.mode == "link"))
    return next((row for row in rows if page.fits(file.path, row[0])), None)


def test_every_file_is_in_the_table_with_its_mode(seen: Observation) -> None:
    assert [file.path for file in seen.files if row_of(file) is None] == []
    assert [(file.path, file.mode) for file in seen.files if row_of(file)[1] != file.mode] == []
    report(f"access: {len(seen.files)} files, {len(seen.commands)} commands with their environment")


def test_every_row_of_the_table_is_a_file(seen: Observation) -> None:
    assert set(page.file_rows()) - {row_of(file) for file in seen.files} == set()


def test_all_processes_and_files_belong_to_one_user(seen: Observation) -> None:
    assert seen.owners | {file.owner for file in seen.files} == {os.geteuid()}


def test_every_process_listens_where_the_table_says_and_nowhere_else(seen: Observation) -> None:
    of_guests = {"share-page": {"127.0.0.2:8080/tcp"}}  # beside the owner's pages, with --address
    assert seen.listening == page.Processes().listening | of_guests


def runs(seen: Observation) -> Iterator[tuple[str, str]]:
    """Each command with the nearest process of the table that it descends from."""
    processes: dict[int, str] = {}
    for command in seen.commands:
        pid: int | None = command.pid
        while pid is not None and pid not in processes:
            pid = seen.parents.get(pid)
        if pid is not None:
            yield processes[pid], command.program
        if command.program in ORDINARY:
            processes[command.pid] = command.program
        elif EVENING in command.line:
            processes[command.pid] = "evening"


def test_every_process_runs_what_the_table_says_and_nothing_else(seen: Observation) -> None:
    allowed = page.Processes().run_by
    found = {(process, program) for process, program in runs(seen) if process != "evening" and "python" not in program}
    assert {(process, program) for process, program in found if program not in allowed[process]} == set()
    assert {"login-service", "ffmpeg", "readcfg", "ln"} <= {program for _, program in found}


SECRETS = pytest.mark.parametrize("secret", page.secrets(), ids=lambda secret: secret.name)


def test_the_table_has_every_secret(seen: Observation) -> None:
    assert [secret.name for secret in page.secrets()] == list(seen.secrets)
    assert all(len(text) >= 8 for texts in seen.secrets.values() for text in texts) and all(seen.secrets.values())


@SECRETS
def test_a_secret_is_only_in_the_files_of_the_table(secret: page.Secret, seen: Observation) -> None:
    texts = seen.secrets[secret.name]
    holders = [file for file in seen.files if any(text.encode() in file.content for text in texts)]
    assert {file.path for file in holders} == set(secret.files)
    assert [file.path for file in holders if int(file.mode, 8) & 0o077] == []


@SECRETS
def test_a_secret_is_only_in_the_names_of_files_of_the_table(secret: page.Secret, seen: Observation) -> None:
    named = [file.path for file in seen.files if any(text in file.path for text in seen.secrets[secret.name])]
    assert [path for path in named if not any(page.fits(path, pattern) for pattern in secret.names)] == []
    assert bool(named) == bool(secret.names)


@SECRETS
def test_a_secret_is_only_in_the_command_lines_of_the_table(secret: page.Secret, seen: Observation) -> None:
    texts = seen.secrets[secret.name]
    shown = {command.program for command in seen.commands if any(text in command.line for text in texts)}
    assert shown == set(secret.commands)
