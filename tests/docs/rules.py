# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Commands of the documents that are too slow to run again here, or run outside the host: who runs them."""

from __future__ import annotations

import re

# What `.ci/run` calls, with the arguments that it gives.
CI = ".ci/run"
# A command, and the test, by its name in ctest, or CI.
RUN_BY = [
    (r"\./dev (--yes )?(test|check|bench|setup)", CI),
    (r"\./dev test \w+", "dev.testing"),
    (r"\./dev test --arch \w+", "dev.foreign"),
    (r"\./dev test --kernel", "dev.testing"),
    (r"\./dev build", "dev.building"),
    (r"\./dev demo( --browser)?", "demo"),
    (r"\./dev coverage", "dev.coverage"),
    (r"\./dev fuzz.*", "dev.fuzzing"),
    (r"\./dev mutate.*", "dev.mutation"),
    (r"\./dev torture.*", "dev.testing"),
    (r"\./dev manual", "dev.building"),
    (r"cmake (-B build -DUSBDEV_LIBRARY_ONLY=ON|--build build)", "packaging.library_only"),
    (r"cmake --install build/release --prefix \S+|export PKG_CONFIG_PATH=.*", "docs.blocks"),
    (r"cmake (-S examples -B|--build) build/examples", "packaging.installing"),
    (r"cmake --install build --prefix \S+", "packaging.installing"),
    (r"usbdev-sandbox run -- .*|usbdev-demo", "packaging.installed_host"),
    (r"sudo (apt install nginx-light|cp share-page\S* \S+|install -D .*|systemctl .*)|sudoedit .*", "kernel.scenarios"),
    (r"cd /usr/share/doc/usbdev-host/examples/nginx", "kernel.scenarios"),
    (r".*tests/system/on_host/test_start_up\.py", "system.on_host.start_up"),
    (r".*tests/system/on_host/test_random_sequence\.py", "system.on_host.random_sequence"),
]


def run_by(command: str) -> str | None:
    return next((test for pattern, test in RUN_BY if re.fullmatch(pattern, command.strip())), None)
