# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Where the reference host's files are, in the repository or installed: its folders keep their places to each other, and
the link "built" beside them leads to what was compiled for it."""

from __future__ import annotations

import os
from pathlib import Path

HOST = Path(__file__).resolve().parent.parent.parent
BUILT = (HOST / "built").resolve()
# The folder that contains both: the repository, or the prefix of the installation.
ROOT = Path(os.path.commonpath([HOST, BUILT]))
