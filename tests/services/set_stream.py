# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Stores stream settings as the application's pages do: set_stream.py PROFILE FIELD=VALUE..."""

import ctypes
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent.parent / "host/services"))

from managerlib.library import StreamInfo  # noqa: E402

SAY_ALL = 5  # the event code with which every setting counts as changed

profile = int(sys.argv[1])
library = ctypes.CDLL("libusbdevlib.so")
stored, wanted = StreamInfo(), StreamInfo()
for record in (stored, wanted):
    library.vl_get_stream_info(profile, ctypes.byref(record))
for setting in sys.argv[2:]:
    field, value = setting.split("=")
    setattr(wanted, field, float(value) if field == "framerate" else int(value))
sys.exit(library.vl_set_usbchn_stream(profile, ctypes.byref(wanted), ctypes.byref(stored), SAY_ALL) != 0)
