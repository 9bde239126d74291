# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Whatever a client of the share page does, the others are answered, and no secret gets into the log."""

from __future__ import annotations

import os
import socket
import subprocess
import time
from collections.abc import Iterator
from concurrent.futures import Future, ThreadPoolExecutor
from pathlib import Path

import pytest
from clients import SLOW, TABLE
from conftest import CONFIGURATION, ONE_CAMERA, REPOSITORY, Figures
from row import Row, named
from visiting import APPLICATION, HASH, PASSWORD, SECRETS, SSID, STREAM, TOKEN, honest_answers, statuses

LINK = f"""\
<sharelink>
  <shrenable>1</shrenable><ssid>{SSID}</ssid><token>{TOKEN}</token><hash_string>{HASH}</hash_string>
  <pwdenable>1</pwdenable><shrpwd>{PASSWORD}</shrpwd>
</sharelink>
</ch0>"""
HONEST_SECONDS = 20
# As many descriptors as a service usually gets.
DESCRIPTORS = 1024


class Page:
    """The share page's server."""

    def __init__(self, folder: Path) -> None:
        self.log = folder / "log"
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready, self.log.open("wb") as log:
            ready.bind(str(folder / "ready"))
            ready.settimeout(20)
            environment = {**os.environ, "NOTIFY_SOCKET": str(folder / "ready")}
            command = ["prlimit", f"--nofile={DESCRIPTORS}:{DESCRIPTORS}", REPOSITORY / "host/share/share-page"]
            self.process = subprocess.Popen(command, stderr=log, env=environment)
            ready.recv(64)

    def forget_peak(self) -> int:
        """Returns the kilobytes that it has now, from which its peak is counted."""
        Path(f"/proc/{self.process.pid}/clear_refs").write_text("5")
        return self.peak()

    def peak(self) -> int:
        status = Path(f"/proc/{self.process.pid}/status").read_text()
        return int(status.split("VmHWM:")[1].split()[0])


@pytest.fixture(scope="module")
def page(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Page]:
    CONFIGURATION.write_text(ONE_CAMERA.replace("  </ch0>", LINK))
    (APPLICATION / HASH).symlink_to(STREAM)
    (STREAM / "playlist.m3u8").write_text("#EXTM3U\n")
    (STREAM / "7.ts").write_bytes(bytes(5000))
    (STREAM / "large.ts").write_bytes(bytes(16 << 20))
    (STREAM / "out.ts").symlink_to("/etc/passwd")
    (STREAM / "circle.ts").symlink_to("circle.ts")
    (STREAM / "device.ts").symlink_to("/dev/zero")
    os.mkfifo(STREAM / "pipe.ts")
    (STREAM / "folder.ts").mkdir()
    running = Page(tmp_path_factory.mktemp("page"))
    yield running
    running.process.terminate()
    assert running.process.wait(20) == 0


@pytest.fixture(scope="module")
def slow_visits(page: Page) -> Iterator[dict[str, Future[bytes]]]:
    """The slow visits, which begin at once and together."""
    with ThreadPoolExecutor(len(SLOW)) as pool:
        yield {row.name: pool.submit(row.neighbour, "127.0.9.1") for row in SLOW}


@pytest.fixture(autouse=True)
def unharmed(page: Page) -> Iterator[None]:
    logged_before = page.log.stat().st_size
    yield
    start = time.monotonic()
    assert statuses(honest_answers()) == [200, 200, 200]
    assert time.monotonic() - start < HONEST_SECONDS
    logged = page.log.read_text()[logged_before:]
    assert "Traceback" not in logged
    assert not [secret for secret in SECRETS if secret in logged]


@pytest.mark.parametrize(**named(TABLE))
def test_a_client(row: Row, page: Page, slow_visits: dict[str, Future[bytes]], figures: Figures) -> None:
    address = f"127.0.1.{TABLE.index(row) + 1}"
    before, start = page.forget_peak(), time.monotonic()
    answers = slow_visits[row.name].result() if row.name in slow_visits else row.neighbour(address)
    seconds, megabytes = time.monotonic() - start, (page.peak() - before) / 1024
    figures.add(seconds, megabytes)
    found = statuses(answers)
    assert seconds < row.seconds and megabytes < row.megabytes
    assert (found[0] if found else None) == row.outcome.result, answers[:500]
    assert row.outcome.text in (None, " ".join(map(str, found)))
    assert b"root:" not in answers
