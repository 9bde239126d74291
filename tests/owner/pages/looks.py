# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Compares the picture of a page with the one that is kept. Machines draw the edges of letters in different ways, which
disappears where small squares are compared; what is elsewhere, or has another colour, does not."""

from __future__ import annotations

import os
from io import BytesIO
from pathlib import Path

from PIL import Image, ImageChops

KEPT = Path(__file__).resolve().parent / "kept"
SEEN = Path(os.environ["USBDEV_BUILD_DIR"]) / "pages"
COMMAND = "tests/owner/pages/keep"
IS_KEEPING = "USBDEV_KEEP_PICTURES" in os.environ
COLOURS = 256  # of a kept picture, which makes it small
SQUARE = 4  # pixels
DIFFERENT = 40  # of 255
FEW = 2  # squares


def check(name: str, drawn: bytes) -> None:
    """Fails if the page looks different from the kept picture, or keeps the picture, if that is what is wanted."""
    seen = Image.open(BytesIO(drawn)).convert("RGB")
    file = KEPT / f"{name}.png"
    if IS_KEEPING:
        KEPT.mkdir(exist_ok=True)
        seen.quantize(COLOURS, dither=Image.Dither.NONE).save(file, optimize=True)
        return
    kept = Image.open(file).convert("RGB")
    found = difference(kept, seen)
    assert found is None, f"{name} looks different; {_show(name, kept, seen, found)} shows where. If it is right, run {COMMAND}."


def difference(kept: Image.Image, seen: Image.Image) -> Image.Image | None:
    """Returns a picture that is white where the two are different; None if they are the same."""
    if kept.size != seen.size:
        return Image.new("L", seen.size, 255)
    size = (-(-kept.width // SQUARE), -(-kept.height // SQUARE))
    bands = ImageChops.difference(*(one.resize(size, Image.Resampling.BOX) for one in (kept, seen))).split()
    largest = ImageChops.lighter(ImageChops.lighter(bands[0], bands[1]), bands[2])
    marked = largest.point(lambda value: 255 if value > DIFFERENT else 0)
    return marked.resize(kept.size, Image.Resampling.NEAREST) if marked.histogram()[255] > FEW else None


def _show(name: str, kept: Image.Image, seen: Image.Image, found: Image.Image) -> Path:
    """Leaves the three pictures in the build folder."""
    SEEN.mkdir(exist_ok=True)
    for what, picture in (("kept", kept), ("seen", seen), ("difference", found)):
        picture.save(SEEN / f"{name}-{what}.png")
    return SEEN / f"{name}-difference.png"
