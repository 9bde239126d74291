# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Calls a function of the library whose arguments are texts, and prints its result: call_library.py FUNCTION TEXT..."""

import ctypes
import os
import sys

function, *texts = sys.argv[1:]
result = getattr(ctypes.CDLL("libusbdevlib.so"), function)(*map(os.fsencode, texts))
print(result)
