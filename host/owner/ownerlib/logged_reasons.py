# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Why a camera does not stream, as usbdevctl logs it: in the words of reasons.def, by its causes. Only what the machine has
against a camera is logged."""

from __future__ import annotations

import re

WORDS = {
    "no_channel": "it has no channel",
    "gone": "its USB device is not there any more",
    "node_gone": "{node} is not there any more",
    "port_disabled": "the hub's port {port} is disabled",
    "over_current": "the hub cut the power of port {port}, because too much current flowed ({count} times since the start)",
    "unauthorized": "the USB device in port {port} is not authorised",
    "no_capture_node": "it has no node for pictures",
    "metadata_node": "{node} is a node for metadata, not for pictures",
    "no_permission": "the user {user} may not open {node}",
    "stream_without_permission": "its stream's process may not open {node}",
    "busy": "another program uses it: {programs}",
    "busy_before": "another program uses it: one that has ended since",
    "busy_unseen": "another program uses it; only root can see which one",
    "bandwidth": "the USB bus has not enough bandwidth left for it; reserved are {holders}",
    "bandwidth_alone": "the USB bus has not enough bandwidth for it, although no other camera or sound card reserves any now",
    "disk_full": "the disk of {folder}, to which its stream is written, is full",
    "suspended": "its USB device is suspended and does not wake: {failure}",
    "unopened": "{node} cannot be opened: {failure}",
    "failing": "its stream failed: {failure}",
}


def _pattern(words: str) -> re.Pattern[str]:
    """Returns what finds the words as a sentence, with something in place of each value; its cure is after it."""
    parts = re.split(r"\{(\w+)\}", words[:1].upper() + words[1:])
    found = "".join(f"(?P<{part}>.+?)" if index % 2 else re.escape(part) for index, part in enumerate(parts))
    return re.compile(rf"{found}\. .*", re.DOTALL)


# Words without values first, because values may be any.
PATTERNS = {cause: _pattern(words) for cause, words in sorted(WORDS.items(), key=lambda one: one[1].count("{"))}


def cause_of(text: str) -> tuple[str, dict[str, str]] | None:
    """Returns the cause of a logged reason, and its values; None if it has none of these."""
    for cause, pattern in PATTERNS.items():
        if found := pattern.fullmatch(text):
            return cause, found.groupdict()
    return None
