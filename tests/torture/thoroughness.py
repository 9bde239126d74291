# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How much a torture test does, and where its figures go."""

import os

FIGURES_FILE = os.environ.get("USBDEV_TORTURE")


def times(in_tests, thorough):
    """Returns the first number in `./dev test` and the second in `./dev torture`."""
    return thorough if FIGURES_FILE else in_tests


def report(figure):
    """Adds a line to the figures that `./dev torture` prints at its end."""
    if FIGURES_FILE:
        with open(FIGURES_FILE, "a", encoding="utf-8") as figures:
            figures.write(figure + "\n")
