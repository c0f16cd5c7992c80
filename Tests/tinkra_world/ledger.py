"""What callers were promised, and the check that the promise was kept whatever happened in between.

For each alarm that was acknowledged to the caller and not cancelled: it was shown once or twice, not before
its second, and not later than max(its second, the end of the outage) + 1 s, unless it was filed as missed
rightly; and nothing else was shown.
"""

import time
from collections import Counter
from dataclasses import dataclass, replace

MISSED_AFTER = 15 * 60  # seconds past the meeting's start after which an alarm is filed instead of shown
ALLOWED_LATENESS = 1.0


class LedgerViolation(AssertionError):
    pass


@dataclass(frozen=True)
class Entry:
    identifier: str
    alarm: object  # the alarm that was armed; None for a cancellation
    outcome: str  # "done", "refused" or "unknown"
    begin: float  # monotonic
    end: float


class Ledger:
    def __init__(self):
        self._entries = []
        self._outages = []

    def record(self, identifier, alarm, outcome, begin):
        self._entries.append(Entry(identifier, alarm, outcome, begin, time.monotonic()))

    def take_refusals_for_unknown(self):
        """After a fault under which a refusal cannot be kept either."""
        self._entries = [
            replace(entry, outcome="unknown") if entry.outcome == "refused" else entry
            for entry in self._entries
        ]

    def outage(self, begin: float, end: float):
        """From `begin` to `end`, on the clock of the daemon, nothing could be shown."""
        self._outages.append((begin, end))

    def possible(self, at: float | None = None) -> dict:
        """By identifier, what may be armed now: a list of alarms, with None when it may be absent. With `at`
        (monotonic), what might have been found by somebody who looked at that moment."""
        states = {}
        for entry in self._entries:
            if at is not None and entry.begin > at:
                continue
            before = states.get(entry.identifier, [None])
            done = entry.outcome == "done" and (at is None or entry.end <= at)
            if done:
                states[entry.identifier] = [entry.alarm]
            elif entry.outcome != "refused" or (at is not None and entry.end > at):
                states[entry.identifier] = before + [entry.alarm]
            else:
                states[entry.identifier] = before
        return states

    def check_pending(self, pending, at: float | None = None):
        """`pending` is the daemon's list of requests, while nothing is due."""
        found = {request["identifier"]: request for request in pending}
        states = self.possible(at)
        if len(found) != len(pending):
            raise LedgerViolation(f"listed twice: {Counter(request['identifier'] for request in pending)}")
        for identifier in found.keys() - states.keys():
            raise LedgerViolation(f"{identifier} is pending and was never armed")
        for identifier, alarms in states.items():
            request = found.get(identifier)
            if request is None:
                if None not in alarms:
                    raise LedgerViolation(f"{identifier} was acknowledged and is gone")
            elif not any(alarm and _is_request_of(alarm, request) for alarm in alarms):
                raise LedgerViolation(f"{identifier} is pending as {request}, possible were {alarms}")

    def check(
        self, shown, missed=(), clock=None, until=None, allowance: float = 0.0, at: float | None = None
    ):
        """`shown` are the accepted notifications, `missed` the identifiers filed as missed, both of the whole
        run. Alarms that are due after `until` (now, when left out) must not have been shown. `allowance` adds
        to the lateness what the machine itself was late."""
        when = {}
        for notification in shown:
            instant = clock.at(notification.monotonic, notification.wall) if clock else notification.wall
            when.setdefault(notification.body, []).append(instant)
        until = until if until is not None else (clock.now() if clock else time.time())
        states = self.possible(at)
        allowed = {alarm.title for alarms in states.values() for alarm in alarms if alarm}
        for title in when.keys() - allowed:
            raise LedgerViolation(f"'{title}' was shown and nobody wanted it")
        for identifier, alarms in states.items():
            self._check_one(identifier, alarms, when, identifier in missed, until, allowance)

    def _check_one(self, identifier, alarms, when, was_missed, until, allowance):
        seen = [alarm for alarm in alarms if alarm and alarm.title in when]
        for alarm in seen:
            times = when[alarm.title]
            if len(times) > 2:
                raise LedgerViolation(f"'{alarm.title}' was shown {len(times)} times")
            if min(times) < alarm.second - 0.002:
                raise LedgerViolation(f"'{alarm.title}' was shown {alarm.second - min(times):.3f} s early")
            late = min(times) - self._latest(alarm) - allowance
            if late > 0:
                raise LedgerViolation(f"'{alarm.title}' was shown {late:.3f} s too late")
        if seen:
            return
        for alarm in alarms:
            if alarm is None or alarm.second > until:
                return
            if was_missed and self._latest(alarm) - ALLOWED_LATENESS >= alarm.meeting_start + MISSED_AFTER:
                return
        raise LedgerViolation(
            f"{identifier} was acknowledged, was due and was not shown"
            + (", although its meeting is recent" if was_missed else "")
        )

    def _latest(self, alarm) -> float:
        bound = alarm.second
        for begin, end in sorted(self._outages):
            if begin <= bound + ALLOWED_LATENESS and end > bound:
                bound = end
        return bound + ALLOWED_LATENESS


def _is_request_of(alarm, request) -> bool:
    return (
        request["body"] == alarm.title
        and tuple(request["components"]) == alarm.components()
        and request["userInfo"]["fireDate"] == alarm.fire
        and request["userInfo"]["meetingStart"] == alarm.meeting_start
    )
