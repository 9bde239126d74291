# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Some of the mutants, for a short run."""

from __future__ import annotations

import os
import random

from source_file import Mutant


def sampled(mutants: list[Mutant], size: int) -> list[Mutant]:
    """Chooses the same ones each time, unless the environment has another seed."""
    seed = os.environ.get("USBDEV_SEED", "1")
    chosen = random.Random(seed).sample(mutants, min(size, len(mutants)))
    print(f"{len(chosen)} of {len(mutants)} mutants, chosen with USBDEV_SEED={seed}", flush=True)
    return chosen
