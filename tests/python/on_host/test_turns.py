# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Functions of which only one may run at a time, and calls from an event loop."""

from __future__ import annotations

import asyncio
import fcntl
import threading
import time

import pytest
from usbdev import Device, UsbdevError, aio, core, hotplug, web
from usbdev._turns import HOTPLUG_LOCK

UNKNOWN_DEVICE = Device(0, 7, "9-9", plugged=0)
PATIENCE_SECONDS = 20


def wait_until(condition) -> None:
    deadline = time.monotonic() + PATIENCE_SECONDS
    while not condition():
        assert time.monotonic() < deadline
        time.sleep(0.01)


EVENTS = [
    lambda: hotplug.handle_event(UNKNOWN_DEVICE),
    hotplug.start_up,
    hotplug.synchronise,
    lambda: hotplug.handle_new([], []),
]


def run_ignoring_failure(function) -> None:
    try:
        function()
    except UsbdevError:
        pass


def waits_for_the_hotplug_lock() -> bool:
    """Checks whether a process waits for a file lock."""
    with open("/proc/locks") as locks:
        return any("->" in line and "FLOCK" in line for line in locks)


@pytest.mark.parametrize("event", EVENTS, ids=["event", "start-up", "synchronisation", "new devices"])
def test_a_device_event_waits_for_the_hosts_lock(event) -> None:
    with open(HOTPLUG_LOCK, "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        waiting = threading.Thread(target=run_ignoring_failure, args=(event,))
        waiting.start()
        wait_until(waits_for_the_hotplug_lock)
        assert waiting.is_alive()
    waiting.join(PATIENCE_SECONDS)
    assert not waiting.is_alive()


LOGINS = (web.connect, web.log_in, web.log_out, web.is_session, web.is_user, web.is_own_session)


@pytest.mark.parametrize("login", LOGINS, ids=lambda it: it.__name__)
def test_only_one_login_runs_at_a_time(login, monkeypatch: pytest.MonkeyPatch) -> None:
    running, most = [], []

    def slow(*_: object, **__: object) -> int:
        running.append(1)
        most.append(len(running))
        time.sleep(0.01)
        running.pop()
        return 0

    monkeypatch.setitem(login.__wrapped__.__globals__, "ask", slow)
    monkeypatch.setitem(login.__wrapped__.__globals__, "text_from", slow)
    server = web.NasServer("127.0.0.1", 1)
    arguments = {"connect": (server, 9), "log_in": (server,), "log_out": (server, ""), "is_session": (server, ""),
                 "is_user": ("", ""), "is_own_session": ("",)}[login.__name__]  # fmt: skip
    threads = [threading.Thread(target=login, args=arguments) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert most == [1] * 4


def test_the_event_loop_runs_while_a_call_waits() -> None:
    async def story() -> list[str]:
        seen: list[str] = []
        with open(HOTPLUG_LOCK, "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            waiting = asyncio.create_task(aio.call(hotplug.synchronise))
            seen.append(await aio.call(core.trim, " another call "))
            seen.append("waits" if not waiting.done() else "done")
        await waiting
        return [*seen, "done"]

    assert asyncio.run(story()) == ["another call", "waits", "done"]


def test_waiting_events_keep_no_thread_from_other_calls() -> None:
    async def story() -> str:
        with open(HOTPLUG_LOCK, "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            waiting = [asyncio.create_task(aio.call(hotplug.handle_new, [], [])) for _ in range(40)]
            answer = await asyncio.wait_for(aio.call(core.trim, " free "), PATIENCE_SECONDS)
        await asyncio.gather(*waiting)
        return answer

    assert asyncio.run(story()) == "free"


def test_a_failure_is_raised_where_it_is_awaited() -> None:
    with pytest.raises(UsbdevError, match="trsProfiletoPlugCh returned -1"):
        asyncio.run(aio.call(core.channel_of_profile, 9))
