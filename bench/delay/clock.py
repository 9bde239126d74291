# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Writes raw pictures to standard output, which show the milliseconds of the time at which they were made."""

from __future__ import annotations

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests/kernel"))
from usbcamera import pictures

WIDTH, HEIGHT, RATE = 640, 480, 30
TAG = 7


def main() -> None:
    due = time.monotonic()
    while True:
        sys.stdout.buffer.write(pictures.grey(int(time.time() * 1000), TAG, WIDTH, HEIGHT))
        sys.stdout.buffer.flush()
        # After a pause it continues with the present, as a camera does.
        due = max(due + 1 / RATE, time.monotonic())
        time.sleep(due - time.monotonic() if due > time.monotonic() else 0)


if __name__ == "__main__":
    main()
