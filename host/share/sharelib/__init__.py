# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The page that a share link opens: it asks the library whether the link is valid, and shows the stream, or why not."""
