# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The users who may log in: a file with a line "NAME:HASH" for each, the hash salted and slow."""

from __future__ import annotations

import fcntl
import os
import tempfile
from collections.abc import Callable
from contextlib import ExitStack
from functools import cached_property
from pathlib import Path

from argon2 import PasswordHasher
from argon2.exceptions import InvalidHash, VerificationError

DEFAULT_FILE = Path("/etc/config/login-users")
# The longest that fits a login request; the library refuses longer ones.
LONGEST = 64
# ":" ends the name in the file and in a header; the library does not escape the other two in a query.
FORBIDDEN_IN_NAMES = ":&%"

Hashes = dict[str, str]


class UserError(Exception):
    """A user cannot be added or removed; the text is a sentence with the reason."""


class Users:
    def __init__(self, file: Path) -> None:
        self._file = file
        # The smallest recommended values, because small hosts have little memory.
        self._hasher = PasswordHasher(time_cost=2, memory_cost=19 * 1024, parallelism=1)

    def names(self) -> list[str]:
        return sorted(self._read())

    def accepts(self, name: str, password: bytes) -> bool:
        try:
            self._hasher.verify(self._read().get(name) or self._nobody, password)
            return True
        except (VerificationError, InvalidHash):
            return False

    def add(self, name: str, password: bytes) -> None:
        """Adds a user, or gives an existing one a new password."""
        _check("a user name", name.encode())
        _check("a password", password)
        if any(character in name for character in FORBIDDEN_IN_NAMES):
            raise UserError("a user name cannot contain ':', '&' or '%'")
        self._change(lambda hashes: hashes.update({name: self._hasher.hash(password)}))

    def remove(self, name: str) -> None:
        if name not in self._read():
            raise UserError(f"there is no user '{name}'")
        self._change(lambda hashes: hashes.pop(name, None))

    @cached_property
    def _nobody(self) -> str:
        """Returns the hash for unknown names. They take as long as a wrong password, so that the time shows nothing."""
        return str(self._hasher.hash(os.urandom(16)))

    def _read(self) -> Hashes:
        try:
            lines = self._file.read_text(encoding="utf-8").splitlines()
        except FileNotFoundError:
            return {}
        return {name: hashed for name, _, hashed in (line.partition(":") for line in lines) if name}

    def _change(self, change: Callable[[Hashes], object]) -> None:
        """Replaces the whole file, one change after the other."""
        folder = os.open(self._file.parent, os.O_RDONLY | os.O_DIRECTORY)
        try:
            fcntl.flock(folder, fcntl.LOCK_EX)
            hashes = self._read()
            change(hashes)
            self._write(hashes)
            os.fsync(folder)
        finally:
            os.close(folder)

    def _write(self, hashes: Hashes) -> None:
        with ExitStack() as on_failure:
            with tempfile.NamedTemporaryFile("w", dir=self._file.parent, encoding="utf-8", delete=False) as file:
                on_failure.callback(os.unlink, file.name)
                file.writelines(f"{name}:{hashed}\n" for name, hashed in hashes.items())
                file.flush()
                os.fsync(file.fileno())
            os.replace(file.name, self._file)
            on_failure.pop_all()


def _check(what: str, text: bytes) -> None:
    if not 1 <= len(text) <= LONGEST:
        raise UserError(f"{what} has 1 to {LONGEST} bytes")
    if any(byte < 0x20 or byte == 0x7F for byte in text):
        raise UserError(f"{what} cannot contain control characters")
