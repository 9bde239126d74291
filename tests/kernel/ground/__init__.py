# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A machine that is a program, with a stock Debian kernel, and cameras that are programs too."""
