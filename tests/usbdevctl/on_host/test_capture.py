# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""capture: a camera that was captured and is simulated again is the same for the library."""

from __future__ import annotations

import re
import subprocess
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest
from conftest import CONFIGURATION, document, usbdevctl

PORT = "3-1"
SERIALS = {"hd-pro-webcam": "5C3D1A6F", "usb3-camera": "12345678"}


def sim(*words: str) -> None:
    subprocess.run(["sim", *words], check=True, capture_output=True)


@pytest.fixture
def plugged() -> Iterator[None]:
    sim("plug", "--hardware-only", "hd-pro-webcam", PORT)
    yield
    sim("unplug", "--hardware-only", PORT)


def as_the_library_has_it(camera: str) -> tuple[Any, ...]:
    """What the library stores and reports of a camera that is plugged in alone."""
    port = "4-1" if "usb3" in camera else PORT
    CONFIGURATION.write_text("<velmora/>")
    sim("plug", camera, port)
    answers = (CONFIGURATION.read_text(), document("formats", "0"))
    folder = document("capture", "0", "--folder", f"/tmp/again-{Path(camera).name}")["folder"]
    sim("unplug", "--hardware-only", port)
    return (*answers, folder)


@pytest.mark.parametrize("camera", [*SERIALS, "colour-and-infrared", "microphone-first"])
def test_a_captured_camera_is_the_same_for_the_library(camera: str) -> None:
    *original, folder = as_the_library_has_it(camera)
    *captured, again = as_the_library_has_it(folder)
    assert captured == original
    files = {path.name: path.read_bytes() for path in Path(folder).iterdir()}
    assert files == {path.name: path.read_bytes() for path in Path(again).iterdir()}
    text = b"".join(files.values()).decode()
    assert not re.search(rf"serial|/dev/|/home/|{SERIALS.get(camera, 'serial')}", text)


def test_the_folder_is_named_after_the_camera_in_the_current_one(plugged: None, tmp_path: Path,
                                                                monkeypatch: pytest.MonkeyPatch) -> None:  # fmt: skip
    monkeypatch.chdir(tmp_path)
    done = usbdevctl("capture", "/dev/video0")
    assert (done.stdout, done.stderr) == (f"captured: {tmp_path}/hd-pro-webcam-c920\n", "")
    assert sorted(path.name for path in (tmp_path / "hd-pro-webcam-c920").iterdir()) == ["camera.toml", "formats.txt"]


def test_nothing_is_overwritten(plugged: None, tmp_path: Path) -> None:
    done = usbdevctl("capture", "0", "--folder", str(tmp_path))
    assert (done.returncode, done.stdout) == (1, "")
    assert done.stderr == f"usbdevctl: {tmp_path} is there already\n"
    assert list(tmp_path.iterdir()) == []


def test_a_node_without_a_camera_is_a_failure(tmp_path: Path) -> None:
    done = usbdevctl("capture", "/dev/video9", "--folder", str(tmp_path / "none"))
    assert (done.returncode, done.stderr) == (1, "usbdevctl: there is no camera with the node /dev/video9\n")
    assert not (tmp_path / "none").exists()


def test_a_serial_number_in_the_cameras_name_is_left_out(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    (tmp_path / "formats.txt").write_text("\tPixel Format: 'MJPG' (compressed)\n")
    (tmp_path / "camera.toml").write_text(
        'vendor_id = "1d6b"\nproduct_id = "0102"\nproduct = "Cam 00A1B2C3"\nserial = "00A1B2C3"\n')
    monkeypatch.chdir("/tmp")
    sim("plug", "--hardware-only", str(tmp_path), PORT)
    folder = document("capture", "0")["folder"]
    sim("unplug", "--hardware-only", PORT)
    assert folder == "/tmp/cam"
    assert "00A1B2C3" not in Path(folder, "camera.toml").read_text()


def test_without_the_simulator_that_is_the_message(plugged: None, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("PATH", "/usr/sbin")
    done = subprocess.run(["/usr/bin/usbdevctl", "capture", "0"], capture_output=True, text=True)
    assert (done.returncode, done.stdout) == (1, "")
    assert done.stderr.startswith("usbdevctl: this host has no simulator that can capture a camera: sh: ")
