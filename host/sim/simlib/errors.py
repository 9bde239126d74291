# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The error for a request that is impossible."""


class SimError(Exception):
    """The request is impossible; the text gives the reason and is shown to the user."""
