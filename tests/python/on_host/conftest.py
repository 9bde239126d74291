# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Tests that call the library in their own process, on the sandboxed host."""

import os

# The sanitizer's run-time is loaded into this process for the library's sake; the host's tools need none.
os.environ.pop("LD_PRELOAD", None)
