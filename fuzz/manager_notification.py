# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manager's decoder of change notifications, for notification.cpp."""

from __future__ import annotations

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "host/services"))
from managerlib import notification
from usbdev import Notification


def one_input(datagram: bytes) -> str:
    try:
        return notification.line(Notification.from_bytes(datagram))
    except ValueError as problem:
        return str(problem)
