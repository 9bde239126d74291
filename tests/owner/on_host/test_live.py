# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What open pages get, without asking: every change, soon, and only what has changed."""

from __future__ import annotations

import asyncio
import json
import os
import sqlite3
import subprocess
import time
from collections.abc import Iterator
from contextlib import closing, suppress
from pathlib import Path
from signal import SIGCONT, SIGSTOP

import pytest
from client import Client
from conftest import Service, run
from open_page import open_page, refusal, silent_page
from servicelib.places import STREAMS
from statelib import event_log
from tornado.httpclient import HTTPRequest
from tornado.websocket import websocket_connect
from usbdev import Notification, core

CONFIGURATION = Path("/etc/config/usbdev.conf")
LIST = Path("/etc/config/.usbnosupportlist.dat")


@pytest.fixture(scope="module", autouse=True)
def camera() -> None:
    """In channel 0, with profile 0."""
    run("sim plug usb2-camera 1-1; usbdevctl assign 1-1 0")


@pytest.fixture(scope="module")
def manager(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Service]:
    service = Service("manager-service", tmp_path_factory.mktemp("manager"))
    service.start()
    yield service
    service.end()


def test_a_page_gets_the_state_and_then_what_changes(owner: Client) -> None:
    async def story() -> None:
        page = await open_page(owner)
        first = await page.message()
        assert first == {"section": "state", "value": owner.get("/state")}
        await asyncio.to_thread(run, "usbdevctl rename 0 Door")
        found = [await page.message(), await page.message()]
        assert {told["section"] for told in found if told} >= {"channels", "profiles"}
        await asyncio.to_thread(run, "usbdevctl slot off 1-1")
        assert (await page.until("channels"))[0]["switched_on"] is False
        await asyncio.to_thread(run, "usbdevctl slot on 1-1")

    asyncio.run(story())


def test_a_plugged_camera_appears_with_its_port(owner: Client) -> None:
    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        plug = asyncio.create_task(asyncio.to_thread(run, "sim plug hd-usb-camera 3-1"))
        while "3-1" not in [port["port"] for one in (await page.until("usb"))["controllers"] for port in one["ports"]]:
            pass
        await plug

    asyncio.run(story())


def log(texts: list[str]) -> None:
    """Stores the events together, which is faster than one after the other."""
    with closing(sqlite3.connect(event_log.FILE)) as database, database:
        rows = [(int(time.time()), text) for text in texts]
        database.executemany("INSERT INTO event(time, level, text) VALUES(?, 0, ?)", rows)


def test_an_event_appears_alone(owner: Client) -> None:
    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        await asyncio.to_thread(log, ["alone"])
        told = await page.message()
        assert told and (told["section"], [event["text"] for event in told["value"]]) == ("events", ["alone"])

    asyncio.run(story())


def test_more_events_at_once_than_a_state_has_are_all_told(owner: Client, server: Service) -> None:
    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        server.send(SIGSTOP)
        await asyncio.to_thread(log, [f"event {number}" for number in range(60)])
        server.send(SIGCONT)
        texts: list[str] = []
        while len(texts) < 60:
            texts = [event["text"] for event in await page.until("events")] + texts
        assert texts == [f"event {number}" for number in reversed(range(60))]

    asyncio.run(story())


def test_a_configuration_that_cannot_be_read_is_told_and_when_it_can_again(owner: Client) -> None:
    content = CONFIGURATION.read_bytes()

    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        CONFIGURATION.write_bytes(b"<velmora")
        assert await page.until("host_away") is None
        assert owner.ask("GET", "/state").error == "host_away"
        CONFIGURATION.write_bytes(content)
        assert (await page.until("state"))["channels"][0]["port"] == "1-1"

    try:
        asyncio.run(story())
    finally:
        CONFIGURATION.write_bytes(content)


@pytest.fixture
def guests_address() -> Iterator[str]:
    """Where guests get the stream of profile 0, which has begun without the manager."""
    begin = STREAMS / "channel1/live.mp4"
    begin.write_bytes(b"avcC\x01\x42\xc0\x0c")
    yield f"ws://127.0.0.1:8080/{json.loads(run('usbdevctl share on 0 --json'))['hash']}/live"
    begin.unlink()
    run("usbdevctl share off 0")


def test_guests_are_counted_as_they_come_and_go(owner: Client, guests_address: str) -> None:
    async def story() -> None:
        page = await open_page(owner)
        assert (await page.until("state"))["viewers"] == [0, 0, 0, 0]
        guests = [await websocket_connect(guests_address), await websocket_connect(guests_address)]
        while await page.until("viewers") != [2, 0, 0, 0]:
            pass
        assert owner.get("/state")["viewers"] == [2, 0, 0, 0]
        for left, guest in zip((1, 0), guests):
            guest.close()
            assert await page.until("viewers") == [left, 0, 0, 0]

    asyncio.run(story())


def test_an_owner_who_looks_as_a_guest_is_counted_too(owner: Client, guests_address: str) -> None:
    async def story() -> None:
        own = await websocket_connect(HTTPRequest(guests_address, headers={"Cookie": owner.cookie}))
        assert await own.read_message()
        assert owner.get("/state")["viewers"] == [1, 0, 0, 0]

    asyncio.run(story())


def test_several_pages_the_manager_and_watch_all_get_a_change(owner: Client, manager: Service, tmp_path: Path) -> None:
    async def story() -> None:
        pages = [await open_page(owner) for _ in range(20)]
        for page in pages:
            await page.message()
        errors = tmp_path / "errors"
        with errors.open("wb") as log:
            watches = [
                subprocess.Popen(["usbdevctl", "watch", "--count", "1", "--timeout", "30"], stdout=subprocess.PIPE, stderr=log)
                for _ in range(2)
            ]
        while errors.read_text().count("listening to the manager") < 2:
            await asyncio.sleep(0.02)
        await asyncio.to_thread(run, "usbdevctl slot off 1-1")
        for page in pages:
            assert (await page.until("channels"))[0]["switched_on"] is False
        for watch in watches:
            out, _ = await asyncio.to_thread(watch.communicate)
            assert (watch.returncode, out.startswith(b"event 7 (removed)  profile 0")) == (0, True)
        assert "event 7 (removed)  profile 0" in manager.log.read_text()

    asyncio.run(story())
    run("usbdevctl slot on 1-1")


def test_a_notification_alone_is_a_reason_to_look_again(owner: Client, manager: Service) -> None:
    """Also one of a manager that was started again. Nothing else announces this change."""

    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        manager.end()
        manager.start()
        LIST.write_text("Integrated_Webcam_FHD: Integrat\n")
        told = asyncio.create_task(page.until("channels"))
        while not told.done():  # the server connects to the manager first
            core.notify_manager(Notification(bytes(16), 0, 0, -1, 0, 0, 0))
            await asyncio.wait([told], timeout=0.1)
        assert "listed" in [reason["cause"] for channel in told.result() for reason in channel["reasons"]]

    run("sim plug infrared-camera 5-1")
    asyncio.run(story())
    LIST.unlink()


def test_a_stream_has_bandwidth_of_its_bus_from_its_begin_to_its_end(owner: Client, manager: Service) -> None:
    async def story() -> None:
        page = await open_page(owner)
        usb = (await page.until("state"))["usb"]
        for switch, reserved in (("off", 0), ("on", 197), ("off", 0)):
            await asyncio.to_thread(run, f"usbdevctl slot {switch} 1-1")
            while usb["buses"][0] != {"bus": 1, "speed": 480, "reserved": reserved}:
                usb = await page.until("usb")

    asyncio.run(story())
    run("usbdevctl slot on 1-1")
    while (kept := owner.get("/charts")["bandwidth"])[-1]["to"] is None:
        pass
    assert [(it["bus"], it["reserved"], it["speed"]) for it in kept][-1] == (1, 197, 480)


def connections(server: Service) -> set[str]:
    """The server's sockets, by names that stay theirs."""
    found = set()
    for number in os.listdir(f"/proc/{server.pid}/fd"):
        with suppress(FileNotFoundError):
            found.add(os.readlink(f"/proc/{server.pid}/fd/{number}"))
    return {name for name in found if name.startswith("socket:")}


def test_a_page_that_does_not_read_is_dropped_and_the_others_go_on(server: Service, owner: Client) -> None:
    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        before = connections(server)
        with silent_page(owner):
            while not (silent := connections(server) - before):
                await asyncio.sleep(0.01)
            while silent & connections(server):
                await asyncio.to_thread(log, 200 * ["x" * 5000])
                await page.until("events")
        await asyncio.to_thread(log, ["last"])
        while (await page.until("events"))[0]["text"] != "last":
            pass

    asyncio.run(story())


def test_a_page_that_talks_is_dropped(owner: Client) -> None:
    async def story() -> None:
        page = await open_page(owner)
        await page.message()
        await page.send("hello")
        while await page.message() is not None:
            pass

    asyncio.run(story())


def test_the_pages_of_a_session_end_with_it(server: Service) -> None:
    async def story() -> None:
        client = Client()
        client.sign_in()
        page = await open_page(client)
        await page.message()
        assert client.ask("DELETE", "/session").status == 204
        while await page.message() is not None:
            pass

    asyncio.run(story())


def test_other_sites_and_strangers_get_nothing(owner: Client) -> None:
    async def story() -> None:
        assert await refusal(owner, Origin="http://127.0.0.1:8081") == 403
        assert await refusal(owner, Origin="null") == 403
        assert await refusal(Client()) == 401
        assert owner.ask("GET", "/live").error == "invalid"
        page = await open_page(owner, Origin="http://127.0.0.1:8080")
        assert await page.message()

    asyncio.run(story())
