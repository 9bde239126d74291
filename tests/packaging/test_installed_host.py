# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""usbdevctl and the reference host, run from where `cmake --install` puts them."""

from __future__ import annotations

import subprocess
from pathlib import Path

import pytest
from conftest import BUILD, REPOSITORY


@pytest.fixture(scope="module")
def prefix(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """Everything, installed under a prefix, and moved elsewhere afterwards."""
    folder = tmp_path_factory.mktemp("installed")
    subprocess.run(["cmake", "--install", BUILD, "--prefix", folder / "first"], check=True, capture_output=True)
    return (folder / "first").rename(folder / "moved")


def on_host(prefix: Path, script: str, *options: str) -> str:
    """What the script prints on the sandboxed host, started from a folder that the host does not have."""
    command = [prefix / "bin/usbdev-sandbox", "run", *options, "--", "sh", "-c", script]
    done = subprocess.run(command, capture_output=True, text=True, timeout=60, cwd=prefix.parent)
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout


def test_the_host_runs_from_the_installed_files_alone(prefix: Path) -> None:
    assert on_host(prefix, f"test ! -e {REPOSITORY}; readlink -f /usr/bin/sim /usr/bin/usbdevctl /usr/sbin/readcfg").split() == [
        f"{prefix}/share/usbdev-host/sim/bin/sim", f"{prefix}/libexec/usbdevctl", f"{prefix}/lib/usbdev-host/readcfg"]


def test_a_camera_is_plugged_in_and_the_services_run(prefix: Path) -> None:
    script = "sim plug usb2-camera 3-1 && usbdevctl channels && ls /var/log/vl"
    printed = on_host(prefix, script, "--services")
    assert "3-1" in printed and "manager-service.log" in printed


def test_the_python_package_is_found_on_the_host(prefix: Path) -> None:
    script = "import usbdev; print(usbdev.core.trim(' found '))"
    assert (prefix / "lib/python3/dist-packages/usbdev/py.typed").exists()
    assert on_host(prefix, f'/usr/bin/python3 -IB -c "{script}"') == "found\n"


@pytest.mark.parametrize("program", [
    "services/device-service", "services/login-service", "services/manager-service", "share/share-page", "owner/owner-page",
])  # fmt: skip
def test_a_service_needs_no_python_package_but_that_of_the_host(prefix: Path, program: str) -> None:
    command = [prefix / "share/usbdev-host" / program, "--help"]
    libraries = {"LD_LIBRARY_PATH": f"{prefix}/lib/usbdev-host"}
    done = subprocess.run(command, env=libraries, capture_output=True, text=True, timeout=60)
    assert (done.returncode, done.stderr) == (0, "")


def test_the_libraries_of_the_host_are_found_on_the_host_only(prefix: Path) -> None:
    outside = subprocess.run(["ldd", prefix / "libexec/usbdevctl"], capture_output=True, text=True, check=True).stdout
    missing = {line.split()[0] for line in outside.splitlines() if "not found" in line}
    assert "libvlxmlcfg.so" in missing
    assert "not found" not in on_host(prefix, "ldd $(readlink -f /usr/bin/usbdevctl)")


@pytest.mark.parametrize("shell, script", {
    "bash": "share/bash-completion/completions/usbdevctl",
    "zsh": "share/zsh/site-functions/_usbdevctl",
    "fish": "share/fish/vendor_completions.d/usbdevctl.fish",
}.items())  # fmt: skip
def test_each_shell_finds_the_completion(prefix: Path, shell: str, script: str) -> None:
    printed = subprocess.run([BUILD / "usbdevctl", "completion", shell], capture_output=True, text=True, check=True).stdout
    assert (prefix / script).read_text() == printed


def test_no_installed_program_names_the_build_folder(prefix: Path) -> None:
    for file in (prefix / "libexec/usbdevctl", *(prefix / "lib/usbdev-host").glob("*.so")):
        assert str(BUILD) not in subprocess.run(["readelf", "--dynamic", file], capture_output=True, text=True, check=True).stdout
