# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints what the library sees of a profile's stream: streaming_status.py PROFILE NODE"""

import sys

from usbdev import Codec, web

profile, node = map(int, sys.argv[1:])
sources = {"v4l2_read": Codec.MJPEG, "HDpipe": Codec.H264}
running = [name for name, codec in sources.items() if web.is_read(node, codec)]
print("playlist" if web.has_playlist(profile) else "no playlist", *running)
