# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Writes usbdev/_usbdev.py, through which cffi calls the library: declare.py COMPILER INCLUDE_FOLDER OUTPUT_FOLDER.

The declarations are those of the public headers, as the compiler's preprocessor sees them.
"""

from __future__ import annotations

import re
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path

from cffi import FFI

HEADER = "usbdev/usbdev.h"
LINE_MARKER = re.compile(r'# \d+ "(.*?)"')
NUMBER = re.compile(r"#define USBDEV_\w+ \d+")
# The caller of vl_attach_log_shm detaches the segment with this function of the C library.
DETACH = "int shmdt(const void *address);"


def preprocessed(compiler: str, include: Path) -> str:
    """Returns the header with all that it includes, with line markers and definitions."""
    command = [compiler, "-E", "-dD", "-I", str(include), "-x", "c", str(include / HEADER)]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def own_lines(text: str, include: Path) -> Iterator[str]:
    """Yields the declarations and numbers of the files in the folder, without those of the C library."""
    is_own = False
    for line in text.splitlines():
        if marker := LINE_MARKER.match(line):
            is_own = Path(marker[1]).is_relative_to(include)
        elif is_own and (not line.startswith("#") or NUMBER.fullmatch(line)):
            yield line


def declarations(compiler: str, include: Path) -> str:
    return "\n".join([*own_lines(preprocessed(compiler, include), include), DETACH])


def main(compiler: str, include: str, output: str) -> None:
    ffi = FFI()
    ffi.set_source("usbdev._usbdev", None)
    ffi.cdef(declarations(compiler, Path(include).resolve()))
    ffi.emit_python_code(str(Path(output) / "_usbdev.py"))


if __name__ == "__main__":
    main(*sys.argv[1:])
