# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The server of the owner's pages: it shows what the library knows, and changes what a signed-in user asks for."""
