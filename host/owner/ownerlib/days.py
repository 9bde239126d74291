# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The words by which people search for a day, where they are."""

from __future__ import annotations

from datetime import datetime, timedelta, timezone, tzinfo
from zoneinfo import ZoneInfo

from ownerlib.texts import Texts


class Days:
    def __init__(self, texts: Texts, zone: str, now: datetime | None = None) -> None:
        self._texts = texts
        self._zone = _zone(zone)
        today = (now or datetime.now(timezone.utc)).astimezone(self._zone).date()
        self._near = {today: texts.text("events.today"), today - timedelta(days=1): texts.text("events.yesterday")}
        self._months = texts.text("events.months").split()

    def words(self, time: str) -> str:
        """Returns the day of a moment as the pages write it, and in the other ways in which people do."""
        day = datetime.fromisoformat(time).astimezone(self._zone).date()
        numbers = {"day": f"{day.day}", "day2": f"{day:%d}", "month": f"{day.month}", "month2": f"{day:%m}", "year": f"{day.year}"}
        named = self._texts.text("events.day", **numbers, name=self._months[day.month - 1])
        return f"{named} {day.isoformat()} {self._near.get(day, '')}"


def _zone(name: str) -> tzinfo:
    """Returns the zone in which somebody is; if this host does not know it, that of universal time."""
    try:
        return ZoneInfo(name)
    except (KeyError, OSError, ValueError):
        return timezone.utc
