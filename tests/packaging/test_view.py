# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How usbdevctl gets the view of a Debian machine that the services have, see host/view/; test_packages.py uses all of it."""

from __future__ import annotations

import subprocess
from pathlib import Path

import pytest
from conftest import REPOSITORY

VIEW = REPOSITORY / "host/view"


@pytest.fixture
def prefix(tmp_path: Path) -> Path:
    """An installation whose usbdevctl prints how it was called."""
    (tmp_path / "bin").mkdir()
    (tmp_path / "libexec").mkdir()
    (tmp_path / "share/usbdev-host").mkdir(parents=True)
    (tmp_path / "bin/usbdevctl").write_bytes((REPOSITORY / "tools/usbdevctl/usbdevctl.sh").read_bytes())
    program(tmp_path / "libexec/usbdevctl", 'printf "%s|" usbdevctl "$@"')
    program(tmp_path / "bin/bwrap", 'printf "%s|" "$@"')
    (tmp_path / "bin/usbdevctl").chmod(0o755)
    (tmp_path / "share/usbdev-host/view").symlink_to(VIEW)
    return tmp_path


def program(path: Path, line: str) -> None:
    path.write_text(f"#!/bin/sh\n{line}\n")
    path.chmod(0o755)


def call(prefix: Path, *state: str) -> tuple[int, list[str], str]:
    """Calls usbdevctl on a machine with this state: status, the words that were printed, and the messages."""
    machine = ["bwrap", "--dev-bind", "/", "/", "--tmpfs", "/var/lib", *state, "--setenv", "PATH", f"{prefix}/bin:/usr/bin:/bin"]
    done = subprocess.run([*machine, prefix / "bin/usbdevctl", "stream", "a b"], capture_output=True, text=True, check=False)
    return done.returncode, done.stdout.split("|")[:-1], done.stderr


def expected(line: str) -> list[str]:
    """The words with which bubblewrap is asked for a line of the view."""
    key, _, value = line.partition("=")
    if key == "Environment":
        return ["--setenv", *value.split("=")]
    if key == "TemporaryFileSystem":
        return ["--tmpfs", value]
    option = {"BindPaths": "--bind", "BindReadOnlyPaths": "--ro-bind"}[key]
    return [f"{option}-try" if value.startswith("-") else option, *value.removeprefix("-").split(":")]


def test_a_storage_host_runs_the_program_itself(prefix: Path) -> None:
    assert call(prefix) == (0, ["usbdevctl", "stream", "a b"], "")


def test_a_machine_with_the_state_runs_it_in_the_view_line_by_line(prefix: Path) -> None:
    lines = [line for line in (VIEW / "view.conf").read_text().splitlines() if "=" in line]
    words = [word for line in lines for word in expected(line)]
    assert len(lines) > 20
    assert call(prefix, "--dir", "/var/lib/usbdev/config") == (
        0, ["--dev-bind", "/", "/", *words, "--", f"{prefix}/libexec/usbdevctl", "stream", "a b"], "")


def test_a_user_who_may_not_is_told_who_may(prefix: Path) -> None:
    """Nobody may write to what is mounted read-only, root neither."""
    status, printed, messages = call(prefix, "--dir", "/var/lib/usbdev", "--ro-bind", str(prefix), "/var/lib/usbdev/config")
    assert (status, printed) == (1, [])
    assert messages == "usbdevctl: only root and members of the group 'video' may see and set up the cameras\n"
