# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints what the library sees of a profile's stream: streaming_status.py PROFILE NODE"""

import ctypes
import sys

profile, node = map(int, sys.argv[1:])
library = ctypes.CDLL("libusbdevlib.so")
playlist = ctypes.c_int(-1)
library.vl_get_hls_status(profile, ctypes.byref(playlist))
sources = {"v4l2_read": 1, "HDpipe": 0}
running = [name for name, kind in sources.items() if library.vl_SourcerStreamingProcess(node, kind) == 1]
print("playlist" if playlist.value else "no playlist", *running)
