# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the system tests share: a simulated host in a folder, and whole hosts in the sandbox."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Callable, Iterator
from contextlib import ExitStack
from pathlib import Path

import pytest

sys.dont_write_bytecode = True
REPOSITORY = Path(__file__).resolve().parent.parent.parent
SANDBOX = REPOSITORY / "host/sandbox/sandbox"
sys.path[:0] = [str(REPOSITORY / "host/sim"), str(REPOSITORY / "tests"), str(Path(__file__).resolve().parent)]

from renewed_host import RenewedHost  # noqa: E402
from simlib.host import SimulatedHost  # noqa: E402

RunInSandbox = Callable[..., "subprocess.CompletedProcess[str]"]


def sandbox_command(script: str, *options: str) -> list[str]:
    build = os.environ["USBDEV_BUILD_DIR"]
    return [str(SANDBOX), "run", "--build", build, *options, "--", "sh", "-c", script]


def files_below(root: Path) -> set[str]:
    return {str(path.relative_to(root)) for path in root.rglob("*") if path.is_file() or path.is_symlink()}


@pytest.fixture
def new_sandbox() -> RunInSandbox:
    """Runs a shell script in a sandbox of its own; further arguments are options of the sandbox."""

    def run(script: str, *options: str) -> subprocess.CompletedProcess[str]:
        return subprocess.run(
            sandbox_command(script, *options), check=False, capture_output=True, text=True, timeout=300
        )

    return run


@pytest.fixture(scope="module")
def sandbox() -> Iterator[RunInSandbox]:
    """Runs a shell script on a fresh host; further arguments are options of the sandbox."""
    hosts: dict[tuple[str, ...], RenewedHost] = {}
    with ExitStack() as started:

        def run(script: str, *options: str) -> subprocess.CompletedProcess[str]:
            if options not in hosts:
                hosts[options] = started.enter_context(RenewedHost(Path(os.environ["USBDEV_BUILD_DIR"]), *options))
            return hosts[options].run(script)

        yield run


@pytest.fixture
def new_host(tmp_path: Path) -> Callable[[str], tuple[SimulatedHost, Path]]:
    """Makes a simulated host of a topology, with its root in a folder of the test."""

    def make(topology: str) -> tuple[SimulatedHost, Path]:
        root = tmp_path / topology
        (root / "dev").mkdir(parents=True)
        host = SimulatedHost(root)
        host.create(topology)
        return host, root

    return make


@pytest.fixture
def pc(new_host: Callable[[str], tuple[SimulatedHost, Path]]) -> tuple[SimulatedHost, Path]:
    """A host with three controllers, and its root."""
    return new_host("three-controllers")
