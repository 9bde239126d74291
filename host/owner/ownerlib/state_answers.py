# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The whole picture."""

from __future__ import annotations

from ownerlib.answers import SignedIn


class StateAnswer(SignedIn):
    async def get(self) -> None:
        self.finish(await self.host.state())
