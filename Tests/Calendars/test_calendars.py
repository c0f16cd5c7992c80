"""Whole calendars, in the manner of real exports, through the program."""

import json
import os
import pathlib
import subprocess

import pytest

import cases

PROGRAM = os.environ.get("TINKRA_PROGRAM") or str(pathlib.Path(os.environ["TINKRA_BUILD"]) / "App" / "CommandLine" / "tinkra")


def occurrences(name, case):
    """What the program prints, and its notices."""
    result = subprocess.run(
        [PROGRAM, "occurrences", str(cases.calendar_file(name)), "--json", "--from", case["from"], "--to", case["to"]],
        capture_output=True, timeout=20, env={**os.environ, "TZ": case["viewer"]})
    assert result.returncode == 0, result.stderr
    return json.loads(result.stdout), result.stderr.decode()


def comparable(items, expected):
    """Where no end is demanded, any that is not before the start will do."""
    free = {(item["start"], item["title"]) for item in expected if item["end"] is None}
    return [
        (item["start"], None if (item["start"], item["title"]) in free else item["end"], item["allDay"], item["title"])
        for item in items
    ]


@pytest.mark.parametrize("name", cases.names())
def test_calendar(name):
    case = cases.load(name)
    found, notices = occurrences(name, case)

    assert all(item["start"] <= item["end"] for item in found)
    assert [item["start"] for item in found] == sorted(item["start"] for item in found)
    assert len({item["id"] for item in found}) == len(found), "identifiers tell occurrences apart"
    if case.get("notice"):
        assert notices
    if case.get("bounded"):
        assert 1_000 < len(found) <= 10_001
        assert "meeting" in [item["title"] for item in found]
        return
    demanded = comparable(case["occurrences"], case["occurrences"])
    seen = comparable(found, case["occurrences"])
    if case.get("subset"):
        assert set(demanded) <= set(seen)
    else:
        assert sorted(seen, key=repr) == sorted(demanded, key=repr)


@pytest.mark.parametrize("name", [name for name in cases.names() if not cases.load(name).get("bounded")])
def test_the_committed_expectation_is_what_the_oracle_sees(name):
    case = cases.load(name)
    assert cases.seen_by_the_oracle(cases.calendar_file(name).read_bytes(), case) == case["occurrences"]
