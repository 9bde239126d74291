#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Shares the stream of a profile, and prints the address of its page: share_link.py PROFILE"""

import argparse
import sys

from usbdev import ShareLink, UsbdevError, web

parser = argparse.ArgumentParser()
parser.add_argument("profile", metavar="PROFILE", type=int)
profile = parser.parse_args().profile
try:
    web.set_share_link(ShareLink(profile, shrenable=1))
    link = web.share_link(profile)  # a link that was there is kept, and its token has to be read
except (UsbdevError, OverflowError):
    sys.exit("share_link: the stream cannot be shared")
print(f"/share?ssid={link.ssid}&token={link.token}")
