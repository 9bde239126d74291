# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Prints what the demo shows: the channels as text, in colour if the terminal has colours."""

from __future__ import annotations

from typing import Any

BOLD, DIM, GREEN, YELLOW, RED, CYAN = "1", "2", "32", "33", "31", "36"


class Painter:
    def __init__(self, colour: bool) -> None:
        self._colour = colour

    def _styled(self, text: str, style: str) -> str:
        return f"\x1b[{style}m{text}\x1b[0m" if self._colour else text

    def title(self, text: str) -> None:
        print("\n" + self._styled(text, BOLD), flush=True)

    def command(self, text: str) -> None:
        print(self._styled(f"   $ {text}", DIM), flush=True)

    def answer(self, text: str) -> None:
        """Shows what a command printed."""
        for line in text.splitlines():
            print(f"     {line}", flush=True)

    def channels(self, before: list[dict[str, Any]], now: list[dict[str, Any]]) -> None:
        """Shows a line for each channel in use; marks what the step changed."""
        for old, channel in zip(before, now):
            if channel["state"] == "free":
                continue
            mark = ">" if channel != old else " "
            print(f" {mark} {self._channel(channel)}", flush=True)

    def _channel(self, channel: dict[str, Any]) -> str:
        profile = "no profile" if channel["profile"] is None else f"profile {channel['profile']}"
        node = "" if channel["video_node"] is None else f"/dev/video{channel['video_node']}"
        text = f"channel {channel['channel']}  {channel['slot'] or '':<6} {channel['device'] or '':<31} {node:<11} {profile:<11}"
        if channel["state"] != "plugged":
            return self._styled(f"{text} {channel['state']}", DIM)
        if channel["parked_behind"] is not None:
            return self._styled(f"{text} waits for channel {channel['parked_behind']}", YELLOW)
        if not channel["supported"]:
            return self._styled(f"{text} not supported", RED)
        return self._styled(f"{text} ready", GREEN)

    def stored(self, lines: list[str]) -> None:
        self._heard("stored", lines)

    def event_log(self, texts: list[str]) -> None:
        self._heard("event log", texts)

    def manager(self, lines: list[str]) -> None:
        self._heard("manager", lines)

    def viewer(self, lines: list[str]) -> None:
        """Shows what the demo also checked, as a viewer would."""
        self._heard("viewer", lines)

    def _heard(self, who: str, lines: list[str]) -> None:
        for line in lines:
            print(self._styled(f"   {who + ':':<10} {line}", CYAN), flush=True)
