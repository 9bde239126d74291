# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The state of a sandboxed host: the folder with all of its files that can change."""

from __future__ import annotations

import fcntl
import json
import os
import shutil
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

from boxlib.errors import SandboxError
from simlib.errors import SimError
from simlib.host import SimulatedHost

HOSTS = Path(__file__).resolve().parent.parent / "hosts"
DEFAULT_HOST = "intel"
DEFAULT_TOPOLOGY = "three-controllers"
EMPTY_FOLDERS = (
    "dev/shm",
    "dev/pts",
    "run/lock",
    "sys/class/video4linux",
    "sys/bus/usb/drivers",
    "tmp",
    "var/log",
    *(f"mnt/ext/opt/apps/Velmora2/hls/channel{number}" for number in range(1, 5)),
    "mnt/ext/opt/apps/Velmora2/web",
)
# The configuration will contain tokens and passwords. The names of links in the application's folder are secrets too:
# whoever knows one may follow it, but nobody else may list them.
MODES = {"etc/config/usbdev.conf": 0o600, "mnt/ext/opt/apps/Velmora2": 0o711}
LINKS = {
    "dev/fd": "/proc/self/fd",
    "dev/stdin": "/proc/self/fd/0",
    "dev/stdout": "/proc/self/fd/1",
    "dev/stderr": "/proc/self/fd/2",
    "dev/ptmx": "pts/ptmx",
    # the application's pages look for the playlists here
    "mnt/ext/opt/apps/Velmora2/web/hls": "../hls",
}


def prepare(folder: Path, host: str | None, topology: str | None) -> None:
    """Makes the state of a new host, or checks that an existing one has the wanted kind."""
    folder.mkdir(parents=True, exist_ok=True)
    with _locked(folder):
        facts = folder / "host.json"
        if facts.exists():
            _check_same(folder, json.loads(facts.read_text(encoding="utf-8")), host, topology)
            return
        chosen = {"host": host or DEFAULT_HOST, "topology": topology or DEFAULT_TOPOLOGY}
        _create(folder, chosen["host"], chosen["topology"])
        facts.write_text(json.dumps(chosen) + "\n", encoding="utf-8")


def is_host(folder: Path) -> bool:
    return (folder / "host.json").is_file()


def host_names() -> list[str]:
    return sorted(path.parent.name for path in HOSTS.glob("*/cpuinfo"))


def _create(folder: Path, host: str, topology: str) -> None:
    if host not in host_names():
        raise SandboxError(f"there is no host model '{host}'; there are: {', '.join(host_names())}")
    for name in EMPTY_FOLDERS:
        (folder / name).mkdir(parents=True, exist_ok=True)
    for name, target in LINKS.items():
        (folder / name).symlink_to(target)
    for source in ("common", host):
        shutil.copytree(HOSTS / source, folder, dirs_exist_ok=True, copy_function=_copy_writable)
    for name, mode in MODES.items():
        (folder / name).chmod(mode)
    try:
        SimulatedHost(folder).create(topology)
    except SimError as problem:
        raise SandboxError(str(problem)) from problem


def _copy_writable(source: str, target: str) -> None:
    """Copies contents and execute bits, but no other permissions, so that the host can change every file."""
    shutil.copyfile(source, target)
    os.chmod(target, 0o644 | (os.stat(source).st_mode & 0o111))


def _check_same(folder: Path, facts: dict[str, str], host: str | None, topology: str | None) -> None:
    for kind, asked in (("host", host), ("topology", topology)):
        if asked is not None and asked != facts[kind]:
            raise SandboxError(f"the state in {folder} is of {kind} '{facts[kind]}', not '{asked}'")


@contextmanager
def _locked(folder: Path) -> Iterator[None]:
    with open(folder / "lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield
