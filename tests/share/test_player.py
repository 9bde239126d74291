# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How the share page's player is fetched, with an npm that only notes how it was called."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path

import pytest

SHARE = Path(__file__).resolve().parent.parent.parent / "host/share"


class Folder:
    """The share page's folder, and the programs before the system's own."""

    def __init__(self, folder: Path) -> None:
        self.folder, self.programs, self.calls = folder / "share", folder / "bin", folder / "calls"
        self.folder.mkdir()
        self.programs.mkdir()
        for name in ("install-player", "package.json", "package-lock.json"):
            shutil.copy(SHARE / name, self.folder)
        self.program("npm", f'echo "$*" >>{self.calls}; mkdir -p node_modules')

    def program(self, name: str, text: str) -> None:
        (self.programs / name).write_text(f"#!/bin/sh\n{text}\n")
        (self.programs / name).chmod(0o755)

    def install(self) -> subprocess.CompletedProcess[str]:
        environment = os.environ | {"PATH": f"{self.programs}:{os.environ['PATH']}"}
        return subprocess.run([self.folder / "install-player"], env=environment, capture_output=True, text=True)

    def fetched(self) -> list[str]:
        return self.calls.read_text().splitlines() if self.calls.exists() else []


@pytest.fixture
def share(tmp_path: Path) -> Folder:
    return Folder(tmp_path)


def test_it_is_fetched_once(share: Folder) -> None:
    assert share.install().returncode == 0
    assert share.install().returncode == 0
    assert len(share.fetched()) == 1


def test_another_version_is_fetched_again(share: Folder) -> None:
    share.install()
    lock = share.folder / "package-lock.json"
    lock.write_text(lock.read_text().replace('"1.', '"2.'))
    share.install()
    assert len(share.fetched()) == 2


def test_the_cache_is_asked_before_the_network(share: Folder) -> None:
    share.install()
    assert "--prefer-offline" in share.fetched()[0]


def test_a_file_that_was_not_loaded_is_tried_again(share: Folder) -> None:
    share.program("npm", "mkdir -p node_modules; echo the reason >&2; exit 1")
    failed = share.install()
    assert failed.returncode == 1
    assert failed.stderr == "the reason\ninstall-player: the player was not fetched, which takes a network once\n"
    share.program("npm", f"echo >>{share.calls}")
    assert share.install().returncode == 0
    assert len(share.fetched()) == 1


def test_a_network_without_an_answer_is_waited_for_no_longer_than_a_minute(share: Folder) -> None:
    share.program("timeout", f'echo "timeout $1 $2" >>{share.calls}; exit 124')
    failed = share.install()
    assert share.fetched() == ["timeout 60 npm"]
    assert failed.returncode == 1 and "takes a network once" in failed.stderr
