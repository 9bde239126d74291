# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Why a stream fails: a line of text in the profile's stream folder, for other programs of the host. If it is an error of
the system, the line is the system's text for it and nothing else."""

from __future__ import annotations

import errno
import os
from collections.abc import Iterator
from contextlib import suppress
from pathlib import Path

FILE = "failure"
MODE = 0o640  # the folder's pictures are for everybody who knows its link, and this is not
LONGEST = 200
SYSTEM_ERRORS = tuple(os.strerror(number) for number in errno.errorcode)


def reason(said: bytes) -> str | None:
    """Returns the last line with an error of the system in what an encoder said, otherwise the last line."""
    lines = list(_lines(said))
    of_system = [line for line in lines if _system_error(line)]
    return (of_system or lines)[-1] if lines else None


def _lines(said: bytes) -> Iterator[str]:
    for line in said.decode(errors="replace").splitlines():
        shown = "".join(character for character in line if character.isprintable()).strip()
        if shown:
            yield shown[:LONGEST]


def _system_error(line: str) -> str:
    """Returns the text of the system's error in the line, or nothing. Some begin with the text of others."""
    return max((error for error in SYSTEM_ERRORS if error in line), key=len, default="")


def write(folder: Path, line: str) -> bool:
    """Replaces the file as a whole; returns whether the failure is a new one. The stream does not depend on it, so it may fail."""
    new = folder / f".{FILE}"
    text = f"{_system_error(line) or line}\n"
    with suppress(OSError):
        new.unlink(missing_ok=True)
        with open(os.open(new, os.O_WRONLY | os.O_CREAT | os.O_EXCL, MODE), "w", encoding="utf-8") as file:
            file.write(text)
        is_new = _content(folder) != text
        new.rename(folder / FILE)
        return is_new
    return False


def _content(folder: Path) -> str | None:
    try:
        return (folder / FILE).read_text(encoding="utf-8", errors="replace")
    except OSError:
        return None


def remove(folder: Path) -> None:
    with suppress(OSError):
        (folder / FILE).unlink(missing_ok=True)
