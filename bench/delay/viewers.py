# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Measures on a sandboxed host what many viewers cost the process that serves them: each guest, and each owner on the page
of the camera, gets the stream; each owner also gets every change, of which there is one a second."""

from __future__ import annotations

import asyncio
import os
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack, suppress
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/owner/on_host"))
import conftest
from client import API, PASSWORD, USER, Client
from tornado.httpclient import HTTPRequest
from tornado.websocket import websocket_connect

GUESTS, OWNERS, SECONDS = 200, 50, 60
SETTLING_SECONDS = 3
STREAM = "/mnt/ext/opt/apps/Velmora2/hls/channel1/live.mp4"
SERVER = "ws://127.0.0.1:8080"
TICKS = os.sysconf("SC_CLK_TCK")


class Figures:
    def __init__(self) -> None:
        self.lags: list[float] = []  # of a fragment, after it has reached the first viewer
        self.first: dict[int, float] = {}
        self.answers: list[float] = []
        self.bytes = self.changes = 0


async def watch(path: str, cookie: str, figures: Figures) -> None:
    viewer = await websocket_connect(HTTPRequest(SERVER + path, headers={"Cookie": cookie}))
    while (message := await viewer.read_message()) is not None:
        figures.bytes += len(message)
        now = time.monotonic()
        figures.lags.append(now - figures.first.setdefault(hash(message), now))
    raise RuntimeError("a viewer was left")


async def follow(cookie: str, figures: Figures) -> None:
    page = await websocket_connect(HTTPRequest(f"{SERVER}{API}/live", headers={"Cookie": cookie}))
    while await page.read_message() is not None:
        figures.changes += 1
    raise RuntimeError("a page was left")


async def ask(owner: Client, figures: Figures) -> None:
    """Asks for pages and answers of all kinds, one after the other."""
    while True:
        for method, path in (("GET", "/share"), ("GET", f"{API}/state"), ("GET", "/page/main.js"), ("GET", f"{API}/host")):
            begin = time.monotonic()
            await asyncio.to_thread(owner.request, method, path, None, Cookie=owner.cookie)
            figures.answers.append(time.monotonic() - begin)
            await asyncio.sleep(0.1)


async def change() -> None:
    while True:
        for name in ("Door", "Gate"):
            await asyncio.to_thread(conftest.run, f"usbdevctl rename 0 {name}")
            await asyncio.sleep(1)


def processor_seconds(pid: int) -> float:
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def megabytes(pid: int) -> float:
    lines = dict(line.split(":", 1) for line in Path(f"/proc/{pid}/status").read_text().splitlines())
    return int(lines["VmHWM"].split()[0]) / 1024


async def measure(pid: int, link: str, owner: Client) -> None:
    figures = Figures()
    paths = [f"/{link}/live"] * GUESTS + [f"{API}/profiles/0/live"] * OWNERS
    running = [watch(path, owner.cookie, figures) for path in paths]
    running += [follow(owner.cookie, figures) for _ in range(OWNERS)] + [ask(owner, figures), change()]
    everybody = asyncio.gather(*running)
    await asyncio.wait({everybody}, timeout=SETTLING_SECONDS)
    for one in (figures.lags, figures.answers):
        one.clear()
    figures.bytes = figures.changes = 0
    begin = processor_seconds(pid)
    await asyncio.wait({everybody}, timeout=SECONDS)
    if everybody.done():
        everybody.result()
    report(figures, (processor_seconds(pid) - begin) / SECONDS, megabytes(pid))
    everybody.cancel()
    with suppress(asyncio.CancelledError):
        await everybody


def report(figures: Figures, processor: float, memory: float) -> None:
    lags, answers = sorted(figures.lags), sorted(figures.answers)
    print(f"processor               {100 * processor:8.0f} % of one")
    print(f"memory, at most         {memory:8.0f} MB")
    print(f"sent                    {figures.bytes * 8 / SECONDS / 1e6:8.0f} Mbit/s, {len(lags) / SECONDS:.0f} messages a second")
    print(f"changes                 {figures.changes / SECONDS:8.0f} a second")
    print(f"after the first viewer  {1000 * lags[len(lags) // 2]:8.0f} ms, {1000 * lags[len(lags) * 99 // 100]:.0f} (99 %), {1000 * lags[-1]:.0f} (slowest)")
    print(f"answer                  {1000 * answers[len(answers) // 2]:8.0f} ms, {1000 * answers[-1]:.0f} (slowest)")


def main() -> None:
    with ExitStack() as running:
        folder = Path(running.enter_context(tempfile.TemporaryDirectory()))
        subprocess.run(["login-users", "add", USER], input=f"{PASSWORD}\n", text=True, check=True)
        services = [conftest.Service(name, folder) for name in ("login-service", "manager-service", "owner-page")]
        conftest.run("sim plug usb2-camera 1-1; usbdevctl assign 1-1 0")
        for service in services:
            service.start()
            running.callback(service.end)
        link = conftest.run("usbdevctl share on 0 --json | python3 -c 'import json, sys; print(json.load(sys.stdin)[\"hash\"])'").strip()
        conftest.run(f"usbdevctl stream set 0 --size 640x480 --fps 30; until test -e {STREAM}; do sleep 0.1; done")
        owner = Client()
        owner.sign_in()
        asyncio.run(measure(services[-1].pid, link, owner))


if __name__ == "__main__":
    main()
