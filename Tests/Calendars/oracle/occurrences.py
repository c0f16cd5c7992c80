"""From components to occurrences: series, exceptions and overrides (RFC 5545, sections 3.8.4.4 and 3.8.5)."""

import re
from collections import defaultdict
from dataclasses import dataclass
from datetime import datetime, timedelta
from typing import Optional

from .rules import Rule, instances
from .text import components, unescape
from .zones import SystemZone, zone_from_component, zone_named

FAR_PAST, FAR_FUTURE = datetime(1500, 1, 1), datetime(2190, 1, 1)


@dataclass(frozen=True)
class Occurrence:
    start: datetime  # UTC
    end: Optional[datetime]  # UTC; None where no sensible end can be demanded
    all_day: bool
    title: Optional[str]
    uid: Optional[str]


@dataclass
class Time:
    local: datetime
    zone: object
    is_date: bool = False

    @property
    def utc(self):
        return self.zone.to_utc(self.local)


@dataclass
class Length:
    days: int = 0
    exact: timedelta = timedelta()
    demanded: bool = True

    def end_of(self, local, utc, zone):
        if not self.demanded:
            return None
        return (zone.to_utc(local + timedelta(days=self.days)) if self.days else utc) + self.exact


class Reader:
    """Values of one VCALENDAR."""

    def __init__(self, calendar, viewer):
        self.viewer = viewer
        self.floating = viewer
        own = calendar.value("X-WR-TIMEZONE")
        if own and zone_named(own):
            self.floating = zone_named(own)
        self.definitions = {part.value("TZID"): part for part in calendar.parts if part.name == "VTIMEZONE"}
        self.defined = {}

    @staticmethod
    def _onsets(start, rule, offset_before):
        class Fixed:
            @staticmethod
            def to_utc(local):
                return local - offset_before
        return [local for local, _ in instances(Rule(rule), start, Fixed, False, (FAR_PAST, FAR_FUTURE))]

    def zone(self, tzid):
        return zone_named(tzid) or self._own_zone(tzid) or self.floating

    def _own_zone(self, tzid):
        if tzid in self.definitions and tzid not in self.defined:
            self.defined[tzid] = zone_from_component(self.definitions[tzid], self._onsets)
        return self.defined.get(tzid)

    def time(self, text, parameters):
        text = text.strip().upper()
        match = re.fullmatch(r"(\d{8})(?:T(\d{6})(Z?))?", text)
        if not match:
            return None
        try:
            if match.group(2) is None:
                return Time(datetime.strptime(text, "%Y%m%d"), self.viewer, True)
            local = datetime.strptime(text[:15], "%Y%m%dT%H%M%S")
        except ValueError:
            return None
        if match.group(3):
            return Time(local, SystemZone("Etc/UTC"))
        return Time(local, self.zone(parameters["TZID"]) if "TZID" in parameters else self.floating)

    def times(self, lines):
        for line in lines:
            for item in line.value.split(","):
                start, _, end = item.partition("/")
                time = self.time(start, line.parameters)
                if time:
                    yield time, end, line.parameters

    @staticmethod
    def duration(text):
        match = re.fullmatch(r"([+-]?)P(?:(\d+)W)?(?:(\d+)D)?(?:T(?:(\d+)H)?(?:(\d+)M)?(?:(\d+)S)?)?", text.strip().upper())
        if not match or match.group(1) == "-":
            return Length()
        weeks, days, hours, minutes, seconds = (int(group or 0) for group in match.groups()[1:])
        return Length(weeks * 7 + days, timedelta(hours=hours, minutes=minutes, seconds=seconds))

    def length(self, event, start):
        if event.line("DTEND"):
            end = self.time(event.value("DTEND"), event.line("DTEND").parameters)
            if end is None or end.is_date != start.is_date:
                return Length(demanded=False)
            if end.zone is self.floating and not event.line("DTEND").parameters.get("TZID"):
                end.zone = start.zone  # an end without a zone is on the clock of the start
            if start.is_date:
                days = (end.local - start.local).days
                return Length(days) if days > 0 else Length(demanded=False)
            return Length(exact=max(end.utc - start.utc, timedelta()))
        if event.line("DURATION"):
            length = self.duration(event.value("DURATION"))
            if start.is_date and (length.exact or not length.days):
                return Length(demanded=False)
            return length
        return Length(1) if start.is_date else Length()


class Event:
    def __init__(self, component, reader, order):
        self.component = component
        self.order = order
        line = component.line("DTSTART")
        self.start = reader.time(line.value, line.parameters) if line else None
        self.length = reader.length(component, self.start) if self.start else None
        self.uid = component.value("UID") or None
        summary = component.value("SUMMARY")
        self.title = None if summary is None else unescape(summary)
        line = component.line("RECURRENCE-ID")
        self.replaces = reader.time(line.value, line.parameters) if line else None
        self.and_future = bool(line) and line.parameters.get("RANGE", "").upper() == "THISANDFUTURE"
        sequence = component.value("SEQUENCE")
        self.sequence = int(sequence) if sequence and re.fullmatch(r"\s*\d+\s*", sequence) else 0

    @property
    def rank(self):
        stamp = self.component.value("LAST-MODIFIED") or self.component.value("DTSTAMP") or ""
        return self.sequence, stamp, self.order

    def occurrence(self, local, zone, length, utc=None):
        start = zone.to_utc(local) if utc is None else utc
        end = length.end_of(local, start, zone)
        return Occurrence(start, None if end is None else max(start, end), self.start.is_date, self.title, self.uid)


def named_by(instance, time, zone, series_is_date):
    """Whether EXDATE or RECURRENCE-ID `time` means the instance (local, utc) of a series in `zone`."""
    local, utc = instance
    if time.is_date or series_is_date:
        return local.date() == time.local.date()
    return utc == time.utc


def series(event, reader, window):
    """{UTC: (local, length)} of a master, exceptions taken out."""
    start, zone, component = event.start, event.start.zone, event.component
    found = {start.utc: (start.local, event.length)}
    for line in component.all("RRULE"):
        rule = Rule(line.value)
        if rule.frequency:
            for local, utc in instances(rule, start.local, zone, start.is_date, window):
                found[utc] = (local, event.length)
    for time, end, parameters in reader.times(component.all("RDATE")):
        length = event.length
        if end.startswith(("P", "+P", "-P")):
            length = reader.duration(end)
        elif end:
            until = reader.time(end, parameters)
            length = Length(exact=max(until.utc - time.utc, timedelta()))
        local = time.local if time.is_date or start.is_date else zone.to_local(time.utc)
        if start.is_date:
            local = datetime(local.year, local.month, local.day)
        found.setdefault(zone.to_utc(local), (local, length))
    gone = set()
    for line in component.all("EXRULE"):
        rule = Rule(line.value)
        gone |= {utc for _, utc in instances(rule, start.local, zone, start.is_date, window, with_start=False)}
    exceptions = [time for time, _, _ in reader.times(component.all("EXDATE"))]
    for utc, (local, _) in found.items():
        if any(named_by((local, utc), time, zone, start.is_date) for time in exceptions):
            gone.add(utc)
    return {utc: value for utc, value in found.items() if utc not in gone}, exceptions


def occurrences_of_uid(events, reader, window):
    masters = [event for event in events if event.replaces is None]
    overrides = [event for event in events if event.replaces is not None]
    if not masters and any(event.component.line("RRULE") for event in overrides):
        masters = [event for event in overrides if event.component.line("RRULE")]
        overrides = [event for event in overrides if event not in masters]
    newest = {}
    for event in sorted(overrides, key=lambda event: event.rank):
        newest[event.replaces.utc, event.replaces.is_date] = event
    overrides = sorted(newest.values(), key=lambda event: event.replaces.utc)
    if not masters:
        return [event.occurrence(event.start.local, event.start.zone, event.length) for event in overrides]

    master = max(masters, key=lambda event: event.rank)
    found, exceptions = series(master, reader, window)
    zone, is_date = master.start.zone, master.start.is_date
    result = []
    for utc, (local, length) in found.items():
        if any(named_by((local, utc), event.replaces, zone, is_date) for event in overrides):
            continue
        ranges = [event for event in overrides if event.and_future and event.replaces.utc <= utc]
        if not ranges:
            result.append(master.occurrence(local, zone, length, utc))
            continue
        # The whole tail moves by as much as its first instance did, on the wall clock of the override.
        by = ranges[-1]
        if by.start.is_date:
            shifted = local + (by.start.local - by.replaces.local)
        else:
            there = local if by.start.zone.name == zone.name else by.start.zone.to_local(utc)
            shifted = there + (by.start.local - by.start.zone.to_local(by.replaces.utc))
        result.append(by.occurrence(shifted, by.start.zone, by.length))
    for event in overrides:
        place = event.replaces.local if event.replaces.is_date or is_date else zone.to_local(event.replaces.utc)
        if any(named_by((place, event.replaces.utc), time, zone, is_date) for time in exceptions):
            continue
        result.append(event.occurrence(event.start.local, event.start.zone, event.length))
    return result


def occurrences(data, viewer, begin, end):
    """The occurrences in the bytes of one file whose start lies in [begin, end), in order of start."""
    result = []
    for calendar in components(data):
        if calendar.name != "VCALENDAR":
            continue
        reader = Reader(calendar, viewer)
        groups = defaultdict(list)
        for order, part in enumerate(calendar.parts):
            if part.name == "VEVENT":
                event = Event(part, reader, order)
                if event.start:
                    groups[event.uid or ("", order)].append(event)
        for events in groups.values():
            # Overrides may move what lies outside into the window.
            moves = [abs(event.start.utc - event.replaces.utc) for event in events if event.replaces]
            margin = max(moves, default=timedelta()) + timedelta(days=3)
            result += occurrences_of_uid(events, reader, (begin - margin, end + margin))
    return sorted((item for item in result if begin <= item.start < end), key=lambda item: (item.start, item.title or ""))
