# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The share page after an ordinary web server, with the configuration in examples/nginx."""

from __future__ import annotations

import os
import shutil
import subprocess
import time
from collections.abc import Iterator
from http.client import HTTPConnection, HTTPResponse
from pathlib import Path
from signal import SIGCONT, SIGSTOP
from tempfile import TemporaryDirectory

import pytest
from conftest import APPLICATION, STREAM, share
from encoder import Encoder
from host_service import Service
from viewer import Viewer, viewing

Link = dict[str, str]
EXAMPLES = Path(__file__).resolve().parents[3] / "examples/nginx"
# What the machine's own configuration has: one process, which writes nothing outside the folder.
AROUND = """daemon off; master_process off; pid nginx.pid; error_log stderr;
events {} http { client_body_temp_path body; proxy_temp_path proxy; fastcgi_temp_path f; uwsgi_temp_path u; scgi_temp_path s;
include share-page.conf; }"""
IS_LIVE = "document.getElementById('video').src.startsWith('blob:')"


IS_ROOT = os.geteuid() == 0
# As on a machine, nginx is another user than the page; only root has others.
UNPRIVILEGED = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if IS_ROOT else []


@pytest.fixture(scope="module")
def folder() -> Iterator[Path]:
    """nginx's own."""
    with TemporaryDirectory(prefix="nginx-", dir="/tmp") as name:
        if IS_ROOT:
            os.chown(name, 65534, 65534)
        yield Path(name)


@pytest.fixture(scope="module")
def log(page: Service, folder: Path) -> Iterator[Path]:
    """What nginx prints."""
    for file in EXAMPLES.glob("share-page*.conf"):
        shutil.copy(file, folder)
    (folder / "nginx.conf").write_text(AROUND)
    command = [*UNPRIVILEGED, "nginx", "-p", folder, "-c", folder / "nginx.conf", "-e", "stderr"]
    with (folder / "log").open("wb") as output:
        process = subprocess.Popen(command, stderr=output)
    while not (folder / "nginx.pid").exists():
        assert process.poll() is None, (folder / "log").read_text()
        time.sleep(0.02)
    yield folder / "log"
    process.terminate()
    assert process.wait() == 0


@pytest.fixture(scope="module")
def visitor(log: Path) -> Iterator[Viewer]:
    with viewing("http://127.0.0.1:8081") as somebody:
        yield somebody


def get(path: str) -> HTTPResponse:
    connection = HTTPConnection("127.0.0.1", 8081, timeout=20)
    connection.request("GET", path)
    answer = connection.getresponse()
    answer.read()
    connection.close()
    return answer


def test_a_stream_is_played_as_it_comes(visitor: Viewer, encoder: Encoder, link: Link) -> None:
    visitor.open(link["page"])
    visitor.await_playing()
    assert visitor.evaluate(IS_LIVE)


def test_playlist_and_segments_need_no_answer_of_the_page(log: Path, page: Service, encoder: Encoder, link: Link) -> None:
    encoder.await_pictures()
    segment = encoder.playlist.read_text().split()[-1]
    page.send(SIGSTOP)
    try:
        answers = [get(f"/{link['hash']}/{name}") for name in (encoder.playlist.name, segment)]
    finally:
        page.send(SIGCONT)
    assert [answer.status for answer in answers] == [200, 200]
    assert [answer.headers["Content-Type"] for answer in answers] == ["application/vnd.apple.mpegurl", "video/mp2t"]
    assert [answer.headers["Cache-Control"] for answer in answers] == ["max-age=1", "max-age=6"]
    assert {answer.headers["X-Content-Type-Options"] for answer in answers} == {"nosniff"}


def test_nothing_else_of_a_stream_is_given_out(log: Path, link: Link) -> None:
    (STREAM / "playlist.m3u8").write_text("#EXTM3U\n")
    (STREAM / "failure").write_text("private")
    (STREAM / "planted.ts").symlink_to("/etc/passwd")
    if IS_ROOT:
        os.lchown(STREAM / "planted.ts", 1, 1)
    paths = ["playlist.m3u8", "failure", "%2e%2e/channel1/failure", "planted.ts"]
    assert [get(f"/{link['hash']}/{path}").status for path in paths] == [200, 404, 404, 404]
    share("renew", "0")
    assert get(f"/{link['hash']}/playlist.m3u8").status == 404
    for file in STREAM.iterdir():
        file.unlink()


def test_the_page_looks_where_the_link_of_another_user_leads(log: Path, link: Link) -> None:
    (STREAM / "playlist.m3u8").write_text("#EXTM3U\n")
    if IS_ROOT:
        os.lchown(APPLICATION / link["hash"], 1, 1)
    answer = get(f"/{link['hash']}/playlist.m3u8")
    assert (answer.status, answer.headers["Cache-Control"]) == (200, "no-store" if IS_ROOT else "max-age=1")
    (STREAM / "playlist.m3u8").unlink()


def test_links_are_in_no_log(log: Path, page: Service, link: Link) -> None:
    paths = [link["page"], f"/{link['hash']}/gone.ts", f"/{link['hash']}/live"]
    page.end()
    try:
        assert [get(path).status for path in paths] == [502, 502, 502]
    finally:
        page.start()
    assert link["hash"] not in log.read_text() and link["token"] not in log.read_text()


def test_questions_have_a_limit(log: Path) -> None:
    statuses = [get("/share/open").status for _ in range(40)]
    assert set(statuses[:20]) == {405} and 429 in statuses
