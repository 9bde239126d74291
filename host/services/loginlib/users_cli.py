# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The command "login-users", on a real machine "usbdev-login-users"."""

from __future__ import annotations

import argparse
import getpass
import sys
from pathlib import Path

from loginlib.users import DEFAULT_FILE, UserError, Users


def main(arguments: list[str]) -> int:
    parser = _parser()
    options = parser.parse_args(arguments)
    users = Users(options.users)
    try:
        if options.command == "add":
            users.add(options.name, _password())
        elif options.command == "remove":
            users.remove(options.name)
        else:
            print(*users.names(), sep="\n", end="\n" if users.names() else "")
    except (UserError, OSError) as problem:
        print(f"{parser.prog}: {problem}", file=sys.stderr)
        return 1
    return 0


def _password() -> bytes:
    """Reads the password from the terminal, without showing it, or the first line of standard input."""
    if sys.stdin.isatty():
        return getpass.getpass().encode()
    return sys.stdin.buffer.readline().rstrip(b"\n")


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(description="The users of the host's login service.")
    parser.add_argument("--users", metavar="FILE", type=Path, default=DEFAULT_FILE, help=f"default: {DEFAULT_FILE}")
    commands = parser.add_subparsers(dest="command", required=True, metavar="add|remove|list")
    add = commands.add_parser("add", help="add a user or change the password; asks for it, or reads it from a pipe")
    add.add_argument("name", metavar="NAME")
    remove = commands.add_parser("remove", help="remove a user")
    remove.add_argument("name", metavar="NAME")
    commands.add_parser("list", help="print the names")
    return parser
