# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The topics of a host. Consumers find all hosts with a + in place of the name."""

from __future__ import annotations

REQUESTS = ("stream", "switch", "share")


class Topics:
    def __init__(self, host: str, discovery_prefix: str) -> None:
        base = f"usbdev/{host}"
        self.state = f"{base}/state"
        self.availability = f"{base}/availability"
        self.event = f"{base}/event"
        self.request = f"{base}/request/"  # and the name of the request
        self.response = f"{base}/response/"  # and what the requester chooses
        self.discovery = f"{discovery_prefix}/device/usbdev_{host}/config"
        self.birth = f"{discovery_prefix}/status"
