# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The texts of the pages, for what the server puts into words itself, because it searches and exports it."""

from __future__ import annotations

import json
import re
from functools import cache
from pathlib import Path

FOLDER = Path(__file__).resolve().parent.parent / "page/texts"
LANGUAGES = sorted(file.stem for file in FOLDER.glob("*.json"))


class Texts:
    def __init__(self, language: str) -> None:
        self._texts: dict[str, str] = json.loads((FOLDER / f"{language}.json").read_text(encoding="utf-8"))

    def text(self, key: str, **values: str) -> str:
        return re.sub(r"\{(\w+)\}", lambda name: values[name[1]], self._texts[key])

    def rate(self, rate: float) -> str:
        """A rate below one a second is a time, as on the pages."""
        if 0 < rate < 1:
            return self.text("seconds_each", seconds=self._number(round(1 / rate, 1 if rate >= 0.2 else 0)))
        return self.text("per_second", rate=self._number(rate))

    def _number(self, value: float) -> str:
        return f"{value:g}".replace(".", self.text("decimal_sign"))


@cache
def texts(language: str) -> Texts:
    return Texts(language)
