# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A recording of a terminal as one picture that moves: each line enters from below at the time when it was printed."""

from __future__ import annotations

import re
from collections.abc import Iterator
from dataclasses import dataclass
from xml.sax.saxutils import escape

ROWS = 30
LINE_HEIGHT = 17
MARGIN = 14
WIDTH = 930
# Seconds: how long the last screen stays, and the longest and the shortest time between two lines.
END, LONGEST, SHORTEST = 6.0, 1.5, 0.08
# The styles that the demo uses, by their numbers in escape sequences.
STYLES = {"1": "bold", "2": "dim", "31": "red", "32": "green", "33": "yellow", "36": "cyan"}
STYLE = """
  .paper { fill: #14171a; }
  text { font: 12px "DejaVu Sans Mono", ui-monospace, monospace; fill: #d7dde3; white-space: pre; }
  .bold { font-weight: bold; fill: #ffffff; }
  .dim { fill: #8b96a1; }
  .red { fill: #ff7b72; }
  .green { fill: #7ee787; }
  .yellow { fill: #e3b341; }
  .cyan { fill: #76d9e6; }
"""


# REUSE-IgnoreStart
LICENCE = """<!-- SPDX-FileCopyrightText: 2026 The libusbdevlib authors
     SPDX-License-Identifier: Apache-2.0 -->"""
# REUSE-IgnoreEnd


@dataclass
class Line:
    time: float
    text: str


def moments(lines: list[Line]) -> list[float]:
    """When each line enters: as it was printed, but with pauses that are neither too long nor too short to read."""
    entered, moment, before = [], 0.5, lines[0].time
    for line in lines:
        moment += min(max(line.time - before, SHORTEST), LONGEST)
        before = line.time
        entered.append(moment)
    return entered


def spans(text: str) -> Iterator[str]:
    style = ""
    for part in re.split(r"(\x1b\[[\d;]*m)", text):
        if sequence := re.fullmatch(r"\x1b\[([\d;]*)m", part):
            style = STYLES.get(sequence[1], "")
        elif part:
            name = f' class="{style}"' if style else ""
            yield f"<tspan{name}>{escape(part)}</tspan>"


def steps(lines: list[Line]) -> Iterator[str]:
    """The text is moved up by one line whenever one enters."""
    entered = moments(lines)
    whole = entered[-1] + END
    yield f"    0% {{ transform: translateY({ROWS * LINE_HEIGHT}px); }}"
    for number, moment in enumerate(entered, 1):
        yield f"    {100 * moment / whole:.2f}% {{ transform: translateY({(ROWS - number) * LINE_HEIGHT}px); }}"
    yield f"    100% {{ transform: translateY({(ROWS - len(lines)) * LINE_HEIGHT}px); }}"


def picture(title: str, lines: list[Line]) -> str:
    height = ROWS * LINE_HEIGHT + 2 * MARGIN
    duration = moments(lines)[-1] + END
    last = (ROWS - len(lines)) * LINE_HEIGHT
    texts = [
        f'  <text x="{MARGIN}" y="{MARGIN + number * LINE_HEIGHT + 12}">{"".join(spans(line.text))}</text>'
        for number, line in enumerate(lines)
        if line.text
    ]
    return "\n".join([
        '<?xml version="1.0" encoding="UTF-8"?>',
        LICENCE,
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" height="{height}" role="img">',
        f"<title>{escape(title)}</title>",
        f"<style>{STYLE}  .all {{ transform: translateY({last}px); }}",
        "  @media (prefers-reduced-motion: no-preference) {",
        f"    .all {{ animation: enter {duration:.1f}s step-end infinite; }}",
        "  }",
        "  @keyframes enter {",
        *steps(lines),
        "  }",
        "</style>",
        f'<clipPath id="screen"><rect x="0" y="{MARGIN}" width="{WIDTH}" height="{ROWS * LINE_HEIGHT}"/></clipPath>',
        f'<rect class="paper" width="{WIDTH}" height="{height}" rx="8"/>',
        '<g clip-path="url(#screen)"><g class="all">',
        *texts,
        "</g></g>",
        "</svg>",
        "",
    ])
