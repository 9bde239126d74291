# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What pages and guides contain of the sources: {{terms}} stands for what values() has under that name."""

from __future__ import annotations

import re
from collections.abc import Iterator

from manuallib.costs import read_costs
from manuallib.reference import REPOSITORY, Function, Reference

KEYS = REPOSITORY / "src/core/channel_keys.def"
KEY = re.compile(
    r"CHANNEL_KEY\((?P<type>\w+)(?:<(?P<size>\d+)>)?, (?P<name>\w+), \{?\"(?P<group>\w+)\", (?:\"(?P<sub>\w+)\"|nullptr)"
    r"(?:, (?P<missing>.*?))?\}?\)$",
    re.MULTILINE,
)
# What the table of keys writes as code.
CODE = {"kNone": "-1", "static_cast<int>(Codec::mjpeg)": "1"}
# Where the text of a field would not do for a key.
MEANINGS = {
    "cap": 'codecs of the camera, such as "0 1"; numbers as in video/vcodec',
    "createtime": 'when the profile was assigned, such as "2024-03-05 08:15:00"',
    "exists": "1 = the device is attached, 0 = it is unplugged, -1 = another camera is in its port",
    "profile": "0 to 3, -1 = none",
}


class UnknownKey(Exception):
    """A channel key without a meaning."""


def literal(text: str) -> str:
    """A text of the sources as Markdown that shows it unchanged."""
    return re.sub(r"([\\`*_{}\[\]<>#|~^$@])", r"\\\1", text)


def page_of(header: str) -> str:
    """The page of the site that describes a header."""
    return header.removeprefix("usbdev/").replace(".h", ".html")


def meaning(name: str, reference: Reference) -> str:
    """Fields of the records have the names of the keys that they are read from."""
    texts = [one.text for record in reversed(reference.records) for one in record.fields if one.name == name]
    if name not in MEANINGS and not texts:
        raise UnknownKey(name)
    return MEANINGS.get(name) or texts[0]


def key_rows(reference: Reference) -> Iterator[str]:
    for key in KEY.finditer(KEYS.read_text()):
        path = f"{key['group']}/{key['sub']}" if key["sub"] else key["group"]
        missing = (key["missing"] or "").strip('"')
        kind = f"text, {key['size']}" if key["size"] else "number"
        yield f"| {path} | {kind} | {CODE.get(missing, missing)} | {literal(meaning(key['name'], reference))} |"


def keys(reference: Reference) -> str:
    rows = ["| Key | Type, size | If missing | Meaning |", "|:----|:-----|:---|:----------|", *key_rows(reference)]
    return "\n".join(rows)


def bullets(texts: list[str]) -> str:
    return "\n".join(f"- {literal(text)}" for text in texts)


def functions(reference: Reference) -> str:
    groups: dict[str, list[Function]] = {}
    for one in reference.functions:
        groups.setdefault(one.group, []).append(one)
    return "\n\n".join(
        f"{group.split(':')[0]}\n:   " + ", ".join(f"**{literal(one.name)}**(3)" for one in members)
        for group, members in groups.items()
    )


def waits(reference: Reference) -> str:
    """What the caller of each function waits for, at most."""
    costs = read_costs()
    waiting = [one for one in reference.functions if one.takes_lock or one.runs_commands]
    rows = [
        f"| [{literal(one.name)}]({page_of(one.header)}#{one.name}) | {'yes' if one.takes_lock else ''} "
        f"| {costs[one.name].commands or ''} |"
        for one in waiting
    ]
    return "\n".join(["| Function | Takes the lock | Commands |", "|:--|:--|--:|", *rows])


def holders(reference: Reference) -> str:
    """The functions that hold the lock while commands run."""
    names = [f"`{one.name}`" for one in reference.functions if re.search(r"holds the lock", one.description, re.IGNORECASE)]
    return ", ".join(names[:-1]) + f" and {names[-1]}"


def values(reference: Reference) -> dict[str, str]:
    return {
        "terms": bullets(reference.terms),
        "turns": bullets(reference.turns),
        "functions": functions(reference),
        "holders": holders(reference),
        "keys": keys(reference),
        "waits": waits(reference),
    }


def fill(text: str, reference: Reference) -> str:
    return re.sub(r"\{\{(\w+)\}\}", lambda found: values(reference)[found[1]], text)
