# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The texts of the pages: every language has all of them, and every reason of a camera has its own."""

from __future__ import annotations

import json
import re
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[3]
PAGE = ROOT / "host/owner/page"
TEXTS = {file.stem: json.loads(file.read_text()) for file in (PAGE / "texts").glob("*.json")}
SCRIPTS = "".join(file.read_text() for file in PAGE.glob("*.js"))
CAUSES = re.findall(r"^USBDEVCTL_(?:REASON|NOTICE)\((\w+),", (ROOT / "tools/usbdevctl/reason/reasons.def").read_text(), re.MULTILINE)
# The first part of the keys that scripts put together.
PUT_TOGETHER = ("anyway", "charts", "codec", "cure", "do", "done", "error", "host", "reason", "refusal", "renew", "revoke",
                "severity", "sound", "state", "live_view")  # fmt: skip


def values(text: str) -> set[str]:
    return set(re.findall(r"\{(\w+)\}", text))


def test_there_are_two_languages() -> None:
    assert set(TEXTS) == {"en", "de"}


def test_each_language_has_all_texts() -> None:
    assert list(TEXTS["de"]) == list(TEXTS["en"])


def test_each_language_shows_the_same_values() -> None:
    assert {key: values(text) for key, text in TEXTS["de"].items()} == {key: values(text) for key, text in TEXTS["en"].items()}


@pytest.mark.parametrize("kind", ["reason", "cure"])
def test_each_cause_has_its_texts(kind: str) -> None:
    assert len(CAUSES) > 30
    assert {f"{kind}.{cause}" for cause in CAUSES} <= set(TEXTS["en"])


def test_no_text_is_of_a_cause_that_there_is_not() -> None:
    assert {key.split(".")[1] for key in TEXTS["en"] if key.startswith(("reason.", "cure."))} == set(CAUSES)


def test_each_text_of_a_script_exists() -> None:
    assert set(re.findall(r"\bt\(\"([\w.]+)\"", SCRIPTS)) <= set(TEXTS["en"])


def test_no_text_is_left_over() -> None:
    plain = {key for key in TEXTS["en"] if key.split(".")[0] not in PUT_TOGETHER and not key.endswith(".short")}
    assert {key for key in plain if f'"{key}"' not in SCRIPTS} == set()
