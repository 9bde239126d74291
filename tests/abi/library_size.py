#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How large the library may be on x86-64: library_size.py LIBRARY prints its sections, and fails when one is larger.

Counted are the code and the constants that the library brings along. What the linker and the dynamic loader need to find
their way (symbols, relocations, unwinding tables) grows with the number of functions alone, and has no bound.
"""

import subprocess
import sys

BOUNDS = {".text": 48 * 1024, ".rodata": 8 * 1024}


def sizes(library):
    """The bytes of each section that has a bound."""
    listing = subprocess.run(["size", "-A", library], check=True, stdout=subprocess.PIPE, text=True).stdout
    sections = (line.split() for line in listing.splitlines())
    return {words[0]: int(words[1]) for words in sections if words and words[0] in BOUNDS}


def main():
    found = sizes(sys.argv[1])
    for section, bound in BOUNDS.items():
        print(f"{section}: {found[section]} bytes of {bound}")
    return any(found[section] > bound for section, bound in BOUNDS.items())


if __name__ == "__main__":
    sys.exit(main())
