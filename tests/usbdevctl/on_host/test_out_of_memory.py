# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A program without memory says so, wherever it is refused."""

from __future__ import annotations

import pytest
from conftest import failing

ENOMEM = 12


@pytest.mark.parametrize("number", [1, 100, 1000, 3000])
def test_a_program_without_memory_says_so(number: int) -> None:
    result = failing("memory", number, ENOMEM, "--version")
    assert (result.returncode, result.stdout, result.stderr) == (1, "", "usbdevctl: out of memory\n")
