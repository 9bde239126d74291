#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Sets the size and the frame rate of a profile's stream: set_stream.py PROFILE WIDTH HEIGHT FPS"""

import sys
from dataclasses import replace

from usbdev import UsbdevError, profiles

if len(sys.argv) != 5:
    sys.exit("set_stream: usage: set_stream.py PROFILE WIDTH HEIGHT FPS")
profile, width, height = map(int, sys.argv[1:4])
requested = float(sys.argv[4])
reason = "the profile has no stream"
try:
    before = profiles.stream_info(profile)
    wanted = replace(before, width=width, height=height, framerate=requested)
    # The camera may not have this rate: its closest one is stored.
    reason = "the camera does not offer this size"
    rate = profiles.closest_rate(profile, wanted)
    if rate is None:
        sys.exit("set_stream: the rate is not above 0")
    reason = "the settings were not stored"
    profiles.set_stream(profile, wanted, before)
except UsbdevError:
    sys.exit(f"set_stream: {reason}")
print(f"profile {profile} streams {width}x{height} at {rate:.2f}")
