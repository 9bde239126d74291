# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The manager: it receives change notifications and runs a stream for each profile that can stream."""
