# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The Debian packages of the last commit, in the life of a fresh machine: installed, used, upgraded, removed, purged.

The tests run in their order, each on the machine that the one before left. It takes root, for apt.
"""

from __future__ import annotations

import re
import shutil
from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import REPOSITORY
from fresh_root import FreshRoot, run

BUILT = REPOSITORY / "build/packages"
NAMES = ("libusbdevlib1", "libusbdevlib-dev", "usbdevctl", "usbdev-host", "python3-usbdev")
OF_THE_HOST = {"libvlxmlcfg.so", "libvllog.so", "libalsa_ctl.so"}


@pytest.fixture(scope="module")
def packages() -> list[Path]:
    architecture = run("dpkg", "--print-architecture").strip()
    run(REPOSITORY / "dev", "--yes", "package")
    return [next((BUILT / architecture).glob(f"{name}_*.deb")) for name in NAMES]


@pytest.fixture(scope="module")
def machine(packages: list[Path], tmp_path_factory: pytest.TempPathFactory) -> Iterator[FreshRoot]:
    """A machine with all that the packages need, and the packages in a folder."""
    folder = tmp_path_factory.mktemp("machine")
    root = FreshRoot(folder, BUILT / "fresh-root.tar", BUILT / "archives")
    needs = {need.strip() for package in packages for need in run("dpkg-deb", "-f", package, "Depends").split(",")}
    root.apt("satisfy", *(need for need in sorted(needs) if not need.startswith(NAMES)))
    for package in packages:
        shutil.copy(package, folder / "root")
    yield root
    shutil.rmtree(folder)


@pytest.fixture(scope="module")
def before(machine: FreshRoot) -> set[str]:
    """What is on the machine before the packages."""
    return machine.paths()


def versions(machine: FreshRoot) -> set[str]:
    return set(machine.run("dpkg-query", "-W", "-f", "${Version}\n", *NAMES).split())


def missing(printed: str) -> set[str]:
    """The libraries that ldd does not find."""
    return set(re.findall(r"(\S+) => not found", printed))


def test_they_are_installed_without_anything_else(machine: FreshRoot, before: set[str], packages: list[Path]) -> None:
    planned = machine.apt("--dry-run", "install", *(f"./{package.name}" for package in packages))
    assert set(re.findall(r"^Inst (\S+)", planned, re.MULTILINE)) == set(NAMES)
    machine.apt("install", *(f"./{package.name}" for package in packages))
    assert machine.run("dpkg", "--verify", *NAMES) == ""


def test_only_the_libraries_of_the_host_are_missing_and_only_outside_the_host(machine: FreshRoot) -> None:
    assert missing(machine.run("ldd", "/usr/libexec/usbdevctl")) == OF_THE_HOST
    assert missing(machine.run("usbdev-sandbox", "run", "--", "ldd", "/usr/libexec/usbdevctl")) == set()


def test_the_examples_of_the_package_are_compiled_against_it_and_run(machine: FreshRoot) -> None:
    examples, built = "/usr/share/doc/libusbdevlib-dev/examples", "/usr/local/share/examples"
    machine.run("cmake", "-G", "Ninja", "-S", examples, "-B", built)
    machine.run("cmake", "--build", built)
    programs = (f"{built}/c/list_channels", f"{built}/cpp/list_channels", f"{examples}/python/list_channels.py")
    printed = machine.run("usbdev-sandbox", "run", "--", "sh", "-ec", f"sim plug usb2-camera 3-1; {'; '.join(programs)}")
    assert len(re.findall(r"^.*3-1.*$", printed, re.MULTILINE)) >= len(programs)
    shutil.rmtree(machine.folder / built.lstrip("/"))


def test_the_demo_runs_from_the_installed_files(machine: FreshRoot) -> None:
    assert machine.run("usbdev-demo").endswith("Everything is as it should be.\n")


USERS = {"root": "", "a member of the group": "setpriv --reuid 4711 --regid 4711 --groups video ",
         "somebody else": "setpriv --reuid 4711 --regid 4711 --clear-groups "}  # fmt: skip
ENTER = "/usr/share/usbdev-host/view/enter"
PLUG = "usbdevctl plug --type camera --node 9 --slot 3-1 --name Webcam"
UNPLUG = "usbdevctl unplug --type camera --node 9 --slot 3-1 --name Webcam"


def as_users(machine: FreshRoot, script: str) -> str:
    """Runs the script after what systemd does at each start of a machine."""
    return machine.run("sh", "-ec", f"mkdir /run/lock; systemd-tmpfiles --create usbdev-host.conf; {script}")


@pytest.mark.parametrize("user", ["root", "a member of the group"])
def test_usbdevctl_runs_outside_the_sandbox_for(machine: FreshRoot, user: str) -> None:
    script = f"{USERS[user]}{PLUG}; {USERS['root']}usbdevctl channels; {USERS[user]}{UNPLUG}"
    assert re.search(r"^ +0 +plugged +3-1 +Webcam", as_users(machine, script), re.MULTILINE)


def test_what_a_member_of_the_group_stored_stays_the_groups(machine: FreshRoot) -> None:
    member = USERS["a member of the group"]
    script = f"{member}{PLUG}; stat -c '%a %G' /var/lib/usbdev/config/usbdev.conf; {member}{UNPLUG}"
    assert "660 video" in as_users(machine, script).splitlines()


def test_nobody_else_runs_usbdevctl(machine: FreshRoot) -> None:
    printed = as_users(machine, f"! {USERS['somebody else']}usbdevctl channels")
    assert printed == "usbdevctl: only root and members of the group 'video' may see and set up the cameras\n"


def test_the_tools_answer_in_the_view_as_the_library_calls_them(machine: FreshRoot) -> None:
    tools = "/sbin/udevadm --version; /sbin/readcfg System InnerWebAccessPort; /usr/bin/v4l2-ctl --version; /bin/ps"
    printed = as_users(machine, f"{ENTER} sh -c '{tools}'")
    assert re.match(r"\d+\n58080\nv4l2-ctl \S+\n +PID USER +TIME COMMAND\n", printed)
    assert f"sh -c {tools}" in printed


def test_a_camera_that_does_not_answer_keeps_the_others_waiting_for_ten_seconds_only(machine: FreshRoot) -> None:
    hang = "printf '#!/bin/sh\\nexec sleep 100\\n' >/run/hang; chmod +x /run/hang"
    query = f"bwrap --dev-bind / / --ro-bind /run/hang /usr/bin/v4l2-ctl {ENTER} v4l2-ctl -d /dev/video0"
    printed = as_users(machine, f"{hang}; {query} || echo status $?; ps -e -o comm")
    assert "status 124" in printed.splitlines() and "sleep" not in printed.splitlines()


def test_pages_and_logins_start_with_the_machine_as_the_streams_do(machine: FreshRoot) -> None:
    started = machine.folder / "etc/systemd/system/multi-user.target.wants"
    assert sorted(path.name for path in started.glob("usbdev-*")) == [
        f"usbdev-{name}.service" for name in ("devices", "login", "pages", "streams")]


def test_the_service_for_many_hosts_prints_why_it_does_not_start_without_settings(machine: FreshRoot) -> None:
    assert (machine.folder / "lib/systemd/system/usbdev-fleet.service").is_file()
    printed = as_users(machine, "/usr/share/usbdev-host/fleet/fleet-service || echo status $?").splitlines()
    assert "/etc/usbdev-host/fleet.ini is missing" in printed[0] and printed[1:] == ["status 78"]


def test_the_first_user_is_added_by_root_and_stored_for_the_login_service_alone(machine: FreshRoot) -> None:
    script = "echo secret | usbdev-login-users add ann; usbdev-login-users list; stat -c '%a %U' /var/lib/usbdev/login/users"
    assert as_users(machine, script).splitlines() == ["ann", "600 usbdev-login"]


def test_messages_of_a_command_begin_with_the_name_by_which_it_was_called(machine: FreshRoot) -> None:
    printed = as_users(machine, "usbdev-login-users remove bob 2>&1 || usbdev-login-users --help").splitlines()
    assert printed[0] == "usbdev-login-users: there is no user 'bob'" and printed[1].startswith("usage: usbdev-login-users ")


def test_nobody_but_root_adds_a_user(machine: FreshRoot) -> None:
    printed = as_users(machine, f"! {USERS['a member of the group']}usbdev-login-users add ann")
    assert printed == "usbdev-login-users: only root may see and change who may log in\n"


def test_the_pages_have_their_libraries_and_nginx_its_configuration(machine: FreshRoot) -> None:
    host = machine.folder / "usr/share/usbdev-host"
    assert (host / "owner/page/index.html").is_file()
    assert {path.name for path in (host / "web/libraries").iterdir()} >= {"preact.js", "qrcode.js", "uplot.js"}
    examples = machine.folder / "usr/share/doc/usbdev-host/examples/nginx"
    assert {path.name for path in examples.iterdir()} == {path.name for path in (REPOSITORY / "examples/nginx").iterdir()}


def test_the_manual_is_found_and_python_imports_the_package(machine: FreshRoot) -> None:
    for page in ("man1/usbdevctl.1", "man8/usbdev-devices.8", "man8/usbdev-pages.8", "man8/usbdev-login-users.8",
                 "man8/usbdev-fleet.8"):
        assert (machine.folder / f"usr/share/man/{page}.gz").exists()
    machine.run("usbdev-sandbox", "run", "--", "python3", "-c", "import usbdev; usbdev.core.trim(' x ')")


def test_they_are_upgraded_to_a_higher_version(machine: FreshRoot, packages: list[Path]) -> None:
    (version,) = versions(machine)
    higher = f"{version}+next"
    folder = machine.folder / "root/next"
    folder.mkdir()
    for package in packages:
        tree = folder / package.stem
        run("dpkg-deb", "-R", package, tree)
        control = tree / "DEBIAN/control"
        control.write_text(control.read_text().replace(version, higher))
        run("dpkg-deb", "-b", tree, folder / package.name)
    machine.apt("install", *(f"./next/{package.name}" for package in packages))
    assert versions(machine) == {higher}
    assert "usb2-camera" in machine.run("usbdev-sandbox", "run", "--", "sim", "list")


def test_nothing_of_them_is_left_after_they_are_removed_and_purged(machine: FreshRoot, before: set[str]) -> None:
    machine.apt("remove", *NAMES)
    machine.run("dpkg", "--purge", *NAMES)
    assert machine.paths() - before == set()
    assert before - machine.paths() == set()
