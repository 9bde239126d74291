# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What the tests of the documents share."""

from __future__ import annotations

import os
import sys
from pathlib import Path

sys.dont_write_bytecode = True
REPOSITORY = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(REPOSITORY / "docs/manual"), str(Path(__file__).resolve().parent)]
BUILD = Path(os.environ["USBDEV_BUILD_DIR"])
