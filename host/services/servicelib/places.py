# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Where the application has its files on the host."""

from __future__ import annotations

from pathlib import Path

CONFIGURATION = Path("/etc/config/usbdev.conf")  # which the library replaces when it stores something
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")
STREAMS = APPLICATION / "hls"  # the folder "channelN" in it is that of profile N - 1
