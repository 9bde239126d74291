# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The error for a sandbox that cannot start."""


class SandboxError(Exception):
    """The sandbox cannot start; the text is one sentence that gives the reason."""
