# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Describes the sandbox's file tree and namespaces, as arguments of bubblewrap."""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
from pathlib import Path

from boxlib.errors import SandboxError
from boxlib.layout import ROOT
from boxlib.programs import HOST_BIN, HOST_SBIN, Programs

NAMESPACES = ["--unshare-ipc", "--unshare-net", "--unshare-pid", "--die-with-parent"]
PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
MACHINE_ETC = (
    "alternatives",
    "bash.bashrc",
    "fonts",
    "group",
    "hosts",
    "ld.so.cache",
    "ld.so.conf",
    "ld.so.conf.d",
    "localtime",
    "nsswitch.conf",
    "passwd",
    "protocols",
    "services",
)
# What bubblewrap makes without being told is closed to other users, if there are any, and that of a host is not.
OPEN_FOLDERS = ("/etc", "/home", "/mnt", "/usr", "/usr/bin", "/usr/sbin", "/var")
STATE_FOLDERS = ("dev", "etc/config", "home/httpd", "mnt/ext", "run", "sys", "tmp", "var/log")
DEVICES = ("full", "null", "pts", "random", "tty", "urandom", "zero")


def check_possible() -> None:
    """Starts the smallest possible sandbox, to check that sandboxes work here."""
    if shutil.which("bwrap") is None:
        raise SandboxError("bubblewrap is missing: install the package that provides the program 'bwrap'")
    trial = subprocess.run(
        ["bwrap", *NAMESPACES, "--ro-bind", "/", "/", "--proc", "/proc", "true"],
        check=False, stdin=subprocess.DEVNULL, capture_output=True, text=True,
    )  # fmt: skip
    if trial.returncode != 0:
        reason = " ".join(trial.stderr.split()) or f"exit status {trial.returncode}"
        raise SandboxError(f"the kernel does not allow this user private namespaces ({reason})")


def arguments(state: Path, build: Path, programs: Programs) -> list[str]:
    """All arguments except the command: its own root, made of read-only parts of the machine and the state."""
    return [
        *NAMESPACES,
        *[word for folder in OPEN_FOLDERS for word in ("--perms", "0755", "--dir", folder)],
        *_machine_tree(),
        *_links("/usr/bin", programs.bin),
        *_links("/usr/sbin", programs.sbin),
        *_state_tree(state),
        *_project_tree(build),
        *_python_package(build),
        *_figures_file(),
        *["--proc", "/proc", "--ro-bind", str(state / "cpuinfo"), "/proc/cpuinfo"],
        *["--setenv", "PATH", PATH, "--setenv", "HOME", "/tmp", "--setenv", "LD_LIBRARY_PATH", str(build), "--unsetenv", "TMPDIR"],
        *["--chdir", _folder_to_start_in(build)],
    ]


def _machine_tree() -> list[str]:
    result = ["--ro-bind", "/usr/bin", HOST_BIN, "--ro-bind", "/usr/sbin", HOST_SBIN]
    for path in sorted(Path("/usr").iterdir()):
        if path.name not in ("bin", "sbin"):
            result += _same(path)
    for name in ("bin", "sbin", "lib", "lib32", "lib64", "libx32"):
        result += _same(Path("/") / name)
    for name in MACHINE_ETC:
        result += ["--ro-bind-try", f"/etc/{name}", f"/etc/{name}"]
    return [*result, "--symlink", "/run", "/var/run", "--symlink", "/run/lock", "/var/lock"]


def _project_tree(build: Path) -> list[str]:
    """What is installed in /usr is shown already."""
    return [word for path in (ROOT, build) if not path.is_relative_to("/usr") for word in _read_only(path)]


def _same(path: Path) -> list[str]:
    if path.is_symlink():
        return ["--symlink", os.readlink(path), str(path)]
    return _read_only(path) if path.is_dir() else []


def _read_only(path: Path) -> list[str]:
    return ["--ro-bind", str(path), str(path)]


def _python_package(build: Path) -> list[str]:
    """The build's Python package, where Python looks for what a machine's administrator installs. Asking Python itself for
    the folder takes as long as all else that is decided here."""
    folder = (build / "python").resolve()
    packages = f"/usr/local/lib/python{sys.version_info.major}.{sys.version_info.minor}/dist-packages"
    return ["--ro-bind", str(folder), packages] if folder.is_dir() else []


def _figures_file() -> list[str]:
    """The file to which a thorough run of the tests adds its figures, see tests/torture."""
    path = os.environ.get("USBDEV_TORTURE")
    return ["--bind", path, path] if path else []


def _links(folder: str, links: dict[str, str | Path]) -> list[str]:
    result = []
    for name, target in links.items():
        result += ["--symlink", str(target), f"{folder}/{name}"]
    return result


def _state_tree(state: Path) -> list[str]:
    result = []
    for name in STATE_FOLDERS:
        result += ["--bind", str(state / name), f"/{name}"]
    for name in DEVICES:
        result += ["--dev-bind-try", f"/dev/{name}", f"/dev/{name}"]
    return result


def _folder_to_start_in(build: Path) -> str:
    here = Path.cwd()
    return str(here) if any(here.is_relative_to(shown) for shown in (ROOT, build)) else "/"
