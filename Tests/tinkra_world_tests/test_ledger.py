"""The ledger must object to every way of breaking a promise: each test breaks it in one way."""

import time
from dataclasses import replace

import pytest

from tinkra_world import Alarm, Ledger, LedgerViolation
from tinkra_world.notification_server import Shown

NOON = 1_700_000_000.25
ALARM = Alarm("a", "Stand-up", NOON, NOON + 300)


def promised(outcome="done", alarm=ALARM):
    ledger = Ledger()
    ledger.record("a", alarm, outcome, time.monotonic())
    return ledger


def shown(at, body="Stand-up"):
    return Shown(
        summary="", body=body, accepted=True, wall=at, monotonic=time.monotonic(), server_id=1, replaces=0
    )


def check(ledger, *notifications, missed=(), until=NOON + 3600):
    ledger.check(notifications, missed, until=until)


def test_accepts_an_alarm_shown_in_its_second():
    check(promised(), shown(NOON - 0.2))


def test_accepts_an_alarm_shown_twice():
    check(promised(), shown(NOON), shown(NOON + 40))


def test_objects_to_an_alarm_shown_three_times():
    with pytest.raises(LedgerViolation, match="3 times"):
        check(promised(), shown(NOON), shown(NOON), shown(NOON))


def test_objects_to_an_early_alarm():
    with pytest.raises(LedgerViolation, match="early"):
        check(promised(), shown(NOON - 0.4))


def test_objects_to_a_late_alarm():
    with pytest.raises(LedgerViolation, match="too late"):
        check(promised(), shown(NOON + 1))


def test_measures_lateness_from_the_end_of_the_outage():
    ledger = promised()
    ledger.outage(NOON - 10, NOON + 100)
    check(ledger, shown(NOON + 100.9))
    with pytest.raises(LedgerViolation, match="too late"):
        check(ledger, shown(NOON + 101.1))


def test_an_outage_long_before_excuses_nothing():
    ledger = promised()
    ledger.outage(NOON - 100, NOON - 50)
    with pytest.raises(LedgerViolation, match="too late"):
        check(ledger, shown(NOON + 5))


def test_objects_to_an_alarm_that_was_due_and_not_shown():
    with pytest.raises(LedgerViolation, match="was not shown"):
        check(promised())


def test_waits_for_an_alarm_that_is_not_due():
    check(promised(), until=NOON - 1)


def test_accepts_what_was_filed_as_missed_long_after_its_meeting():
    ledger = promised()
    ledger.outage(NOON - 10, NOON + 300 + 901)
    check(ledger, missed=("a",))


def test_objects_to_missing_a_recent_meeting():
    ledger = promised()
    ledger.outage(NOON - 10, NOON + 300 + 890)
    with pytest.raises(LedgerViolation, match="recent"):
        check(ledger, missed=("a",))


def test_objects_to_a_cancelled_alarm_that_is_shown():
    ledger = promised()
    ledger.record("a", None, "done", time.monotonic())
    with pytest.raises(LedgerViolation, match="nobody wanted"):
        check(ledger, shown(NOON))


def test_accepts_either_outcome_of_a_call_without_answer():
    check(promised("unknown"))
    check(promised("unknown"), shown(NOON))


def test_a_refused_replacement_leaves_the_alarm_before_it():
    ledger = promised()
    ledger.record("a", replace(ALARM, title="Moved"), "refused", time.monotonic())
    check(ledger, shown(NOON))
    with pytest.raises(LedgerViolation, match="nobody wanted"):
        check(ledger, shown(NOON, "Moved"))


def test_knows_what_was_promised_at_an_earlier_moment():
    ledger = promised()
    between = time.monotonic()
    ledger.record("a", None, "done", time.monotonic())
    assert ledger.possible(between) == {"a": [ALARM]}
    assert ledger.possible() == {"a": [None]}
