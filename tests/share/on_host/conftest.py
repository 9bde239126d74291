"""A share page and what stands behind it. These tests run on a sandboxed host, of which they are the only users."""

from __future__ import annotations

import json
import os
import socket
import subprocess
import sys
from collections.abc import Iterator
from pathlib import Path
from xml.etree import ElementTree

import pytest

SHARE = Path(__file__).resolve().parents[3] / "host/share"
SHARE_PAGE = SHARE / "share-page"
sys.path.insert(0, str(SHARE))
CONFIGURATION = Path("/etc/config/usbdev.conf")
APPLICATION = Path("/mnt/ext/opt/apps/Velmora2")
STREAM = APPLICATION / "hls/channel1"
ORIGIN = "http://127.0.0.1:8080"


@pytest.fixture(scope="session")
def page(tmp_path_factory: pytest.TempPathFactory) -> Iterator[Path]:
    """The share page, at ORIGIN; what it logs."""
    folder = tmp_path_factory.mktemp("page")
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as ready, (folder / "log").open("wb") as log:
        ready.bind(str(folder / "ready"))
        ready.settimeout(20)
        server = subprocess.Popen([SHARE_PAGE], stderr=log, env={"NOTIFY_SOCKET": str(folder / "ready"), **os.environ})
        try:
            ready.recv(64)
            yield folder / "log"
        finally:
            server.terminate()
            assert server.wait() == 0


def store(**keys: object) -> None:
    """Makes a host with one camera, in channel 0 with profile 0; the keys replace its own. A dot stands for a group."""
    stored: dict[str, object] = {"exists": 1, "profile": 0, "usbslot": "3-1", "video.vnode": 0, **keys}
    velmora = ElementTree.Element("velmora")
    channel = ElementTree.SubElement(velmora, "ch0")
    for key, value in stored.items():
        group, _, name = key.rpartition(".")
        parent = channel if not group else channel.find(group)
        if parent is None:
            parent = ElementTree.SubElement(channel, group)
        ElementTree.SubElement(parent, name).text = str(value)
    CONFIGURATION.write_bytes(ElementTree.tostring(velmora, encoding="utf-8"))


def share(*arguments: str, password: str = "") -> dict[str, str]:
    """Runs "usbdevctl share"; the link that it prints with --json."""
    command = ["usbdevctl", "share", *arguments]
    done = subprocess.run(command, input=password, check=True, stdout=subprocess.PIPE, text=True)
    return json.loads(done.stdout) if "--json" in arguments else {}
