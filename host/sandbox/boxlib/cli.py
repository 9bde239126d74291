# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "sandbox"."""

from __future__ import annotations

import argparse
import os
import signal
import subprocess
import sys
import tempfile
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

from boxlib import bubblewrap, state
from boxlib.errors import SandboxError
from boxlib.layout import BUILT, HOST
from boxlib.programs import Programs
from boxlib.reboot import add_changes, reboot_here
from simlib.errors import SimError

CANNOT_START = 125
HOSTS_UMASK = 0o022  # whatever that of the user is
REFUSED = 1
# Runs the command through a shell, which prints a message and returns a status if it cannot be found.
STARTER = ["/bin/sh", "-c", 'exec "$@"', "sandbox"]
WITH_SERVICES = [str(HOST / "services/with-services"), "--", *STARTER]


def main(arguments: list[str]) -> int:
    options = _parser().parse_args(arguments)
    os.umask(HOSTS_UMASK)
    try:
        return int(options.run(options))
    except SimError as problem:
        print(f"sandbox: {problem}", file=sys.stderr)
        return REFUSED
    except (SandboxError, OSError) as problem:
        print(f"sandbox: {problem}", file=sys.stderr)
        return CANNOT_START


def _run(options: argparse.Namespace) -> int:
    return _run_on_host(options, [*WITH_SERVICES, *options.command] if options.services else options.command)


def _reboot(options: argparse.Namespace) -> int:
    """Reboots the host in the folder, or the one that this runs on."""
    if options.state is None:
        return reboot_here(options.changes)
    if not state.is_host(Path(options.state)):
        raise SandboxError(f"there is no host in {options.state}")
    options.host = options.topology = None
    return _run_on_host(options, ["sandbox", "reboot", *(word for change in options.changes for word in change)])


def _run_on_host(options: argparse.Namespace, command: list[str]) -> int:
    bubblewrap.check_possible()
    build = Path(options.build).resolve()
    if not build.is_dir():
        raise SandboxError(f"there is no build in {build}")
    programs = Programs(build)
    if programs.missing:
        print(f"sandbox: {build} lacks {', '.join(programs.missing)}; continuing without", file=sys.stderr)
    with _state_folder(options.state) as folder:
        state.prepare(folder, options.host, options.topology)
        return _start(bubblewrap.arguments(folder, build, programs), command)


@contextmanager
def _state_folder(given: str | None) -> Iterator[Path]:
    if given is not None:
        yield Path(given).resolve()
        return
    with tempfile.TemporaryDirectory(prefix="usbdev-sandbox-") as fresh:
        yield Path(fresh)


def _start(arguments: list[str], command: list[str]) -> int:
    """Passes the many arguments of bubblewrap in a file, so that process lists stay readable."""
    with tempfile.TemporaryFile() as file:
        file.write("\0".join(arguments).encode() + b"\0")
        file.seek(0)
        process = subprocess.Popen(
            ["bwrap", "--args", str(file.fileno()), *STARTER, *command], pass_fds=[file.fileno()]
        )
    _pass_on_signals(process)
    status = process.wait()
    return status if status >= 0 else 128 - status


def _pass_on_signals(process: subprocess.Popen[bytes]) -> None:
    """Ends the sandbox at a signal to this process. An interrupt from the terminal reaches the command itself."""
    signal.signal(signal.SIGINT, signal.SIG_IGN)
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: process.terminate())


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(description="A sandboxed host with simulated cameras.")
    commands = parser.add_subparsers(required=True, metavar="run | reboot")
    run = commands.add_parser("run", help="run a command on the host")
    run.add_argument("--state", metavar="DIR", help="keep the host's files in DIR (default: remove them at the end)")
    run.add_argument("--host", metavar="MODEL", help=f"{', '.join(state.host_names())} (default: {state.DEFAULT_HOST})")
    run.add_argument("--topology", metavar="NAME", help=f"USB controllers (default: {state.DEFAULT_TOPOLOGY})")
    run.add_argument("--services", action="store_true", help="run the login, manager and streaming services too")
    run.add_argument("command", nargs="+", metavar="COMMAND", help="the command and its arguments, after --")
    run.set_defaults(run=_run)
    reboot = commands.add_parser("reboot", help="switch the host off, make the changes in their order, and switch it on")
    reboot.add_argument("--state", metavar="DIR", help="the host in this folder (default: the one that this runs on)")
    add_changes(reboot)
    reboot.set_defaults(run=_reboot)
    for command in (run, reboot):
        command.add_argument("--build", metavar="DIR", default=BUILT, help=f"default: {BUILT}")
    return parser
