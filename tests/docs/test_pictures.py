# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The pictures of the documents."""

from __future__ import annotations

import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import pytest
from blocks import documents
from conftest import REPOSITORY
from links import document_links
from manuallib.recording import LONGEST, SHORTEST, Line, moments, picture

PICTURES = sorted((REPOSITORY / "docs/pictures").iterdir())
LARGEST = 500_000


@pytest.mark.parametrize("path", PICTURES, ids=lambda path: path.name)
def test_a_picture_is_small_and_a_document_shows_it(path: Path) -> None:
    assert path.stat().st_size < LARGEST
    shown = {(document.parent / link).resolve() for document in documents() for link in document_links(document.read_text())}
    assert path in shown


@pytest.mark.parametrize("path", [path for path in PICTURES if path.suffix == ".svg"], ids=lambda path: path.name)
def test_a_drawing_loads_nothing_and_runs_nothing(path: Path) -> None:
    tags = {element.tag.rpartition("}")[2] for element in ElementTree.parse(path).iter()}
    assert tags & {"script", "image", "use", "foreignObject", "a"} == set()


def test_a_recording_keeps_the_order_and_bounds_the_pauses() -> None:
    entered = moments([Line(0.0, "a"), Line(0.0, "b"), Line(1.0, "c"), Line(61.0, "d")])
    assert [round(after - before, 3) for before, after in zip(entered, entered[1:])] == [SHORTEST, 1.0, LONGEST]


def test_a_recording_shows_the_terminals_text_and_colours() -> None:
    drawing = ElementTree.fromstring(picture("<&>", [Line(0.0, "\x1b[32m<ready>\x1b[0m & done"), Line(1.0, "")]).encode())
    spans = [(part.get("class"), part.text) for part in drawing.iter("{http://www.w3.org/2000/svg}tspan")]
    assert spans == [("green", "<ready>"), (None, " & done")]


def test_the_recording_shows_every_step_of_the_demo() -> None:
    """Otherwise docs/manual/record makes a new one."""
    sys.path[:0] = [str(REPOSITORY / "host/demo")]
    from story import STORY

    text = "".join(ElementTree.parse(REPOSITORY / "docs/pictures/demo.svg").getroot().itertext())
    assert [step.title for number, step in enumerate(STORY, 1) if f"{number}. {step.title}" not in text] == []
