"""The calendars in Cases/: a file NAME.ics and, in NAME.json, how to look at it and what must be seen."""

import json
import pathlib
from datetime import datetime

from oracle import occurrences, zone_named

FOLDER = pathlib.Path(__file__).resolve().parent / "Cases"


def names():
    return sorted(path.stem for path in FOLDER.glob("*.json"))


def load(name):
    return json.loads((FOLDER / f"{name}.json").read_text())


def calendar_file(name):
    return FOLDER / f"{name}.ics"


def instant(text):
    return datetime.strptime(text, "%Y-%m-%dT%H:%M:%SZ")


def written(utc):
    return utc and utc.strftime("%Y-%m-%dT%H:%M:%SZ")


def seen_by_the_oracle(data, case):
    """As the program's own list; `end` is null where no sensible end can be demanded."""
    found = occurrences(data, zone_named(case["viewer"]), instant(case["from"]), instant(case["to"]))
    return [
        {
            "start": written(item.start),
            "end": written(item.end),
            "allDay": item.all_day,
            "title": "Untitled meeting" if item.title is None else item.title,
        }
        for item in found
    ]
