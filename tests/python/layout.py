# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The layout of the records: layout.py source | compare PROGRAM...

"source" prints a C program that prints the sizes and offsets; "compare" runs it and compares them with Python's own.
"""

from __future__ import annotations

import subprocess
import sys
from collections.abc import Iterator

from usbdev._usbdev import ffi

TEMPLATE = """#include <stddef.h>
#include <stdio.h>
#include <usbdev/records.h>

int main(void) {{
{}
  return 0;
}}
"""


def records() -> list[str]:
    return sorted(ffi.list_types()[0])


def lines_of_c() -> Iterator[str]:
    for record in records():
        yield f'  printf("{record} %zu\\n", sizeof({record}));'
        for name, _ in ffi.typeof(record).fields:
            yield f'  printf("{record}.{name} %zu\\n", offsetof({record}, {name}));'


def layout() -> Iterator[str]:
    for record in records():
        yield f"{record} {ffi.sizeof(record)}"
        for name, _ in ffi.typeof(record).fields:
            yield f"{record}.{name} {ffi.offsetof(record, name)}"


def compare(program: list[str]) -> int:
    printed = subprocess.run(program, check=True, capture_output=True, text=True).stdout.splitlines()
    different = sorted(set(printed) ^ set(layout()))
    print(*different, sep="\n")
    return bool(different) or not printed


if __name__ == "__main__":
    if sys.argv[1] == "source":
        print(TEMPLATE.format("\n".join(lines_of_c())), end="")
    else:
        sys.exit(compare(sys.argv[2:]))
