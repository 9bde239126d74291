# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the answers share: who is signed in, and what is known of the host."""

from __future__ import annotations

from ownerlib.login import Logins
from ownerlib.sessions import Sessions
from ownerlib.state import Reader


class Host:
    def __init__(self) -> None:
        self.sessions = Sessions()
        self.logins = Logins()
        self.reader = Reader()
