# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""How the manager calls the library, whose calls may take seconds."""

from __future__ import annotations

import asyncio
import threading
from collections.abc import Awaitable, Callable

import pytest
from managerlib.library import Library
from usbdev import StreamInfo, hotplug, profiles, web

CALLS = [
    (profiles, "stream_info", lambda it: it.stream(0)),
    (web, "set_stream_available", lambda it: it.tell_available(0, True)),
    (hotplug, "apply_volume", lambda it: it.apply_volume(0)),
]


@pytest.mark.parametrize(("module", "name", "ask"), CALLS)
def test_a_call_that_waits_does_not_keep_the_manager_waiting(
    module: object, name: str, ask: Callable[[Library], Awaitable[object]], monkeypatch: pytest.MonkeyPatch
) -> None:
    answered = threading.Event()

    def slow(*arguments: object) -> StreamInfo:
        assert answered.wait(10), "the event loop waits for the call"
        return StreamInfo()

    monkeypatch.setattr(module, name, slow)

    async def whole() -> None:
        asking = asyncio.ensure_future(ask(Library()))
        await asyncio.sleep(0)
        answered.set()
        await asking

    asyncio.run(whole())
