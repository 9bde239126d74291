# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the guest is made of: a folder with Debian, and a small first root that mounts it."""

from __future__ import annotations

import hashlib
import os
import shutil
import subprocess
import sys
from pathlib import Path

KERNEL = Path(__file__).resolve().parent.parent
REPOSITORY = KERNEL.parents[1]
sys.path.insert(0, str(REPOSITORY / "tests/packaging"))
from fresh_root import FreshRoot, run  # noqa: E402

CONTENT = "systemd-sysv,udev,dbus,kmod,linux-image-amd64,busybox-static,v4l-utils,alsa-utils,ffmpeg,procps,iproute2,python3,usbip"
FOLDER = REPOSITORY / "build/kernel"
PACKAGES = ("libusbdevlib1", "usbdevctl", "usbdev-host")
# What Debian starts and nobody needs here; each costs up to a second in the emulator.
UNUSED = """
  apt-daily.timer apt-daily-upgrade.timer dpkg-db-backup.timer e2scrub_all.timer e2scrub_reap.service fstrim.timer
  systemd-tmpfiles-clean.timer proc-sys-fs-binfmt_misc.automount dev-hugepages.mount dev-mqueue.mount
  sys-fs-fuse-connections.mount sys-kernel-debug.mount sys-kernel-tracing.mount sys-kernel-config.mount
  modprobe@configfs.service modprobe@dm_mod.service modprobe@drm.service modprobe@efi_pstore.service modprobe@fuse.service
  modprobe@loop.service serial-getty@ttyS0.service systemd-binfmt.service systemd-firstboot.service
  systemd-journal-flush.service systemd-machine-id-commit.service systemd-pstore.service systemd-random-seed.service
  systemd-repart.service systemd-update-utmp.service systemd-update-utmp-runlevel.service
""".split()
# What begins with the machine, and takes the emulator seconds at each plug; scenarios that need it start it.
STARTED_WHEN_NEEDED = ("mosquitto", "nginx", "usbdev-login", "usbdev-pages")
OTHERS = ("nginx-light", "mosquitto", "mosquitto-clients")


# What is in no package; whatever else changes, the packages are built anew.
NOT_PACKAGED = {".ci", "bench", "fuzz", "tests"}


def packages() -> list[Path]:
    """Builds the packages of the last commit, unless they are there."""
    folder = REPOSITORY / "build/packages" / run("dpkg", "--print-architecture").strip()
    entries = run("git", "-C", REPOSITORY, "ls-tree", "HEAD").splitlines()
    wanted = "\n".join(entry for entry in entries if entry.partition("\t")[2] not in NOT_PACKAGED)
    made_of = FOLDER / "packages-made-of"
    if not made_of.exists() or made_of.read_text() != wanted:
        run(REPOSITORY / "dev", "--yes", "package", env={**os.environ, "DEB_BUILD_OPTIONS": "noautodbgsym nocheck"})
        FOLDER.mkdir(parents=True, exist_ok=True)
        made_of.write_text(wanted)
    return [next(folder.glob(f"{name}_*.deb")) for name in PACKAGES]


class GuestRoot:
    """Kept in a folder; made anew when it would be made of something else. `others` are Debian's own packages."""

    def __init__(self, packages: list[Path], folder: Path = FOLDER, others: tuple[str, ...] = OTHERS) -> None:
        folder.mkdir(parents=True, exist_ok=True)
        self.folder = folder / "root"
        self.first_root = folder / "first-root.cpio"
        made_of = folder / "made-of"
        wanted = "\n".join([CONTENT, *others, *(hashlib.sha256(package.read_bytes()).hexdigest() for package in packages)])
        if made_of.exists() and made_of.read_text() == wanted:
            self._add_own_files()
            return
        made_of.unlink(missing_ok=True)
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        self._install(packages, others)
        self._add_own_files()
        made_of.write_text(wanted)

    @property
    def kernel(self) -> Path:
        return next((self.folder / "boot").glob("vmlinuz-*"))

    def _install(self, packages: list[Path], others: tuple[str, ...]) -> None:
        root = FreshRoot(self.folder, FOLDER / "debian.tar", FOLDER / "archives", CONTENT)
        for package in packages:
            shutil.copy(package, self.folder / "root")
        root.apt("install", *others, *(f"./{package.name}" for package in packages))
        (self.folder / "etc/machine-id").write_text("1" * 32 + "\n")  # without one, all units are set up first
        units = self.folder / "etc/systemd/system"
        for unit in UNUSED:
            (units / unit).symlink_to("/dev/null")
        for unit in STARTED_WHEN_NEEDED:
            (units / f"multi-user.target.wants/{unit}.service").unlink(missing_ok=True)
        (units / "basic.target.wants").mkdir(exist_ok=True)
        (units / "basic.target.wants/agent.service").symlink_to("../agent.service")

    def _add_own_files(self) -> None:
        programs, units = self.folder / "usr/local/lib/guest", self.folder / "etc/systemd/system"
        programs.mkdir(exist_ok=True)
        for name in ("agent", "init", "make-first-root"):
            shutil.copy(KERNEL / "guest" / name, programs)
        shutil.copy(KERNEL / "guest/agent.service", units)
        with self.first_root.open("wb") as archive:
            subprocess.run(["chroot", self.folder, "/usr/local/lib/guest/make-first-root"], stdout=archive, check=True)
