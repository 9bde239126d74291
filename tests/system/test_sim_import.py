# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""sim import: a camera made from what real tools printed looks like the one it was made from."""

from __future__ import annotations

import re
import shutil
import subprocess
from pathlib import Path

import pytest
from conftest import REPOSITORY
from simlib import catalogue, importer
from simlib.capture import Capture
from simlib.catalogue import Camera, UsbDevice, load_camera
from simlib.errors import SimError
from test_sim_captures import CAPTURES, stable

NAMES_OF_TOOLS = {
    "walk.": "udevadm-name-attribute-walk.",
    "formats.": "v4l2-ctl-list-formats-ext.",
    "names.": "video4linux-names.",
    "cards.": "proc-asound-cards.",
}
WALK = "udevadm-name-attribute-walk.video0.txt"
LISTING = "v4l2-ctl-list-formats-ext.video0.txt"


@pytest.fixture
def simulator(tmp_path, monkeypatch) -> Path:
    """A copy, into which cameras can be imported."""
    copy = tmp_path / "sim"
    shutil.copytree(REPOSITORY / "host/sim", copy)
    for module in (catalogue, importer):
        monkeypatch.setattr(module, "DATA", copy)
    return copy


@pytest.fixture
def captured(tmp_path):
    """Makes the folder of a capture, with its files as the tools' names have it."""

    def make(capture: str) -> Path:
        folder = tmp_path / capture
        folder.mkdir()
        for path in (CAPTURES / capture).iterdir():
            name = path.name
            for short, long in NAMES_OF_TOOLS.items():
                name = re.sub(f"^{re.escape(short)}", long, name)
            shutil.copy(path, folder / name)
        return folder

    return make


def facts(camera: Camera, **other: object) -> dict[str, object]:
    """All that is known of a camera, and what is other in a camera that is compared with it."""
    names = [*UsbDevice.__annotations__, *Camera.__annotations__]
    return {name: getattr(camera, name) for name in names} | other


def edit(path: Path, old: str, new: str) -> None:
    text = path.read_text()
    assert old in text
    path.write_text(text.replace(old, new))


def without_serial(walk: str) -> list[str]:
    node, interface, camera, *above = walk.split("  looking at ")[1:]
    camera = re.sub(r"    ATTRS{serial}.*\n", "", camera)
    return stable("".join([node, interface, camera, *above]))


@pytest.mark.parametrize(
    ("capture", "port"), [("mjpg-yuyv", "3-1"), ("yuyv-only", "1-3"), ("hd-mic", "3-2"), ("superspeed", "4-1")]
)
def test_an_imported_camera_looks_like_the_captured_one(simulator, captured, pc, capture, port):
    importer.import_camera(captured(capture), "imported")
    host, root = pc
    host.plug("imported", port)
    simulated = (root / "run/usbdev-sim/nodes/video0/walk").read_text()
    assert without_serial(simulated) == without_serial((CAPTURES / capture / "walk.video0.txt").read_text())


@pytest.mark.parametrize(
    ("capture", "camera"),
    [
        ("mjpg-yuyv", "usb2-camera"),
        ("yuyv-only", "pc-camera"),
        ("hd-mic", "hd-pro-webcam"),
        ("superspeed", "usb3-camera"),
    ],
)
def test_an_imported_listing_is_in_the_layout_that_the_library_reads(simulator, captured, capture, camera):
    importer.import_camera(captured(capture), "imported")
    assert load_camera("imported").listing("formats.txt") == load_camera(camera).listing("formats.txt")


def test_serial_numbers_are_left_out(simulator, captured):
    target = importer.import_camera(captured("hd-mic"), "imported")
    assert load_camera("imported").serial is None
    assert not any("5C3D1A6F" in path.read_text() for path in target.iterdir())


def test_a_node_without_formats_is_for_metadata(simulator, captured):
    importer.import_camera(captured("mjpg-yuyv"), "imported")
    assert load_camera("imported").nodes == ["formats.txt", "metadata"]


def test_a_sound_card_is_imported_as_a_usual_microphone(simulator, captured):
    importer.import_camera(captured("hd-mic"), "imported")
    sound = load_camera("imported").sound
    assert (sound.name, sound.first_interface) == ("HD Pro Webcam C920", 2)
    assert (sound.entry_count, sound.channel_mode, sound.channel_count) == (1, 1, 1)


def test_the_sound_card_of_another_device_is_not_the_cameras(simulator, captured):
    folder = captured("hd-mic")
    edit(folder / "proc-asound-cards.txt", "usb-0000:01:00.0-2,", "usb-0000:01:00.0-4,")
    importer.import_camera(folder, "imported")
    assert load_camera("imported").sound is None


def test_a_camera_with_two_functions_is_imported_with_both(simulator, pc, tmp_path):
    host, root = pc
    host.plug("colour-and-infrared", "3-1")
    for node in range(4):
        answers = root / f"run/usbdev-sim/nodes/video{node}"
        # the kernel may give the numbers in any order
        shutil.copy(answers / "walk", tmp_path / f"udevadm-name-attribute-walk.video{9 - node}.txt")
        shutil.copy(answers / "formats", tmp_path / f"v4l2-ctl-list-formats-ext.video{9 - node}.txt")
    importer.import_camera(tmp_path, "imported")
    original, imported = load_camera("colour-and-infrared"), load_camera("imported")
    second = original.second_function._replace(nodes=["formats-2.txt", "metadata"])
    likeness = facts(original, name="imported", comment="Imported from a capture.", second_function=second)
    assert facts(imported) == likeness
    assert imported.listing("formats-2.txt") == original.listing("formats-infrared.txt")


def test_a_name_that_is_not_plain_ascii_comes_from_the_list_of_names(simulator, captured):
    folder = captured("yuyv-only")
    for line in ('    ATTR{name}=="USB2.0 PC CAMERA"\n', '    ATTRS{product}=="USB2.0 PC CAMERA"\n'):
        edit(folder / WALK, line, "")
    (folder / "video4linux-names.txt").write_text('/sys/class/video4linux/video0/name: Caméra "PC"\n')
    importer.import_camera(folder, "imported")
    assert load_camera("imported").node_name == 'Caméra "PC"'


def test_a_file_may_be_as_large_as_the_limit(simulator, captured):
    folder = captured("yuyv-only")
    listing = (folder / LISTING).read_text()
    (folder / LISTING).write_text(listing.ljust(1 << 20, "\n"))
    importer.import_camera(folder, "imported")
    assert load_camera("imported").nodes == ["formats.txt"]


def add_missing_listings(folder: Path) -> None:
    """Some captures have none."""
    for walk in folder.glob("udevadm-*"):
        listing = folder / walk.name.replace("udevadm-name-attribute-walk", "v4l2-ctl-list-formats-ext")
        if not listing.exists():
            shutil.copy(CAPTURES / "mjpg-yuyv/formats.video0.txt", listing)


def no_change(_folder: Path) -> None:
    pass


@pytest.mark.parametrize(
    ("capture", "change", "reason"),
    [
        ("three-cameras", no_change, "there is no folder"),
        ("present-at-boot", no_change, "it contains 3 cameras (1-1, 1-4, 3-2); keep only the files of one"),
        ("behind-hub", no_change, "it is on a hub that may slow it down"),
        ("mjpg-yuyv", lambda it: (it / LISTING).unlink(), f"{LISTING} is missing or empty"),
        ("mjpg-yuyv", lambda it: (it / LISTING).write_text("ioctl: VIDIOC_ENUM_FMT\n"), "lists no format"),
        ("mjpg-yuyv", lambda it: (it / LISTING).write_bytes(b" " * (1 << 20) + b"\n"), "is larger than 1048576 bytes"),
        ("mjpg-yuyv", lambda it: (it / WALK).write_bytes(b"\xff"), "is not text"),
        ("mjpg-yuyv", lambda it: (it / WALK).write_text("\n"), "is not the walk of a USB camera's node"),
        ("mjpg-yuyv", lambda it: edit(it / WALK, '    ATTRS{idVendor}=="0c45"\n', ""), "the walk has no idVendor"),
        ("mjpg-yuyv", lambda it: edit(it / WALK, "uvcvideo", "gspca"), "has the driver gspca"),
        ("mjpg-yuyv", lambda it: edit(it / WALK, 'speed}=="480"', 'speed}=="10000"'), "it runs at 10000 Mbit/s"),
        ("mjpg-yuyv", lambda it: edit(it / WALK, 'NumInterfaces}==" 2"', 'NumInterfaces}=="x"'), "instead of a number"),
        ("mjpg-yuyv", lambda it: edit(it / WALK, 'InterfaceCount}=="02"', 'InterfaceCount}=="03"'), "of 03 interfaces"),
        ("hd-mic", lambda it: (it / "ls-plain-snd-usb-audio.txt").unlink(), "1 sound cards with 0 interfaces"),
    ],
)
def test_a_capture_that_does_not_fit_is_refused_and_makes_nothing(simulator, captured, tmp_path, capture, change, reason):
    folder = tmp_path / capture
    if (CAPTURES / capture).is_dir():
        folder = captured(capture)
        add_missing_listings(folder)
        change(folder)
    with pytest.raises(SimError, match=re.escape(reason)):
        importer.import_camera(folder, "imported")
    assert not (simulator / "cameras/imported").exists()


@pytest.mark.parametrize(
    ("name", "reason"),
    [
        ("usb2-camera", "there is a camera 'usb2-camera' already"),
        ("../imported", "cannot be a camera's name"),
        ("Imported", "cannot be a camera's name"),
        ("-imported", "cannot be a camera's name"),
        ("", "cannot be a camera's name"),
        ("i" * 65, "cannot be a camera's name"),
    ],
)
def test_an_impossible_name_is_refused(simulator, captured, name, reason):
    before = sorted(simulator.rglob("*"))
    with pytest.raises(SimError, match=reason):
        importer.import_camera(captured("mjpg-yuyv"), name)
    assert sorted(simulator.rglob("*")) == before


def test_the_camera_of_another_import_at_the_same_time_stays(simulator, captured, monkeypatch):
    other = simulator / "cameras/new-camera"

    def capture_while_another_imports(folder: Path) -> Capture:
        other.mkdir()
        (other / "camera.toml").write_text("the other one's")
        return Capture(folder)

    monkeypatch.setattr(importer, "Capture", capture_while_another_imports)
    with pytest.raises(SimError, match="cannot be made"):
        importer.import_camera(captured("mjpg-yuyv"), "new-camera")
    assert (other / "camera.toml").read_text() == "the other one's"


def test_the_command_prints_the_new_folder_and_the_list_shows_the_camera(simulator, captured):
    command = [simulator / "bin/sim", "import", captured("mjpg-yuyv"), "i" * 64]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    assert (result.returncode, result.stdout) == (0, f"{simulator}/cameras/{'i' * 64}\n")
    listed = subprocess.run([simulator / "bin/sim", "list"], capture_output=True, text=True, check=True).stdout
    assert f"{'i' * 64} 0c45:6366  Imported from a capture." in listed


def test_the_documented_commands_make_a_capture_of_a_camera(simulator, new_sandbox, tmp_path):
    commands = re.search(r"```sh\n(mkdir capture .*?)```", (REPOSITORY / "docs/simulator.md").read_text(), re.S)[1]
    state = tmp_path / "state"
    new_sandbox(f"sim plug usb2-camera 3-1 --hardware-only; cd /tmp; {commands}", "--state", str(state))
    importer.import_camera(state / "tmp/capture", "imported")
    likeness = facts(load_camera("usb2-camera"), name="imported", comment="Imported from a capture.", serial=None)
    assert facts(load_camera("imported")) == likeness


def test_in_the_sandbox_nothing_can_be_imported(sandbox, captured):
    folder = captured("mjpg-yuyv")
    copies = "".join(f"cat > /tmp/c/{path.name} <<'END'\n{path.read_text()}END\n" for path in folder.iterdir())
    result = sandbox(f"mkdir /tmp/c; {copies}\nsim import /tmp/c imported")
    assert result.returncode == 1
    assert result.stderr.splitlines()[-1].endswith("(Read-only file system); run this outside the sandbox")
