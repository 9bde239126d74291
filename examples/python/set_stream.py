#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Sets the size and the frame rate of a profile's stream: set_stream.py PROFILE WIDTH HEIGHT FPS"""

import argparse
import sys
from dataclasses import replace

from usbdev import UsbdevError, profiles

parser = argparse.ArgumentParser()
for name, kind in {"PROFILE": int, "WIDTH": int, "HEIGHT": int, "FPS": float}.items():
    parser.add_argument(name, type=kind)
it = parser.parse_args()
reason = "the profile has no stream"
try:
    before = profiles.stream_info(it.PROFILE)
    wanted = replace(before, width=it.WIDTH, height=it.HEIGHT, framerate=it.FPS)
    # The camera may not have this rate: its closest one is stored.
    reason = "the camera does not offer this size"
    rate = profiles.closest_rate(it.PROFILE, wanted)
    if rate is None:
        sys.exit("set_stream: the rate is not a number above 0")
    reason = "the settings were not stored"
    profiles.set_stream(it.PROFILE, wanted, before)
except (UsbdevError, OverflowError):
    sys.exit(f"set_stream: {reason}")
print(f"profile {it.PROFILE} streams {it.WIDTH}x{it.HEIGHT} at {rate:.2f}")
