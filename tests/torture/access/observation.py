# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What can be seen of a host while an evening goes by on it: files, sockets, users of processes, and each command line with
its environment, also of the shortest process."""

from __future__ import annotations

import json
import os
import re
import stat
import subprocess
import sys
from collections.abc import Iterator
from contextlib import suppress
from dataclasses import dataclass, field
from pathlib import Path

HERE = Path(__file__).resolve().parent
WITH_SERVICES = HERE.parents[2] / "host/services/with-services"
EVENING = str(HERE / "evening.py")
# All that can be written on the host.
ROOTS = ("/etc/config", "/run", "/tmp", "/var/log", "/mnt/ext", "/home/httpd", "/dev", "/sys")
LISTENING = {"tcp": "0A", "tcp6": "0A", "udp": "07", "udp6": "07"}
UNFINISHED = "<unfinished ...>"
CALLS = "trace=execve,clone,clone3,fork,vfork"


@dataclass(frozen=True)
class File:
    path: str  # of a folder: with a slash at the end
    mode: str  # as the page writes it
    owner: int
    content: bytes


@dataclass
class Command:
    pid: int
    program: str
    line: str  # with the environment


@dataclass
class Observation:
    secrets: dict[str, list[str]]
    files: list[File]
    listening: dict[str, set[str]]
    owners: set[int]
    commands: list[Command] = field(default_factory=list)
    parents: dict[int, int] = field(default_factory=dict)


def observe() -> Observation:
    """The trace goes to memory, so that it is no file of the host."""
    trace = os.memfd_create("trace")
    tracing = ["strace", "-f", "--seccomp-bpf", "-v", "-s", "65535", "-qq", "-e", CALLS, "-o", f"/proc/self/fd/{trace}"]
    evening = [str(WITH_SERVICES), "--", sys.executable, "-B", EVENING]
    with subprocess.Popen(
        [*tracing, *evening], pass_fds=[trace], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
    ) as process:
        assert process.stdin is not None and process.stdout is not None
        secrets = json.loads(process.stdout.readline())
        seen = Observation(secrets, list(_files()), _listening(), _owners())
        process.stdin.close()
    assert process.returncode == 0
    _read(os.pread(trace, os.fstat(trace).st_size, 0).decode(), seen)
    return seen


def _files() -> Iterator[File]:
    for root in ROOTS:
        yield _file(Path(root))
        for folder, folders, names in os.walk(root):
            folders[:] = [name for name in folders if not os.path.ismount(f"{folder}/{name}")]
            for path in (Path(folder, name) for name in (*folders, *names)):
                with suppress(FileNotFoundError):  # a stream's segment that is not needed any more
                    if not stat.S_ISCHR(path.lstat().st_mode):
                        yield _file(path)


def _file(path: Path) -> File:
    status = path.lstat()
    if stat.S_ISLNK(status.st_mode):
        return File(str(path), "link", status.st_uid, os.readlink(path).encode())
    is_folder, is_file = stat.S_ISDIR(status.st_mode), stat.S_ISREG(status.st_mode)
    mode = f"{stat.S_IMODE(status.st_mode):04o}"
    return File(f"{path}/" if is_folder else str(path), mode, status.st_uid, path.read_bytes() if is_file else b"")


def _processes() -> list[Path]:
    return [path for path in Path("/proc").iterdir() if path.name.isdigit()]


def _owners() -> set[int]:
    return {process.stat().st_uid for process in _processes()}


def _listening() -> dict[str, set[str]]:
    """The addresses at which each process listens; with the paths of named sockets."""
    addresses = dict(_addresses())
    found: dict[str, set[str]] = {}
    for process in _processes():
        for descriptor in (process / "fd").iterdir():
            with suppress(FileNotFoundError):  # closed meanwhile
                address = addresses.get(os.readlink(descriptor))
                if address:
                    found.setdefault((process / "comm").read_text().strip(), set()).add(address)
    return found


def _addresses() -> Iterator[tuple[str, str]]:
    for protocol, state in LISTENING.items():
        for line in Path(f"/proc/net/{protocol}").read_text().splitlines()[1:]:
            fields = line.split()
            if fields[3] == state:
                yield f"socket:[{fields[9]}]", f"{_address(fields[1])}/{protocol}"
    for line in Path("/proc/net/unix").read_text().splitlines()[1:]:
        fields = line.split()
        if len(fields) > 7:
            yield f"socket:[{fields[6]}]", fields[7]


def _address(text: str) -> str:
    host, port = text.split(":")
    return ".".join(str(byte) for byte in reversed(bytes.fromhex(host))) + f":{int(port, 16)}"


def _read(trace: str, seen: Observation) -> None:
    for pid, call in _calls(trace):
        child = re.search(r"(?:clone3?|v?fork)\b.* = (\d+)$", call)
        if child:
            seen.parents[int(child[1])] = int(pid)
        command = re.match(r'execve\("([^"]+)"', call)
        if command and not re.search(r" = -1 \w+ \(.*\)$", call):
            seen.commands.append(Command(int(pid), os.path.basename(command[1]), call))


def _calls(trace: str) -> Iterator[tuple[str, str]]:
    """Returns process and text of each call. One that others interrupted has two lines, and only the second tells whether it
    failed."""
    begun: dict[str, str] = {}
    for line in trace.splitlines():
        pid, call = line.split(maxsplit=1)
        rest = re.match(r"<\.\.\. \w+ resumed>", call)
        if rest:
            call = begun.pop(pid, "") + call[rest.end() :]
        if call.endswith(UNFINISHED):
            begun[pid] = call.removesuffix(UNFINISHED)
        else:
            yield pid, call
