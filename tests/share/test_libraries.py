# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How the libraries of the web pages are fetched, with an npm that only notes how it was called."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path

import pytest

WEB = Path(__file__).resolve().parent.parent.parent / "host/web"
FILES = {"preact.js", "qrcode.js", "uplot.js", "uPlot.min.css", "package-lock.json"}


# Makes the files that npm would fetch.
MAKE = "mkdir -p node_modules; cd node_modules; " + "; ".join(
    f"mkdir -p $(dirname {file}); touch {file}"
    for file in ("uplot/dist/uPlot.min.css", "uplot/dist/uPlot.esm.js",
                 "htm/preact/standalone.module.js", "qrcode-generator/dist/qrcode.mjs"))


class Folder:
    """The folder of the web pages' libraries, and the programs before the system's own."""

    def __init__(self, folder: Path) -> None:
        self.folder, self.programs, self.calls = folder / "web", folder / "bin", folder / "calls"
        self.folder.mkdir()
        self.programs.mkdir()
        for name in ("install-libraries", "package.json", "package-lock.json"):
            shutil.copy(WEB / name, self.folder)
        self.program("npm", f'echo "$*" >>{self.calls}; {MAKE}')

    def program(self, name: str, text: str) -> None:
        (self.programs / name).write_text(f"#!/bin/sh\n{text}\n")
        (self.programs / name).chmod(0o755)

    def install(self) -> subprocess.CompletedProcess[str]:
        environment = os.environ | {"PATH": f"{self.programs}:{os.environ['PATH']}"}
        return subprocess.run([self.folder / "install-libraries"], env=environment, capture_output=True, text=True)

    def fetched(self) -> list[str]:
        return self.calls.read_text().splitlines() if self.calls.exists() else []


@pytest.fixture
def web(tmp_path: Path) -> Folder:
    return Folder(tmp_path)


def test_they_are_fetched_once(web: Folder) -> None:
    assert web.install().returncode == 0
    assert web.install().returncode == 0
    assert len(web.fetched()) == 1


def test_only_what_the_pages_load_is_served(web: Folder) -> None:
    web.install()
    assert {file.name for file in (web.folder / "libraries").iterdir()} == FILES


def test_another_version_is_fetched_again(web: Folder) -> None:
    web.install()
    lock = web.folder / "package-lock.json"
    lock.write_text(lock.read_text().replace('"1.', '"2.', 1))
    web.install()
    assert len(web.fetched()) == 2


def test_the_cache_is_asked_before_the_network(web: Folder) -> None:
    web.install()
    assert "--prefer-offline" in web.fetched()[0]


def test_a_file_that_was_not_loaded_is_tried_again(web: Folder) -> None:
    web.program("npm", f"{MAKE}; echo the reason >&2; exit 1")
    failed = web.install()
    assert failed.returncode == 1
    assert failed.stderr == "the reason\ninstall-libraries: the libraries were not fetched, which takes a network once\n"
    web.program("npm", f"echo >>{web.calls}; {MAKE}")
    assert web.install().returncode == 0
    assert len(web.fetched()) == 1


def test_a_network_without_an_answer_is_waited_for_no_longer_than_a_minute(web: Folder) -> None:
    web.program("timeout", f'echo "timeout $1 $2" >>{web.calls}; exit 124')
    failed = web.install()
    assert web.fetched() == ["timeout 60 npm"]
    assert failed.returncode == 1 and "takes a network once" in failed.stderr
