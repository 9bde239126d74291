# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""export, import and move."""

from __future__ import annotations

import fcntl
import json
import os
import subprocess
import threading
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path
from typing import Any

import pytest
from conftest import APPLICATION, CONFIGURATION, document, usbdevctl

HOTPLUG_LOCK = Path("/var/lock/usbdev-hotplug.lock")


def links() -> dict[Path, Path]:
    return {path: path.readlink() for path in APPLICATION.iterdir() if path.is_symlink()}


@pytest.fixture(scope="session")
def plugged() -> tuple[str, dict[Path, Path]]:
    """The configuration and the links of a host with a camera in 3-1, which streams profile 1 as a shared 640x480 at 60,
    and one in 5-1 with rates up to 30."""
    CONFIGURATION.write_text("<velmora/>")
    for camera, port in (("usb2-camera", "3-1"), ("hd-usb-camera", "5-1")):
        subprocess.run(["sim", "plug", camera, port], check=True, capture_output=True)
    usbdevctl("assign", "3-1", "1")
    usbdevctl("rename", "1", "Door")
    usbdevctl("stream", "set", "1", "--size", "640x480", "--fps", "60")
    usbdevctl("share", "on", "1", "--password-stdin", given="pass\n")
    return CONFIGURATION.read_text(), links()


@pytest.fixture(autouse=True)
def two_cameras(empty: None, plugged: tuple[str, dict[Path, Path]]) -> None:
    """Every test finds that host as it was at first."""
    configuration, first = plugged
    CONFIGURATION.write_text(configuration)
    for path in links():
        path.unlink()
    for path, target in first.items():
        path.symlink_to(target)


@pytest.fixture
def exported(tmp_path: Path) -> Path:
    file = tmp_path / "settings.json"
    assert usbdevctl("export", str(file)).returncode == 0
    return file


def change(file: Path, **changes: Any) -> None:
    """Changes the settings of the first camera."""
    settings = json.loads(file.read_text())
    settings["cameras"][0].update(changes)
    file.write_text(json.dumps(settings))


def stream() -> list[Any]:
    shown = document("stream", "show", "1")
    return [shown["width"], shown["height"], shown["fps"], shown["codec"]]


def test_an_export_has_all_settings_and_no_identifier_and_only_its_owner_can_read_it(tmp_path: Path) -> None:
    file = tmp_path / "settings.json"
    file.write_text("old")
    file.chmod(0o644)
    assert document("export", str(file)) == {"file": str(file), "cameras": 2, "passwords": 1}
    assert file.stat().st_mode & 0o777 == 0o600
    assert json.loads(file.read_text()) == {
        "schema": 1,
        "cameras": [
            {
                "slot": "3-1",
                "device": "USB 2.0 Camera: USB Camera",
                "slot_switch": True,
                "profile": {
                    "profile": 1,
                    "name": "Door",
                    "stream": {"size": "640x480", "fps": 60, "codec": "mjpeg"},
                    "share": {"enabled": True, "password": "pass"},
                },
            },
            {"slot": "5-1", "device": "USB 2.0 Camera: HD USB Camera", "slot_switch": True, "profile": None},
        ],
    }
    assert list(tmp_path.iterdir()) == [file]


def test_an_export_that_cannot_be_written_is_a_failure() -> None:
    result = usbdevctl("export", "/nowhere/settings.json")
    assert (result.stdout, result.returncode) == ("", 1)
    assert result.stderr == "usbdevctl: cannot write /nowhere/settings.json: No such file or directory\n"


def test_an_import_brings_back_what_was_lost(exported: Path, tmp_path: Path) -> None:
    usbdevctl("clear", "1")
    usbdevctl("slot", "off", "3-1")
    result = document("import", str(exported))
    assert [step.split(":")[0] for step in result["done"]] == [
        "switch its port on",
        "assign profile 1",
        "name profile 1",
        "set the stream of profile 1",
        "set the sharing of profile 1",
    ]
    assert result["not_done"] == []
    usbdevctl("export", str(tmp_path / "again.json"))
    assert (tmp_path / "again.json").read_text() == exported.read_text()
    link = document("share", "show", "1")
    assert (APPLICATION / link["hash"]).is_symlink()


def test_an_import_of_the_settings_that_there_are_changes_nothing(exported: Path) -> None:
    before = CONFIGURATION.read_text()
    result = usbdevctl("import", str(exported))
    assert (result.stdout, result.returncode) == ("the settings are as they are to be\n", 0)
    assert CONFIGURATION.read_text() == before


@pytest.mark.parametrize(
    ("changes", "refusal"),
    [
        ({"device": "Another"}, 'no camera "Another" is attached to port 3-1'),
        ({"profile": None}, "it has profile 1, and the settings have none for it"),
        ({"more": 1}, "cameras[0].more is not known"),
    ],
)
def test_an_import_that_does_not_fit_changes_nothing_at_all(exported: Path, changes: dict, refusal: str) -> None:
    change(exported, **changes)
    settings = json.loads(exported.read_text())
    settings["cameras"][1]["slot_switch"] = False
    exported.write_text(json.dumps(settings))
    before = CONFIGURATION.read_text()
    result = usbdevctl("import", str(exported))
    assert (result.stdout, result.returncode) == ("", 1)
    assert refusal in result.stderr
    assert result.stderr.endswith("usbdevctl: nothing was changed\n")
    assert CONFIGURATION.read_text() == before


def test_a_file_that_is_not_an_export_is_refused(tmp_path: Path) -> None:
    (tmp_path / "text").write_text("text")
    assert f"{tmp_path}/text: it is not JSON\n" in usbdevctl("import", str(tmp_path / "text")).stderr
    result = usbdevctl("import", "/nowhere")
    assert "/nowhere: it cannot be read, or is empty\n" in result.stderr
    assert result.returncode == 1


def test_a_move_takes_name_stream_and_sharing_along() -> None:
    old = document("share", "show", "1")
    moved = document("move", "1", "5-1")
    link = document("share", "show", "1")
    assert [moved[key] for key in ("from_channel", "channel", "slot", "profile", "profile_name")] == [
        0,
        1,
        "5-1",
        1,
        "Door",
    ]
    assert moved["changes"] == [{"setting": "fps", "wanted": "60", "taken": "30"}]
    assert (moved["differences"], moved["page"]) == (["fps 30 instead of 60"], link["page"])
    assert stream() == [640, 480, 30, "mjpeg"]
    assert (link["sharing"], link["password"]) == (True, True)
    assert "<shrpwd>pass</shrpwd>" in CONFIGURATION.read_text()
    assert link["ssid"] != old["ssid"]
    assert not (APPLICATION / old["hash"]).is_symlink()
    assert document("channels")["channels"][0]["profile"] is None


def test_a_move_shows_what_changed() -> None:
    result = usbdevctl("move", "1", "ch1")
    assert (result.stderr, result.returncode) == ("", 0)
    page = document("share", "show", "1")["page"]
    assert result.stdout == (
        'moved profile 1: channel 1  5-1  "USB 2.0 Camera: HD USB Camera"  profile 1\n'
        f"changed: fps 30 instead of 60\nnew share link: {page}\n"
    )


def test_a_dry_run_of_a_move_shows_what_would_change_and_changes_nothing() -> None:
    before = CONFIGURATION.read_text()
    result = usbdevctl("move", "1", "ch1", "--dry-run")
    assert (result.stderr, result.returncode) == ("", 0)
    assert result.stdout == (
        'would move profile 1: channel 1  5-1  "USB 2.0 Camera: HD USB Camera"  no profile\n'
        "would change: fps 30 instead of 60\nthe share link would be a new one\n"
    )
    planned = document("move", "1", "ch1", "--dry-run")
    assert [planned[key] for key in ("from_channel", "channel", "profile", "page")] == [0, 1, None, None]
    assert planned["changes"] == [{"setting": "fps", "wanted": "60", "taken": "30"}]
    assert CONFIGURATION.read_text() == before


def test_a_dry_run_of_a_move_is_refused_as_the_move_is() -> None:
    usbdevctl("slot", "off", "5-1")
    assert usbdevctl("move", "1", "5-1", "--dry-run").stderr == usbdevctl("move", "1", "5-1").stderr != ""
    assert [one["reason"] for one in refusals("5-1", "--dry-run")] == ["port_off"]


def test_a_dry_run_of_a_move_does_not_wait_for_a_camera_that_is_plugged_in() -> None:
    with HOTPLUG_LOCK.open("w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        assert usbdevctl("move", "1", "5-1", "--dry-run").returncode == 0


def test_a_profile_moves_to_a_camera_that_waits_for_the_old_one() -> None:
    subprocess.run(["sim", "plug", "hd-usb-camera", "3-2"], check=True, capture_output=True)
    try:
        assert document("channels")["channels"][2]["parked_behind"] == 0
        assert usbdevctl("move", "1", "3-2").returncode == 0
        assert document("explain", "3-2")["streams"] is True
    finally:
        subprocess.run(["sim", "unplug", "3-2"], check=True, capture_output=True)


def test_a_move_that_would_do_harm_changes_nothing() -> None:
    usbdevctl("slot", "off", "5-1")
    before = CONFIGURATION.read_text()
    for target, why in (("5-1", "its port is off"), ("3-1", "it has the profile")):
        result = usbdevctl("move", "1", target)
        assert (result.stdout, result.returncode) == ("", 1)
        assert why in result.stderr
    assert CONFIGURATION.read_text() == before


def refusals(target: str, *options: str) -> list[dict[str, Any]]:
    result = usbdevctl("move", "1", target, "--json", *options)
    assert result.returncode == 1
    return list(json.loads(result.stdout)["refusals"])


def test_a_refused_move_names_its_reason_for_programs() -> None:
    usbdevctl("slot", "off", "5-1")
    assert [one["reason"] for one in refusals("3-1")] == ["own_camera"]
    (refused,) = refusals("5-1")
    assert refused.pop("why").endswith(": its port is off, and a stream cannot be set while it is")
    assert refused == {"reason": "port_off", "other_channel": None, "collision": None}


def test_a_move_from_a_camera_that_is_away_is_done() -> None:
    subprocess.run(["sim", "unplug", "3-1"], check=True, capture_output=True)
    assert usbdevctl("move", "1", "5-1").returncode == 0
    assert stream() == [640, 480, 30, "mjpeg"]
    subprocess.run(["sim", "plug", "usb2-camera", "3-1"], check=True, capture_output=True)


def test_a_move_into_the_port_of_the_displaced_camera_is_done() -> None:
    usbdevctl("plug", "--type", "camera", "--node", "0", "--slot", "3-1", "--name", "Successor")
    assert document("channels")["channels"][0]["state"] == "displaced"
    moved = document("move", "1", "3-1")
    assert (moved["channel"], moved["device"], moved["profile_name"]) == (2, "Successor", "Door")
    assert document("channels")["channels"][0]["state"] == "free"
    assert stream() == [640, 480, 60, "mjpeg"]


@contextmanager
def answering_once(listing: Path) -> Iterator[None]:
    """Lets a camera list its formats once more, and none from then on."""
    text = listing.read_text()
    nothing = listing.with_name("nothing")
    nothing.write_text("")
    listing.unlink()
    os.mkfifo(listing)

    def answer() -> None:
        with listing.open("w") as reader:  # waits for who asks first
            nothing.rename(listing)
            reader.write(text)

    thread = threading.Thread(target=answer)
    thread.start()
    yield
    thread.join()
    listing.write_text(text)


def test_a_move_that_fails_in_the_middle_is_taken_back() -> None:
    """The stream cannot be set, since the camera lists no format any more."""
    node = document("channels")["channels"][1]["video_node"]
    with answering_once(Path(f"/run/usbdev-sim/nodes/video{node}/formats")):
        result = usbdevctl("move", "1", "5-1", "--json")
    assert result.returncode == 1
    assert [one["reason"] for one in json.loads(result.stdout)["refusals"]] == ["put_back"]
    assert "failed: set the stream of profile 1: channel 1  5-1" in result.stderr
    assert result.stderr.endswith("the profile is with the camera that had it, its links are new\n")
    back = document("channels")["channels"]
    assert [(row["profile"], row["profile_name"]) for row in back[:2]] == [(1, "Door"), (None, "")]
    assert stream() == [640, 480, 60, "mjpeg"]
    assert document("share", "show", "1")["password"] is True


def test_an_import_that_fails_in_the_middle_shows_what_was_done(exported: Path) -> None:
    usbdevctl("stream", "set", "1", "--size", "1280x720")
    usbdevctl("clear", "1")
    with answering_once(Path("/run/usbdev-sim/nodes/video0/formats")):
        result = usbdevctl("import", str(exported))
    assert [line.split(":")[1].strip() for line in result.stdout.splitlines()] == ["assign profile 1", "name profile 1"]
    assert [line.split(":")[1:3] for line in result.stderr.splitlines() if line.startswith("usbdevctl")] == [
        [" failed", " set the stream of profile 1"],
        [" not done", " set the sharing of profile 1"],
    ]
    assert result.returncode == 1
