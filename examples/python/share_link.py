#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Shares the stream of a profile, and prints the address of its page: share_link.py PROFILE"""

import sys

from usbdev import ShareLink, UsbdevError, web

if len(sys.argv) != 2:
    sys.exit("usage: share_link.py PROFILE")
profile = int(sys.argv[1])
try:
    web.set_share_link(ShareLink(profile, shrenable=1))
    link = web.share_link(profile)  # a link that was there is kept, and its token has to be read
except UsbdevError:
    sys.exit("share_link: the stream cannot be shared")
print(f"/share?ssid={link.ssid}&token={link.token}")
