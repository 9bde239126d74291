# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The systemd units of usbdev-host, as the package lays them out, judged by systemd's own tools."""

from __future__ import annotations

import json
import os
import re
import shutil
import subprocess
from pathlib import Path

import pytest
from conftest import REPOSITORY

DEBIAN = REPOSITORY / "packaging/debian"
HOST = "/usr/share/usbdev-host"
LOGIN_SOCKET = "usbdev-login.socket"
NAMES = sorted(path.name.removeprefix("usbdev-host.") for path in DEBIAN.glob("usbdev-host.*.service"))
MOST_EXPOSED = 1.6  # the best device managers of Debian are at 2.6


@pytest.fixture(scope="module")
def units(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """The folder of the units with the files for all of them; their programs are those of the repository."""
    folder = tmp_path_factory.mktemp("units")
    for_all = folder / "usbdev-.service.d"
    for_all.mkdir()
    for path in (REPOSITORY / "host/view/view.conf", DEBIAN / "hardening.conf"):
        shutil.copy(path, for_all)
    for name in [*NAMES, LOGIN_SOCKET]:
        text = (DEBIAN / f"usbdev-host.{name}").read_text()
        (folder / name).write_text(text.replace(f"ExecStart={HOST}", f"ExecStart={REPOSITORY}/host"))
    return folder


def analyze(units: Path, *words: str) -> subprocess.CompletedProcess[str]:
    environment = {**os.environ, "SYSTEMD_UNIT_PATH": f"{units}:"}
    return subprocess.run(["systemd-analyze", *words], env=environment, capture_output=True, text=True, check=False)


def settings(unit: str, key: str) -> list[str]:
    files = [DEBIAN / f"usbdev-host.{unit}", DEBIAN / "hardening.conf", REPOSITORY / "host/view/view.conf"]
    return [value for file in files for value in re.findall(rf"^{key}=(.*)$", file.read_text(), re.MULTILINE)]


WITH_CAMERAS = [name for name in NAMES if settings(name, "SupplementaryGroups")]


def test_there_are_five_of_which_four_may_use_cameras() -> None:
    assert NAMES == [f"usbdev-{name}.service" for name in ("devices", "fleet", "login", "pages", "streams")]
    assert set(NAMES) - set(WITH_CAMERAS) == {"usbdev-login.service"}


@pytest.mark.parametrize("name", NAMES)
def test_it_is_not_exposed(units: Path, name: str) -> None:
    done = analyze(units, "security", "--offline=true", "--json=short", f"--threshold={10 * MOST_EXPOSED:.0f}", f"{units}/{name}")
    exposing = [row for row in json.loads(done.stdout) if float(row["exposure"] or 0) > 0]
    assert done.returncode == 0, exposing


@pytest.mark.parametrize("name", [*NAMES, LOGIN_SOCKET])
def test_systemd_understands_every_line(units: Path, name: str) -> None:
    done = analyze(units, "verify", "--man=no", f"{units}/{name}")
    about_it = [line for line in done.stderr.splitlines() if name.partition(".")[0] in line or "usbdev-.service.d" in line]
    assert about_it == []


@pytest.mark.parametrize("name", NAMES)
def test_it_is_watched_and_started_again(name: str) -> None:
    assert [settings(name, key) for key in ("Type", "Restart")] == [["notify"], ["on-failure"]]
    assert len(settings(name, "WatchdogSec")) == 1


@pytest.mark.parametrize("name", NAMES)
def test_its_user_is_made_with_the_groups_that_may_use_cameras_and_sound_cards(name: str) -> None:
    (user,) = settings(name, "User")
    made = (DEBIAN / "usbdev-host.sysusers").read_text()
    assert re.search(rf"^u {user} ", made, re.MULTILINE)
    assert set(re.findall(rf"^m {user} (\w+)$", made, re.MULTILINE)) == set(" ".join(settings(name, "SupplementaryGroups")).split())


@pytest.mark.parametrize("name", WITH_CAMERAS)
def test_its_devices_are_allowed_by_numbers_which_hold_before_their_drivers_are_loaded(name: str) -> None:
    assert settings(name, "DeviceAllow") == ["char-81 rw", "char-116 rw"]  # video and sound in the kernel's list of devices


def test_all_see_the_same_locks_and_shared_memory_as_a_user_does() -> None:
    assert [key for name in NAMES for key in ("PrivateIPC", "PrivateNetwork") if settings(name, key)] == []
    assert {tuple(settings(name, "BindPaths")) for name in NAMES} == {tuple(settings(NAMES[0], "BindPaths"))}


def test_every_folder_of_the_state_that_the_view_shows_is_made_before() -> None:
    shown = {value.split(":")[0] for value in settings(NAMES[0], "BindPaths")}
    made = set(re.findall(r"^d (\S+)", (DEBIAN / "usbdev-host.tmpfiles").read_text(), re.MULTILINE))
    assert shown and shown <= made


def test_what_the_package_brings_to_the_view_is_there() -> None:
    built = {"readcfg", "usbdevctl"}
    for value in settings(NAMES[0], "BindReadOnlyPaths"):
        source = Path(value.removeprefix("-").split(":")[0])
        if source.is_relative_to(HOST) and source.name not in built:
            assert os.access(REPOSITORY / "host" / source.relative_to(HOST), os.X_OK), source


def test_the_logins_command_has_the_user_and_the_file_of_their_service() -> None:
    command = (REPOSITORY / "host/view/login-users").read_text()
    (started,), (user,) = settings("usbdev-login.service", "ExecStart"), settings("usbdev-login.service", "User")
    assert re.findall(r"--users \S+", command) == re.findall(r"--users \S+", started)
    assert set(re.findall(r"--re[ug]id=(\S+)", command)) == {user}


def test_nobody_else_may_read_or_replace_who_is_signed_in_to_the_pages() -> None:
    (started,), (folder,) = settings("usbdev-pages.service", "ExecStart"), settings("usbdev-pages.service", "StateDirectory")
    assert f" --sessions /var/lib/{folder}/sessions " in started
    assert settings("usbdev-pages.service", "StateDirectoryMode") == ["0700"]


def test_the_pages_notice_when_the_logins_command_has_changed_the_users() -> None:
    """The folder that is seen to change is that of the file, in which they see nothing."""
    (logins,), (pages,) = (settings(f"usbdev-{name}.service", "ExecStart") for name in ("login", "pages"))
    (file,), (seen,) = (re.findall(r"--users (\S+)", started) for started in (logins, pages))
    assert Path(file).parent == Path(seen)


def test_the_pages_are_served_to_this_machine_unless_a_drop_in_says_otherwise() -> None:
    (started,) = settings("usbdev-pages.service", "ExecStart")
    assert started.endswith(" --address ${ADDRESS} $OPTIONS")
    assert "ADDRESS=127.0.0.1" in settings("usbdev-pages.service", "Environment")
    assert [settings("usbdev-pages.service", f"IPAddress{key}") for key in ("Deny", "Allow")] == [["any"], ["localhost"]]


def test_only_the_service_for_many_hosts_has_its_user_and_sees_the_processes_of_others() -> None:
    alone = ["usbdev-fleet.service"]
    assert [name for name in NAMES if settings(name, "User") == ["usbdev-fleet"]] == alone
    assert [name for name in NAMES if settings(name, "ProtectProc") != ["invisible"]] == alone  # it has to see the encoders


def test_only_the_service_for_many_hosts_sees_its_settings_and_without_them_is_not_started_again() -> None:
    assert [name for name in NAMES if any("/etc/usbdev-host" in value for value in settings(name, "BindReadOnlyPaths"))] == [
        "usbdev-fleet.service"]
    assert settings("usbdev-fleet.service", "RestartPreventExitStatus") == ["78"]


def test_the_port_of_the_logins_is_held_for_them_from_the_machines_start() -> None:
    port = re.findall(r"^InnerWebAccessPort = (\d+)$", (REPOSITORY / "host/view/etc/Tundrel.conf").read_text(), re.MULTILINE)
    assert settings(LOGIN_SOCKET, "ListenStream") == [f"127.0.0.1:{port[0]}"]
    assert settings("usbdev-login.service", "Requires") == [LOGIN_SOCKET]
    assert "sockets.target" in settings(LOGIN_SOCKET, "WantedBy")


def test_an_upgrade_starts_all_again_but_the_streams_and_the_port_of_the_logins() -> None:
    rules = (DEBIAN / "rules").read_text()
    options = re.findall(r"^\tdh_installsystemd .*--name=(\S+)(.*)$", rules, re.MULTILINE)
    assert options == [
        ("usbdev-devices", ""), ("usbdev-streams", " --no-stop-on-upgrade"),
        ("usbdev-login", f" --no-stop-on-upgrade {LOGIN_SOCKET}"), ("usbdev-login", " usbdev-login.service"),
        ("usbdev-pages", ""), ("usbdev-fleet", " --no-enable"),
    ]  # fmt: skip
