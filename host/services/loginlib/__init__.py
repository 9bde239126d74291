# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The host's login service: users, sessions, and the requests and answers of its two pages."""
