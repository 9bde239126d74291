# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A fresh Debian in a folder, in which packages are installed and programs run as on a machine of its own."""

from __future__ import annotations

import os
import subprocess
from pathlib import Path

# What a developer's machine has, and a small Debian does not.
COMPILERS = "g++,cmake,ninja-build,pkg-config"
# They change whatever is installed, and are not part of any package.
RECORDS = ("/var/lib/dpkg/", "/var/lib/apt/", "/var/cache/", "/var/log/", "/root/", "/tmp/")


def run(*command: str | Path, **options) -> str:
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    assert done.returncode == 0, done.stdout
    return done.stdout


def mirror(codename: str) -> str:
    """The machine's own source of packages."""
    lines = run("apt-get", "indextargets", "--format", "$(REPO_URI)", f"Codename: {codename}", "Component: main")
    return lines.splitlines()[0]


def bootstrap(tar: Path, packages: str) -> None:
    """Makes the root with these packages and with the lists of all, unless it is there. It is thrown away with its machine,
    so nothing has to reach the disk, and never boots by itself, so it gets no initrd."""
    made_of = tar.with_suffix(".packages")
    if tar.exists() and made_of.exists() and made_of.read_text() == packages:
        return
    codename = run("sh", "-c", '. /etc/os-release && echo "$VERSION_CODENAME"').strip()
    new = tar.with_suffix(".new.tar")
    run("mmdebstrap", "--variant=minbase", f"--include={packages}", "--skip=cleanup/apt/lists", "--dpkgopt=force-unsafe-io",
        codename, new, mirror(codename), env={**os.environ, "INITRD": "No"})  # fmt: skip
    new.rename(tar)
    made_of.write_text(packages)


class FreshRoot:
    """A copy of the root. The folder `archives` keeps what apt downloads."""

    def __init__(self, folder: Path, tar: Path, archives: Path, packages: str = COMPILERS) -> None:
        self.folder = folder
        bootstrap(tar, packages)
        run("tar", "--extract", "--file", tar, "--directory", folder)
        archives.mkdir(exist_ok=True)
        # Everything of the new root is writable, and a sandbox can be made in it, as on a machine where one is root.
        self._enter = [
            "bwrap", "--bind", folder, "/", "--bind", archives, "/var/cache/apt/archives",
            "--proc", "/proc", "--dev", "/dev", "--tmpfs", "/run", "--ro-bind-try", "/etc/resolv.conf", "/etc/resolv.conf",
            "--cap-add", "ALL", "--unshare-pid", "--die-with-parent", "--chdir", "/root",
        ]  # fmt: skip

    def run(self, *command: str) -> str:
        """Returns what a command in the root prints; it has to succeed."""
        environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": "/root", "LC_ALL": "C.UTF-8",
                       "DEBIAN_FRONTEND": "noninteractive"}
        return run(*self._enter, *command, env=environment)

    def apt(self, *words: str) -> str:
        return self.run("apt-get", "--yes", "--no-install-recommends", *words)

    def paths(self) -> set[str]:
        """Everything in the root, without the records of what is installed."""
        found = (os.path.join(folder, name) for folder, *names in os.walk(self.folder) for name in [*names[0], *names[1]])
        return {path for path in (f"/{os.path.relpath(name, self.folder)}" for name in found) if not path.startswith(RECORDS)}
