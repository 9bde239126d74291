#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints the change notifications of the library, as the manager receives them: follow_notifications.py [COUNT]

With COUNT, it ends after so many. Only one program on a host can listen.
"""

import socket
import sys
from itertools import islice

from usbdev import Notification
from usbdev.notification import PORT, SIZE


def notifications(manager):
    while True:
        try:
            yield Notification.from_bytes(manager.recv(SIZE + 1))  # the byte too many shows a longer one
        except ValueError:
            continue  # not a notification


count = int(sys.argv[1]) if len(sys.argv) > 1 else None
with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as manager:
    try:
        manager.bind(("127.0.0.1", PORT))
    except OSError as problem:
        sys.exit(f"follow_notifications: {problem.strerror}")
    print("listening", flush=True)
    for it in islice(notifications(manager), count):
        print(f"event {it.event}  profile {it.profile}  video {it.video_node}  audio {it.audio_node}", flush=True)
