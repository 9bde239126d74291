# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Calls a function of the library whose arguments are texts, and prints its result: call_library.py FUNCTION TEXT..."""

import os
import sys

from usbdev._library import ask

function, *texts = sys.argv[1:]
print(ask(function, *map(os.fsencode, texts)))
