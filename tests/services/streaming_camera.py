# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A host with a camera that streams, for the shell scripts of the tests."""

from __future__ import annotations

from conftest import HERE

STREAM = "/mnt/ext/opt/apps/Velmora2/hls/channel2"
LOG = "/var/log/vl/manager-service.log"
# A camera with profile 1, streaming in small pictures as soon as its settings are stored: nobody is notified of the assignment.
SHELL = f"""
ASSIGN="from usbdev import profiles; profiles.assign('3-1', 1)"
sim plug hd-pro-webcam 3-1 >/dev/null; /usr/bin/python3 -Bc "$ASSIGN"
store() {{ /usr/bin/python3 -B {HERE}/set_stream.py 1 "$@"; }}
switch() {{ call vl_set_usbslot_switch 3-1 "$1" 127.0.0.1 >/dev/null; }}
live() {{ until_true test -e {STREAM}/playlist.m3u8; }}
said() {{ until_true "[ \\"\\$(grep -c '$1' {LOG})\\" -ge $2 ]"; }}
encoder() {{ ps | awk '$4 == "v4l2_read" {{print $1}}'; }}
available() {{ grep -A1 '<pf1>' /etc/config/vl_pfstate.conf | xargs; }}
"""
SMALL = "store width=160 height=120 framerate=15\n"
STATUS = f"/usr/bin/python3 -B {HERE}/streaming_status.py 1 0\n"
AVAILABLE = "<pf1> <available>{}</available>".format
