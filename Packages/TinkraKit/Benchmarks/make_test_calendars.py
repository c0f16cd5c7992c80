#!/usr/bin/python3
"""Makes the calendars that calendar_benchmark and store_benchmark read.

  make_test_calendars.py OUT [--events N] [--calendars N] [--base 2026-11-20]

Writes the same events twice: OUT/single/<calendar>.ics, and OUT/vdir/<calendar>/<event>.ics with one event a file;
and OUT/manifest.json, which names the window that is asked for. The mixture is that of an office: one event in
five repeats (mostly weekly, some without an end, some with an excluded or a moved occurrence), one in twelve lasts
all day, four in five are in a zone that the file also defines, and most carry a description, people and a reminder
that nobody asks for. The same arguments give the same bytes.
"""

import argparse
import datetime
import json
import pathlib
import random

DAY = datetime.timedelta(days=1)
PAST_DAYS, FUTURE_DAYS, WINDOW_DAYS = 1095, 365, 30
ZONES = [("Europe/Zurich", 50), ("America/Chicago", 30), ("UTC", 10), (None, 10)]
TOPICS = ["Planning", "Review", "Interview", "Workshop", "Lunch", "Call", "Training", "Retrospective"]

DEFINITION = """BEGIN:VTIMEZONE
TZID:{name}
BEGIN:DAYLIGHT
TZOFFSETFROM:{standard}
TZOFFSETTO:{summer}
DTSTART:19700329T020000
RRULE:FREQ=YEARLY;BYMONTH={spring}
END:DAYLIGHT
BEGIN:STANDARD
TZOFFSETFROM:{summer}
TZOFFSETTO:{standard}
DTSTART:19701025T030000
RRULE:FREQ=YEARLY;BYMONTH={autumn}
END:STANDARD
END:VTIMEZONE"""
DEFINITIONS = {
    "Europe/Zurich": DEFINITION.format(name="Europe/Zurich", standard="+0100", summer="+0200",
        spring="3;BYDAY=-1SU", autumn="10;BYDAY=-1SU"),
    "America/Chicago": DEFINITION.format(name="America/Chicago", standard="-0600", summer="-0500",
        spring="3;BYDAY=2SU", autumn="11;BYDAY=1SU"),
}


def folded(line):
    first, rest = line[:73], line[73:]
    return "\r\n ".join([first, *(rest[at:at + 72] for at in range(0, len(rest), 72))])


def stamped(name, moment, zone, is_date=False):
    if is_date:
        return f"{name};VALUE=DATE:{moment:%Y%m%d}"
    if zone == "UTC":
        return f"{name}:{moment:%Y%m%dT%H%M%SZ}"
    return f"{name}{';TZID=' + zone if zone else ''}:{moment:%Y%m%dT%H%M%S}"


def rule_of(chance, start):
    weekday = start.strftime("%a").upper()[:2]
    rule = chance.choice([f"FREQ=WEEKLY;BYDAY={weekday}"] * 6 + [f"FREQ=WEEKLY;INTERVAL=2;BYDAY={weekday}",
        "FREQ=DAILY", "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR", f"FREQ=MONTHLY;BYDAY=1{weekday}", "FREQ=YEARLY"])
    end = chance.random()
    if end < 0.3:
        return rule
    if end < 0.6:
        return f"{rule};COUNT={chance.randint(2, 60)}"
    return f"{rule};UNTIL={start + chance.randint(14, 700) * DAY:%Y%m%dT235959Z}"


def body(chance, topic, number):
    yield f"SUMMARY:{topic} {number}"
    yield "DTSTAMP:20260101T000000Z"
    if chance.random() < 0.7:
        yield "DESCRIPTION:" + r"What we talk about\, and who brings what.\n" * chance.randint(1, 6)
    for guest in range(chance.randint(0, 5)):
        yield f"ATTENDEE;CN=\"Guest {guest}\";ROLE=REQ-PARTICIPANT;PARTSTAT=ACCEPTED:mailto:guest{guest}@example.org"
    if chance.random() < 0.3:
        yield from ("BEGIN:VALARM", "ACTION:DISPLAY", "TRIGGER:-PT10M", "DESCRIPTION:Soon", "END:VALARM")


def event_lines(chance, number, base):
    zone = chance.choices([name for name, _ in ZONES], [weight for _, weight in ZONES])[0]
    is_date = chance.random() < 1 / 12
    start = base + chance.randint(-PAST_DAYS, FUTURE_DAYS) * DAY + datetime.timedelta(
        minutes=0 if is_date else 15 * chance.randint(28, 72))
    length = DAY if is_date else datetime.timedelta(minutes=15 * chance.randint(1, 8))
    topic = chance.choice(TOPICS)
    head = ["BEGIN:VEVENT", f"UID:event-{number}@example.org"]
    times = [stamped("DTSTART", start, zone, is_date), stamped("DTEND", start + length, zone, is_date)]
    if chance.random() >= 0.2:
        return zone, [*head, *times, *body(chance, topic, number), "END:VEVENT"]

    repeated = [f"RRULE:{rule_of(chance, start)}"]
    if chance.random() < 0.25:
        repeated.append(stamped("EXDATE", start + 7 * DAY, zone, is_date))
    lines = [*head, *times, *repeated, *body(chance, topic, number), "END:VEVENT"]
    if chance.random() < 0.2:
        moved = start + 14 * DAY
        lines += [*head, stamped("RECURRENCE-ID", moved, zone, is_date), stamped("DTSTART", moved + DAY, zone, is_date),
            stamped("DTEND", moved + DAY + length, zone, is_date), *body(chance, topic, number), "END:VEVENT"]
    return zone, lines


def write_calendar(path, zones, lines):
    definitions = [line for zone in sorted(zones & DEFINITIONS.keys()) for line in DEFINITIONS[zone].splitlines()]
    everything = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Tinkra//Benchmark//EN", *definitions, *lines, "END:VCALENDAR"]
    path.write_text("\r\n".join(folded(line) for line in everything) + "\r\n", newline="")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("out", type=pathlib.Path)
    parser.add_argument("--events", type=int, default=10_000)
    parser.add_argument("--calendars", type=int, default=4)
    parser.add_argument("--base", type=datetime.datetime.fromisoformat, default="2026-11-20")
    arguments = parser.parse_args()

    chance = random.Random(1)
    calendars = [([], set()) for _ in range(arguments.calendars)]
    for number in range(arguments.events):
        zone, lines = event_lines(chance, number, arguments.base)
        all_lines, zones = calendars[number % arguments.calendars]
        all_lines += lines
        zones.add(zone)
        folder = arguments.out / "vdir" / f"calendar{number % arguments.calendars}"
        folder.mkdir(parents=True, exist_ok=True)
        write_calendar(folder / f"event-{number}.ics", {zone}, lines)
    (arguments.out / "single").mkdir(parents=True, exist_ok=True)
    for number, (lines, zones) in enumerate(calendars):
        write_calendar(arguments.out / "single" / f"calendar{number}.ics", zones, lines)
    manifest = {"parameters": {"base": f"{arguments.base:%Y-%m-%dT%H:%M:%SZ}", "days": WINDOW_DAYS}}
    (arguments.out / "manifest.json").write_text(json.dumps(manifest, indent=1) + "\n")


if __name__ == "__main__":
    main()
