# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The state of the host, as the owner's pages and other programs show it: how it is read, followed and changed."""
