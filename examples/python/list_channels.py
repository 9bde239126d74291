#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints the channels that have a device: list_channels.py"""

import sys

from usbdev import Entry, UsbdevError, profiles


def printable(name: str) -> str:
    """A device may call itself anything; what could control the terminal becomes a question mark."""
    return "".join(character if character.isprintable() else "?" for character in name)


def line(channel: int, entry: Entry) -> str:
    words = [f"channel {channel}", entry.usbslot, printable(entry.devname)]
    if entry.profile >= 0:
        words.append(f"profile {entry.profile}")
    if entry.waits_for is not None:
        words.append(f"waits for channel {entry.waits_for}")
    return "  ".join(words)


try:
    for channel, entry in profiles.channels().items():
        print(line(channel, entry))
except UsbdevError as problem:
    sys.exit(f"list_channels: the channels cannot be read: {problem}")
