# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Stores stream settings as the application's pages do: set_stream.py PROFILE FIELD=VALUE..."""

import sys
from dataclasses import replace

from usbdev import EventCode, profiles

profile, *settings = sys.argv[1:]
stored = profiles.stream_info(int(profile))
fields = dict(setting.split("=") for setting in settings)
wanted = {field: float(value) if field == "framerate" else int(value) for field, value in fields.items()}
profiles.set_stream(int(profile), replace(stored, **wanted), stored, EventCode.EVERYTHING)
