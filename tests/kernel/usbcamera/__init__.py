# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A USB camera that is a program: the other end of a USB device that an emulated machine redirects to a socket."""
