#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints the change notifications of the library, as the manager receives them: follow_notifications.py [COUNT]

With COUNT, it ends after so many. Only one program on a host can listen.
"""

import argparse
import itertools
import socket
import sys

from usbdev import Notification
from usbdev.notification import PORT, SIZE


def receive(manager: socket.socket) -> Notification:
    """Waits for a notification, and drops whatever else arrives."""
    while True:
        try:
            return Notification.from_bytes(manager.recv(SIZE + 1))  # the byte too many shows a longer one
        except ValueError:
            continue


parser = argparse.ArgumentParser()
parser.add_argument("count", metavar="COUNT", type=int, nargs="?")
count = parser.parse_args().count
if count is not None and count < 0:
    parser.error("COUNT is below 0")
try:
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as manager:
        manager.bind(("127.0.0.1", PORT))
        print("listening", flush=True)
        for _ in itertools.count() if count is None else range(count):
            it = receive(manager)
            print(f"event {it.event}  profile {it.profile}  video {it.video_node}  audio {it.audio_node}", flush=True)
except OSError as problem:
    sys.exit(f"follow_notifications: {problem.strerror}")
