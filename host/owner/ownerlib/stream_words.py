# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The settings of a stream in the words of the pages."""

from __future__ import annotations

from ownerlib.cameras import Value
from ownerlib.texts import Texts

TURNS = {(False, False): "turned.none", (True, True): "turned.half", (False, True): "turned.mirror", (True, False): "turned.flip"}
NAMES = {"sound": "sound.on", "sound_codec": "sound.codec"}


def stream_words(settings: Value, texts: Texts) -> str:
    """Returns what the settings are set to. The picture is turned in one way, as on the page, if that is set as a whole."""
    left = dict(settings)
    told = []
    if {"width", "height"} <= left.keys():
        told.append(f"{texts.text('size')}: {left.pop('width')} × {left.pop('height')}")
    if {"flip", "mirror"} <= left.keys():
        told.append(texts.text(TURNS[left.pop("flip"), left.pop("mirror")]))
    told += [f"{texts.text(NAMES.get(name, name))}: {_value(name, value, texts)}" for name, value in left.items()]
    return "; ".join(told)


def _value(name: str, value: object, texts: Texts) -> str:
    if isinstance(value, bool):
        return texts.text("yes" if value else "no")
    if name == "rate":
        return texts.rate(float(str(value)))
    if name == "volume":
        return f"{value} %"
    return texts.text(f"{'sound' if name == 'sound_codec' else name}.{value}")
