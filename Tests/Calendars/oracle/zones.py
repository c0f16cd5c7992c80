"""Time zones: the system's, and those that a file defines itself (RFC 5545, section 3.6.5)."""

from datetime import datetime, timedelta, timezone
from functools import lru_cache
from zoneinfo import ZoneInfo, available_timezones

# The Windows names that the cases use, after the CLDR table for the territory "001".
WINDOWS_NAMES = {
    "W. Europe Standard Time": "Europe/Berlin",
    "Central Europe Standard Time": "Europe/Budapest",
    "Central European Standard Time": "Europe/Warsaw",
    "Romance Standard Time": "Europe/Paris",
    "GMT Standard Time": "Europe/London",
    "Eastern Standard Time": "America/New_York",
    "Central Standard Time": "America/Chicago",
    "Pacific Standard Time": "America/Los_Angeles",
    "India Standard Time": "Asia/Kolkata",
    "Tokyo Standard Time": "Asia/Tokyo",
    "AUS Eastern Standard Time": "Australia/Sydney",
    "Lord Howe Standard Time": "Australia/Lord_Howe",
    "Egypt Standard Time": "Africa/Cairo",
    "Morocco Standard Time": "Africa/Casablanca",
    "Greenland Standard Time": "America/Nuuk",
    "Paraguay Standard Time": "America/Asuncion",
    "Arabian Standard Time": "Asia/Dubai",
    "UTC": "Etc/UTC",
}


class SystemZone:
    def __init__(self, name):
        self.name = name
        self._info = ZoneInfo(name)

    def to_local(self, utc):
        return utc.replace(tzinfo=timezone.utc).astimezone(self._info).replace(tzinfo=None)

    def to_utc(self, local):
        # fold=0: a repeated time is its first occurrence, a skipped one counts with the offset before the gap.
        return local - local.replace(tzinfo=self._info, fold=0).utcoffset()


class FileZone:
    """`onsets`: (local time before the change, offset before, offset after)."""

    def __init__(self, name, onsets):
        self.name = name
        self._changes = sorted((local - before, before, after) for local, before, after in onsets)

    def _offset(self, utc):
        offset = self._changes[0][1]
        for onset, _, after in self._changes:
            if onset > utc:
                break
            offset = after
        return offset

    def to_local(self, utc):
        return utc + self._offset(utc)

    def to_utc(self, local):
        offsets = {change[1] for change in self._changes} | {change[2] for change in self._changes}
        matching = [local - offset for offset in offsets if self.to_local(local - offset) == local]
        if matching:
            return min(matching)
        before_gap = [before for onset, before, _ in self._changes if onset + before <= local]
        return local - before_gap[-1]


@lru_cache
def _known_names():
    return {name.lower(): name for name in available_timezones()}


@lru_cache
def zone_named(tzid):
    """The system's zone of this name, prefixed names and Windows names included, or None."""
    name = tzid.strip()
    if name in WINDOWS_NAMES:
        return SystemZone(WINDOWS_NAMES[name])
    parts = name.strip("/").split("/")
    tails = ["/".join(parts[index:]) for index in range(len(parts))] if name.startswith("/") else [name]
    for tail in tails:
        if tail.lower() in _known_names():
            return SystemZone(_known_names()[tail.lower()])
    return None


def offset_value(text):
    """±HHMM or ±HHMMSS"""
    sign = -1 if text.startswith("-") else 1
    digits = text.lstrip("+-").ljust(6, "0")
    return sign * timedelta(hours=int(digits[0:2]), minutes=int(digits[2:4]), seconds=int(digits[4:6]))


def zone_from_component(component, expand_floating):
    """`expand_floating(start, rule text, offset before)` gives the local onsets of a rule."""
    onsets = []
    for part in component.parts:
        if part.name not in ("STANDARD", "DAYLIGHT"):
            continue
        before = offset_value(part.value("TZOFFSETFROM"))
        after = offset_value(part.value("TZOFFSETTO"))
        start = datetime.strptime(part.value("DTSTART")[:15], "%Y%m%dT%H%M%S")
        times = {start}
        for rule in part.all("RRULE"):
            times |= set(expand_floating(start, rule.value, before))
        for line in part.all("RDATE"):
            times |= {datetime.strptime(item[:15], "%Y%m%dT%H%M%S") for item in line.value.split(",")}
        onsets += [(time, before, after) for time in times]
    return FileZone(component.value("TZID"), onsets) if onsets else None
