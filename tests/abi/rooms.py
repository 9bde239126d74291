#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Checks one rule of the rooms, the folders of src/ but its edge: rooms.py CHECK VERSION_SCRIPT OBJECT...

The objects are those of the whole library; the sources are beside the version script.
"""

import pathlib
import re
import subprocess
import sys

from library_file import listed_exports

EDGE = "edge"


def sources(script, pattern):
    """The files of the rooms with such a name."""
    return sorted(path for path in pathlib.Path(script).parent.glob(f"*/{pattern}") if path.parent.name != EDGE)


def symbols(objects):
    """Each object with each name that it defines or refers to."""
    listing = subprocess.run(
        ["nm", "--portability", "--print-file-name", *objects], check=True, capture_output=True, text=True
    ).stdout
    return [line.split()[:2] for line in listing.splitlines()]


def check_names(script, objects):
    """No room defines or calls an exported function."""
    exports = listed_exports(script)
    rooms = [path for path in objects if pathlib.Path(path).parent.name != EDGE]
    if len(rooms) == len(objects) or not rooms:
        return ["the objects of the rooms and of the edge are not to be told apart"]
    return [f"{path} {name}" for path, name in symbols(rooms) if name in exports]


def check_includes(script, _):
    """No file of a room includes a public header other than records.h."""
    included = re.compile(r'#include [<"](usbdev/(?!records\.h).*)[>"]')
    files = sources(script, "*.cpp") + sources(script, "*.h")
    return [f"{path}: {name}" for path in files for name in included.findall(path.read_text())]


def check_headers(script, _):
    """Every source of a room has a header of its name."""
    return [f"{path}: no header" for path in sources(script, "*.cpp") if not path.with_suffix(".h").exists()]


def main(check, script, *objects):
    found = globals()["check_" + check](script, objects)
    print(*found, sep="\n")
    return bool(found)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
