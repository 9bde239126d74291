# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A stream that is sent as it comes: who gets it, what, and when that ends."""

from __future__ import annotations

import asyncio
import os
import socket
from collections.abc import Awaitable, Callable, Iterator
from pathlib import Path
from typing import Any

import pytest
from conftest import APPLICATION, STREAM, share, store
from encoder import Encoder
from servicelib.http import MOST_CONNECTIONS
from sharelib import feed
from tornado.httpclient import HTTPClientError
from tornado.websocket import WebSocketClientConnection, websocket_connect

PATIENCE = 30
BEGIN = b"\0\0\0\x18ftyp" + b"avcC\x01\x42\xc0\x0c" + bytes(100)
TYPE = 'video/mp4; codecs="avc1.42c00c"'

pytestmark = pytest.mark.usefixtures("page")


@pytest.fixture
def address() -> str:
    store()
    return "ws://127.0.0.1:8080/" + share("on", "0", "--json")["hash"] + "/live"


@pytest.fixture
def folder() -> Iterator[Path]:
    """The folder of a stream that has begun; the test writes its fragments."""
    for file in STREAM.iterdir():
        file.unlink()
    write("live.mp4", BEGIN)
    yield STREAM
    for file in STREAM.iterdir():
        file.unlink()


def write(name: str, content: bytes) -> None:
    (STREAM / "new.tmp").write_bytes(content)
    (STREAM / "new.tmp").rename(STREAM / name)


def watching(address: str, test: Callable[[WebSocketClientConnection], Awaitable[Any]]) -> Any:
    """Runs the test of one who watches."""

    async def run() -> Any:
        viewer = await websocket_connect(address)
        try:
            return await asyncio.wait_for(test(viewer), PATIENCE)
        finally:
            viewer.close()

    return asyncio.run(run())


async def until_end(viewer: WebSocketClientConnection) -> int:
    """Returns how many messages came."""
    count = 0
    while await viewer.read_message() is not None:
        count += 1
    return count


def test_a_viewer_gets_the_type_of_the_stream_its_begin_and_each_fragment_as_it_comes(address: str, folder: Path) -> None:
    write("0.m4s", b"first")

    async def test(viewer: WebSocketClientConnection) -> None:
        assert [await viewer.read_message() for _ in range(3)] == [TYPE, BEGIN, b"first"]
        for number in range(1, 4):
            write(f"{number}.m4s", str(number).encode())
            assert await viewer.read_message() == str(number).encode()

    watching(address, test)


def test_the_type_of_a_stream_with_sound_has_both(address: str, folder: Path) -> None:
    write("live.mp4", BEGIN + b"mp4a")
    assert watching(address, lambda viewer: viewer.read_message()) == 'video/mp4; codecs="avc1.42c00c,mp4a.40.2"'


def test_a_viewer_begins_with_the_latest_fragments(address: str, folder: Path) -> None:
    for number in range(8, 12 + feed.FRAGMENTS_TO_BEGIN):
        write(f"{number}.m4s", str(number).encode())

    async def test(viewer: WebSocketClientConnection) -> None:
        messages = [await viewer.read_message() for _ in range(2 + feed.FRAGMENTS_TO_BEGIN)]
        assert messages[2:] == [str(12 + number).encode() for number in range(feed.FRAGMENTS_TO_BEGIN)]

    watching(address, test)


@pytest.mark.parametrize("change", ["renew", "off"])
def test_nothing_comes_after_the_link_has_ended(address: str, folder: Path, change: str) -> None:
    async def test(viewer: WebSocketClientConnection) -> None:
        assert [await viewer.read_message() for _ in range(2)] == [TYPE, BEGIN]
        share(change, "0")
        write("0.m4s", b"secret")
        assert await viewer.read_message() is None

    watching(address, test)


def end(folder: Path) -> None:
    (folder / "live.mp4").unlink()


def begin_anew(folder: Path) -> None:
    write("live.mp4", BEGIN)


@pytest.mark.parametrize("change", [end, begin_anew])
def test_a_connection_ends_with_its_stream(address: str, folder: Path, change: Callable[[Path], None]) -> None:
    async def test(viewer: WebSocketClientConnection) -> None:
        assert [await viewer.read_message() for _ in range(2)] == [TYPE, BEGIN]
        change(folder)
        assert await viewer.read_message() is None

    watching(address, test)


@pytest.mark.parametrize("begin", [None, b"", b"not the begin of a stream"])
def test_a_stream_that_has_not_begun_ends_at_once(address: str, folder: Path, begin: bytes | None) -> None:
    write("live.mp4", begin or b"")
    if begin is None:
        (folder / "live.mp4").unlink()
    assert watching(address, until_end) == 0


def test_a_fragment_is_read_once_for_all_viewers(folder: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    class Viewer:
        def __init__(self) -> None:
            self.got: list[str | bytes] = []

        def send(self, message: str | bytes) -> None:
            self.got.append(message)

        def end(self) -> None: ...

    async def test() -> None:
        stream = feed.Feed(folder)
        viewers = [Viewer() for _ in range(200)]
        for viewer in viewers:
            stream.join(viewer)
        reads: list[Path] = []
        content = feed.read_file
        monkeypatch.setattr(feed, "read_file", lambda path, largest: (reads.append(path), content(path, largest))[1])
        write("0.m4s", b"fragment")
        while not all(b"fragment" in viewer.got for viewer in viewers):
            await asyncio.sleep(0.01)
        assert len(reads) == 1
        assert [stream.leave(viewer) for viewer in viewers] == [False] * 199 + [True]
        stream.close()

    asyncio.run(asyncio.wait_for(test(), PATIENCE))


def make_link(path: Path) -> None:
    path.symlink_to("/etc/passwd")


def make_large(path: Path) -> None:
    path.write_bytes(bytes(feed.LARGEST_FILE + 1))


@pytest.mark.parametrize("make", [os.mkfifo, make_link, make_large, Path.mkdir])
def test_what_is_not_a_fragment_is_left_out(address: str, folder: Path, make: Callable[[Path], None]) -> None:
    make(folder / "1.m4s")
    (folder / "-3.m4s").write_bytes(b"no number")

    async def test(viewer: WebSocketClientConnection) -> None:
        write("2.m4s", b"next")
        assert [await viewer.read_message() for _ in range(3)] == [TYPE, BEGIN, b"next"]

    try:
        watching(address, test)
    finally:
        (folder / "1.m4s").rmdir() if make is Path.mkdir else (folder / "1.m4s").unlink()


def test_a_viewer_who_does_not_read_is_left_behind(address: str, folder: Path) -> None:
    """The kernel holds a few megabytes for each connection."""
    largest = bytes(feed.LARGEST_FILE)

    async def test(viewer: WebSocketClientConnection) -> int:
        for number in range(20):
            write(f"{number}.m4s", largest)
            await asyncio.sleep(0.05)
        return await until_end(viewer)

    assert watching(address, test) < 22


def test_a_viewer_who_says_something_is_left(address: str, folder: Path) -> None:
    async def test(viewer: WebSocketClientConnection) -> int:
        await viewer.write_message("hello")
        return await until_end(viewer)

    assert watching(address, test) == 2


def test_requests_of_many_others_end_no_viewers_connection(address: str, folder: Path) -> None:
    async def test(viewer: WebSocketClientConnection) -> None:
        await viewer.read_message(), await viewer.read_message()
        visits = [socket.create_connection(("127.0.0.1", 8080), timeout=PATIENCE) for _ in range(MOST_CONNECTIONS + 1)]
        assert visits[0].recv(1) == b""
        write("0.m4s", b"still there")
        assert await viewer.read_message() == b"still there"
        for visit in visits:
            visit.close()

    watching(address, test)


def test_the_latest_viewers_are_kept_when_there_are_too_many(address: str, folder: Path) -> None:
    async def test(first: WebSocketClientConnection) -> None:
        others = [await websocket_connect(address) for _ in range(MOST_CONNECTIONS)]
        assert await until_end(first) == 2
        write("0.m4s", b"fragment")
        for other in others:
            assert [await other.read_message() for _ in range(3)][-1] == b"fragment"
            other.close()

    watching(address, test)


def refusal(address: str) -> int:
    with pytest.raises(HTTPClientError) as refused:
        watching(address, until_end)
    return refused.value.code


def test_only_links_to_streams_are_followed(address: str, folder: Path, tmp_path: Path) -> None:
    link = APPLICATION / (32 * "e")
    for target in (tmp_path, STREAM.parent, STREAM / "nothing"):
        link.symlink_to(target)
        assert refusal(f"ws://127.0.0.1:8080/{link.name}/live") == 404
        link.unlink()
    assert refusal(f"ws://127.0.0.1:8080/{link.name}/live") == 404


def test_the_encoders_stream_is_what_is_sent(address: str, encoder: Encoder) -> None:
    async def test(viewer: WebSocketClientConnection) -> None:
        kind, begin, fragment = [await viewer.read_message() for _ in range(3)]
        assert str(kind).startswith('video/mp4; codecs="avc1.')
        assert bytes(begin)[4:8] == b"ftyp" and b"moof" in bytes(fragment)

    encoder.await_pictures()
    watching(address, test)
