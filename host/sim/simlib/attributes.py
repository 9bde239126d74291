# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The attribute lists of devices, and how udevadm prints them as one block of its attribute walk."""

from __future__ import annotations

from pathlib import Path

Values = dict[str, object]


class AttributeList:
    """The attributes of one kind of device, in the order of the walk; "$word" is replaced by a value of the device."""

    def __init__(self, path: Path) -> None:
        lines = path.read_text(encoding="utf-8").splitlines()
        pairs = [line.split("=", 1) for line in lines if line and not line.startswith("#")]
        self.links = [pair for pair in pairs if pair[0] in ("SUBSYSTEMS", "SUBSYSTEM", "DRIVERS", "DRIVER")]
        self.attributes = [pair for pair in pairs if pair not in self.links]

    def block(self, devpath: str, values: Values, first: bool = False) -> str:
        """Prints the block of the device at a path below /sys; the first block of a walk has keys without the plural."""
        plural = "" if first else "S"
        parent = "" if first else "parent "
        lines = [f"  looking at {parent}device '{devpath}':", f'    KERNEL{plural}=="{devpath.rsplit("/", 1)[1]}"']
        lines += [f'    {key.rstrip("S")}{plural}=="{value}"' for key, value in self.links]
        for key, source in self.attributes:
            value = _value(source, values)
            if value is not None and _is_shown(value):
                lines.append(f'    ATTR{plural}{{{key}}}=="{value}"')
        return "\n".join(lines) + "\n"


def _value(source: str, values: Values) -> str | None:
    if not source.startswith("$"):
        return source
    value = values.get(source[1:])
    return None if value is None else str(value)


def _is_shown(value: str) -> bool:
    """Does the walk show the value? Only plain ASCII; quotes, colons and blanks are fine."""
    return value.isascii() and value.isprintable()
