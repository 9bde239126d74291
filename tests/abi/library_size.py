#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How large the library may be: library_size.py LIBRARY prints its sections, and fails when one is larger.

Counted are the code and the constants that the library brings along. What the linker and the dynamic loader need to find
their way (symbols, relocations, unwinding tables) grows with the number of functions alone, and has no bound.
"""

import re
import subprocess
import sys

# By the machine that readelf names.
CODE = {"Advanced Micro Devices X86-64": 48 * 1024, "AArch64": 52 * 1024, "ARM": 44 * 1024}
CONSTANTS = 8 * 1024


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def bounds(library):
    machine = re.search(r"Machine: +(.*)", output("readelf", "--file-header", library)).group(1)
    return {".text": CODE[machine], ".rodata": CONSTANTS}


def sizes(library):
    """The bytes of each section."""
    sections = re.findall(r"^(\.\S+) +(\d+)", output("size", "-A", library), flags=re.MULTILINE)
    return {name: int(size) for name, size in sections}


def main(library):
    found, allowed = sizes(library), bounds(library)
    for section, bound in allowed.items():
        print(f"{section}: {found[section]} bytes of {bound}")
    return any(found[section] > bound for section, bound in allowed.items())


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
