"""forget resets every key of a channel that the library knows."""

from __future__ import annotations

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
KEY = re.compile(r'\{"(\w+)", (?:"(\w+)"|nullptr)')


def keys_in(path: str) -> set[tuple[str, str]]:
    return set(KEY.findall((ROOT / path).read_text()))


def test_every_key_of_a_channel_is_reset() -> None:
    known = keys_in("src/core/channel_keys.h")
    assert len(known) > 30
    assert keys_in("tools/usbdevctl/channel/channel_reset.cpp") == known
