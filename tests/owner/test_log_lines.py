# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The library's lines of the event log, in the words of the pages."""

from __future__ import annotations

import re
import sys
from itertools import product
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "host" / folder) for folder in ("owner", "services")]
from ownerlib.log_lines import LINES, SETTINGS, TOLD_AS, is_about, parse
from ownerlib.logged_reasons import WORDS
from ownerlib.texts import LANGUAGES, texts

SOURCES = "".join(file.read_text(encoding="utf-8") for file in (ROOT / "src").rglob("*.cpp"))
PATTERNS = re.findall(r"logEvent\(EventLevel::\w+,\s*\"(.*?)\",", SOURCES, re.DOTALL)
SWITCHES = set(re.findall(r"addSwitch\(&[\w:]+, \"(.*?)\"\)", SOURCES))
# What the library writes into each of its patterns.
WRITTEN: dict[str, list[tuple[object, ...]]] = {
    "Modified Channel %d video format: %s": [(1, "MJPEG"), (4, "H.264")],
    "Modified Channel %d resolution: %dx%d": [(2, 640, 480)],
    "Modified Channel %d audio format: %s": [(1, "G711 u-law"), (1, "AAC")],
    "Modified Channel %d audio volume: %d": [(1, 70)],
    "Modified Channel %d FPS: %3.2f": [(2, 24.0), (1, 0.125)],
    "Modified Channel %d frame rate to over 60 FPS. Decode error may occur.": [(3,)],
    "%s %s on Channel %d": [(state, what, 1) for state, what in product(("Enabled", "Disabled"), sorted(SWITCHES))],
    "Modified Channel %d USB device name: %s (%s)": [(1, "Cam (2)", "3-1.2")],
    "Modified Channel %d channel name: %s": [(2, ""), (2, "Audio on\nChannel 1")],
    "USB slot [%s] has been %s.": [("3-1", "enabled"), ("3-1.2", "disabled")],
    "Camera[%s %s] has image size over 60 fps. It may cause decode error.": [("3-1", "Cam] x")],
}
ALL = [pattern % values for pattern, samples in WRITTEN.items() for values in samples]


def test_each_pattern_of_the_library_is_tried() -> None:
    assert set(PATTERNS) == set(WRITTEN)
    assert len(PATTERNS) == SOURCES.count(" logEvent(EventLevel::")
    assert set(SETTINGS) == SWITCHES


@pytest.mark.parametrize("line", ALL)
@pytest.mark.parametrize("language", LANGUAGES)
def test_each_line_of_the_library_has_words_in_each_language(line: str, language: str) -> None:
    known = parse(line)
    words = known and known.words(texts(language))
    assert words and not re.search(r"Channel \d|FPS|[{}]", words.replace("Audio on\nChannel 1", ""))


def test_no_words_are_left_over() -> None:
    assert {known.key for known in map(parse, ALL) if known} == set(LINES)


@pytest.mark.parametrize(
    ("line", "english", "german"),
    [
        ("Modified Channel 1 FPS: 15.00", "Rate set to 15 pictures a second", "Bildrate auf 15 Bilder pro Sekunde gesetzt"),
        ("Modified Channel 1 FPS: 7.50", "Rate set to 7.5 pictures a second", "Bildrate auf 7,5 Bilder pro Sekunde gesetzt"),
        ("Camera[3-1 Cam]: Another program uses it: vlc (12). End that program.",
         "Does not stream. Another program uses it: vlc (12).", "Sendet nicht. Ein anderes Programm verwendet sie: vlc (12)."),
        ("Camera[3-1]: Another program uses it: one that has ended since. End that program.",
         "Does not stream. Another program used it, which has ended since.",
         "Sendet nicht. Ein anderes Programm hat sie verwendet und ist inzwischen beendet."),
        ("Modified Channel 3 USB device name: Cam (3-1)", "Got profile 2", "Profil 2 erhalten"),
        ("Modified Channel 3 channel name: {rate}", "Renamed to “{rate}”", "Umbenannt in „{rate}“"),
    ],
)  # fmt: skip
def test_a_line_has_the_words_of_the_pages(line: str, english: str, german: str) -> None:
    known = parse(line)
    assert known and [known.words(texts(language)) for language in ("en", "de")] == [english, german]


@pytest.mark.parametrize(("rate", "words"), [(0.133, "8 seconds"), (0.13, "8 seconds"), (0.2, "5 seconds"), (0.4, "2.5 seconds")])
def test_a_long_time_between_pictures_is_no_more_exact_than_the_rate_that_is_stored(rate: float, words: str) -> None:
    assert texts("en").rate(rate) == f"1 picture every {words}"


def test_a_setting_is_called_as_on_its_switch() -> None:
    known = parse("Enabled image reverse on Channel 1")
    assert known and [known.words(texts(one)) for one in LANGUAGES] == [
        texts("de").text("flip") + ": an", texts("en").text("flip") + ": on"
    ]  # fmt: skip


@pytest.mark.parametrize(("head", "device"), [("Camera[3-1 Cam [2]]: ", "Cam [2]"), ("Camera[3-1]: ", None)])
def test_a_reason_keeps_its_words_and_is_about_its_camera(head: str, device: str | None) -> None:
    known = parse(f"{head}it lists NV12, and the library uses MJPG and YUYV only. Use another camera.")
    assert known and (known.port, known.device, known.words(texts("de"))) == ("3-1", device, None)


@pytest.mark.parametrize(
    ("line", "is_it"),
    [
        ("USB slot [3-1] has been disabled.", True), ("USB slot [3-1.2] has been disabled.", False), ("Modified Channel 2 FPS: 15.00", True),
        ("Modified Channel 1 FPS: 15.00", False), ("Modified Channel 4 USB device name: Cam (3-1)", True), ("Somebody writes on Channel 2", False),
    ],
)  # fmt: skip
def test_a_line_is_about_what_it_names(line: str, is_it: bool) -> None:
    assert is_about(line, "3-1", 1) == is_it
    assert not is_about(line, None, None)


@pytest.mark.parametrize("language", LANGUAGES)
@pytest.mark.parametrize("cause", WORDS)
def test_each_logged_reason_has_the_words_of_the_pages(cause: str, language: str) -> None:
    why = re.sub(r"\{(\w+)\}", r"/\1: 1.2", WORDS[cause])
    known = parse(f"Camera[3-1 Cam]: {why[:1].upper()}{why[1:]}. Do something. And more.")
    words = known and known.words(texts(language))
    begin = texts(language).text("log.reason", why="")
    assert words and words.startswith(begin) and len(words) > len(begin) and "{" not in words


def test_the_words_of_logged_reasons_are_those_of_usbdevctl() -> None:
    """All that the machine has against a camera."""
    reasons = (ROOT / "tools/usbdevctl/reason/reasons.def").read_text()
    words = {cause: "".join(re.findall(r'"([^"]*)"', parts)) for cause, parts in re.findall(REASON_LINE, reasons)}
    of_machine = re.findall(r"^USBDEVCTL_REASON\((\w+),", reasons[reasons.index("// The machine:") :], re.M)
    assert WORDS == {cause: words[cause] for cause in ("no_channel", *of_machine)}


REASON_LINE = r'USBDEVCTL_REASON\((\w+), "\w+", "[^"]*",\s*((?:"[^"]*"\s*)+),'


@pytest.mark.parametrize("line", ["", "Somebody writes on Channel 2", "Modified Channel 2", "Modified Channel 2 FPS: 24.00 x", "Enabled x on Channel 1"])
def test_other_lines_are_not_known(line: str) -> None:
    assert parse(line) is None
