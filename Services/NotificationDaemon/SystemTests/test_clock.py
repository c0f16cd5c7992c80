"""Clocks that jump, stand still or are wrong, and calendars with odd days: each alarm at its wall-clock
second."""

import math
from datetime import datetime, timezone
from zoneinfo import ZoneInfo

import pytest
from gi.repository import GLib

from tinkra_world import CallRefused, World
from tinkra_world.clock import real_time_timers
from tinkra_world.parallel import in_parallel
from tinkra_world.processes import settle, wait_until

HOUR, DAY = 3600, 86400
TFD_TIMER_ABSTIME, TFD_TIMER_CANCEL_ON_SET = 1, 2


def utc(*fields) -> float:
    return datetime(*fields, tzinfo=timezone.utc).timestamp()


def started(world):
    """A server, a running daemon and a client."""
    return world.notification_server(), world.daemon().start(), world.client()


def step_over(world, daemon, seconds, tell=True):
    """Sets the clock forward; alarms in between have been in an outage until now."""
    begin = world.clock.now()
    world.clock.step(seconds, tell=[daemon.pid] if tell else [])
    world.ledger.outage(begin, world.clock.now())


def test_a_clock_set_forward_over_an_alarm_shows_it_at_once(world):
    server, daemon, client = started(world)
    client.add(world.alarm(HOUR))
    client.add(world.alarm(2 * HOUR))
    step_over(world, daemon, HOUR + 60)
    server.wait_for(1)
    world.check_ledger(server)


def test_a_clock_set_back_after_arming_delays_the_alarm_to_its_wall_clock_time(world):
    server, daemon, client = started(world)
    client.add(world.alarm(2))
    world.clock.step(-HOUR, tell=[daemon.pid])
    settle(3)
    assert server.calls == []
    world.clock.step(HOUR, tell=[daemon.pid])
    world.ledger.outage(world.clock.now() - 4, world.clock.now())
    world.check_ledger(server)


@pytest.mark.parametrize("restart", [False, True])
def test_a_clock_set_back_after_firing_does_not_repeat_the_alarm(world, restart):
    server, daemon, client = started(world)
    client.add(world.alarm(1))
    server.wait_for(1)
    wait_until(lambda: client.status()["due"] == 0, 5, "the showing to be recorded")
    world.clock.step(-HOUR, tell=[daemon.pid])
    if restart:
        daemon.stop()
        daemon.start()
    assert client.pending_identifiers() == []
    world.clock.step(HOUR + 5, tell=[daemon.pid])
    settle(1.5)
    assert len(server.calls) == 1


def waits_for_the_tick(scenario):
    """Runs in which nothing tells the daemon of the change, so that only its own regular look at the clock
    can."""
    with World() as world:
        if scenario == "only a resume without a suspend":
            logind = world.mock_system_service("logind")
        server, daemon, client = started(world)
        client.add(world.alarm(HOUR))
        if scenario == "stepped, and nobody said so":
            world.clock.step(HOUR + 10)
        else:
            daemon.suspend()
            world.clock.sleep(HOUR + 10)
            daemon.resume()
        if scenario == "only a resume without a suspend":
            emit_prepare_for_sleep(logind, False)
            server.wait_for(1, 1.5)
        else:
            server.wait_for(1, 31.5)


def test_a_change_of_the_clock_that_nobody_tells_of_is_noticed_within_half_a_minute():
    in_parallel(
        waits_for_the_tick,
        ["stepped, and nobody said so", "suspended, and nobody said so", "only a resume without a suspend"],
    )


def test_asks_the_kernel_to_be_told_when_the_clock_is_set(world):
    """That the kernel does tell is not tried: setting the clock sets it for everybody on the machine, and is
    allowed to nobody in a container (CAP_SYS_TIME counts in the first user namespace only, and a time
    namespace moves the monotonic and the boot clock alone). The other tests tell the daemon in the kernel's
    place."""
    _, daemon, client = started(world)
    client.add(world.alarm(HOUR))
    asked = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET
    wait_until(lambda: real_time_timers(daemon.pid), 3, "the timer")
    assert [int(timer["settime flags"], 8) for timer in real_time_timers(daemon.pid).values()] == [asked]


def emit_prepare_for_sleep(connection, before):
    connection.call(
        "org.freedesktop.login1",
        "/org/freedesktop/login1",
        "org.freedesktop.DBus.Mock",
        "EmitSignal",
        GLib.Variant(
            "(sssav)", ("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [GLib.Variant("b", before)])
        ),
    )


@pytest.mark.parametrize("seconds", [120, 600])
def test_an_alarm_that_fell_into_a_suspend_is_shown_at_the_resume(world, seconds):
    logind = world.mock_system_service("logind")
    server, daemon, client = started(world)
    client.add(world.alarm(30, lead=300))
    emit_prepare_for_sleep(logind, True)
    daemon.suspend()
    begin = world.clock.now()
    world.clock.sleep(seconds)
    daemon.resume()
    emit_prepare_for_sleep(logind, False)
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(1, 1.5)
    world.check_ledger(server)


def test_works_without_a_system_bus(world):
    server, daemon, client = started(world)
    client.add(world.alarm(1))
    world.check_ledger(server, until=world.clock.now() + 1, within=3)
    assert daemon.running


@pytest.mark.parametrize("days", [24, 25, 30, 400])
def test_an_alarm_days_ahead_fires_in_its_second(world, days):
    server, daemon, client = started(world)
    client.add(world.alarm(days * DAY))
    world.clock.step(days * DAY - 2, tell=[daemon.pid])
    assert len(client.pending_identifiers()) == 1
    server.wait_for(1, 5)
    world.ledger.check(server.shown, clock=world.clock, allowance=world.machine.lateness())


def test_a_process_that_stood_still_catches_up_in_order(world):
    server, daemon, client = started(world)
    start = world.clock.now() + 5
    for number in reversed(range(10)):
        client.add(world.alarm(start + number - world.clock.now()))
    daemon.suspend()
    begin = world.clock.now()
    world.clock.step(60)
    settle(1)
    daemon.resume()
    client.pending_identifiers()
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(10)
    world.check_ledger(server)
    settle(1)
    assert [shown.body for shown in server.calls] == [f"Meeting {number}" for number in range(10, 0, -1)]


def test_a_boot_with_a_clock_at_1970_drops_nothing(world):
    client = world.client()
    daemon = world.daemon().start()
    client.add(world.alarm(HOUR))
    daemon.stop()
    real = world.clock.now()
    world.clock.set(10)
    server = world.notification_server()
    daemon.start()
    assert len(client.pending_identifiers()) == 1
    settle(0.5)
    assert server.calls == []
    world.clock.set(real + HOUR - 1, tell=[daemon.pid])
    server.wait_for(1)
    world.check_ledger(server)


def test_a_boot_with_a_clock_at_2098_gives_back_what_lies_ahead_once_it_is_set_right(world):
    client = world.client()
    daemon = world.daemon().start()
    client.add(world.alarm(HOUR))
    daemon.stop()
    real = world.clock.now()
    world.clock.set(utc(2098, 5, 1))
    server = world.notification_server()
    daemon.start()
    assert client.pending_identifiers() == []
    settle(0.5)
    assert server.calls == []
    world.clock.set(real + 10, tell=[daemon.pid])
    wait_until(lambda: len(client.pending_identifiers()) == 1, 5, "the alarm to be pending again")
    assert client.missed() == []
    world.clock.step(HOUR - 11, tell=[daemon.pid])
    server.wait_for(1)
    world.check_ledger(server)


AMBIGUOUS = [
    ("Europe/Zurich", (2027, 10, 31, 2, 30, 0)),
    ("America/New_York", (2027, 11, 7, 1, 30, 0)),
    ("Australia/Lord_Howe", (2027, 4, 4, 1, 45, 0)),
    ("Africa/Casablanca", (2023, 3, 19, 2, 30, 0)),
    ("Pacific/Apia", (2012, 4, 1, 3, 30, 0)),
]
SKIPPED = [
    ("Europe/Zurich", (2027, 3, 28, 2, 30, 0)),
    ("America/New_York", (2027, 3, 14, 2, 30, 0)),
    ("Australia/Lord_Howe", (2027, 10, 3, 2, 15, 0)),
    ("Africa/Casablanca", (2023, 4, 23, 2, 30, 0)),
    ("Pacific/Apia", (2011, 12, 30, 12, 0, 0)),
]


def fires_once_at_its_instant(case):
    (zone, components), fold, kind = case
    fire = datetime(*components, tzinfo=ZoneInfo(zone), fold=fold).timestamp()
    both = [datetime(*components, tzinfo=ZoneInfo(zone), fold=either).timestamp() for either in (0, 1)]
    assert both[0] != both[1], f"{components} is no special time in {zone}"
    if kind == "skipped":
        fire = max(both)  # the reading with the offset in force before, which moves it forward
    with World(zone=zone) as world:
        world.clock.set(min(both) - 2.5)
        server, daemon, client = started(world)
        alarm = world.alarm(0)
        client.ledger = None
        client.add(
            alarm,
            components=GLib.Variant("(iiiiii)", components),
            userInfo=GLib.Variant(
                "a{sv}", {"fireDate": GLib.Variant("d", fire), "meetingStart": GLib.Variant("d", fire + 300)}
            ),
        )
        if fire > min(both):
            settle(4)
            assert server.calls == [], "shown at the other instant"
            world.clock.set(fire - 1, tell=[daemon.pid])
        (shown,) = server.wait_for(1, 5)
        late = world.clock.at(shown.monotonic, shown.wall) - fire
        assert 0 <= late + 0.002 and late <= 1 + world.machine.lateness(), late
        world.clock.step(4 * HOUR, tell=[daemon.pid])
        settle(1)
        assert len(server.calls) == 1


def test_a_time_that_occurs_twice_fires_once_at_the_instant_that_was_meant():
    in_parallel(fires_once_at_its_instant, [(case, fold, "twice") for case in AMBIGUOUS for fold in (0, 1)])


def test_a_time_that_is_skipped_fires_once():
    in_parallel(fires_once_at_its_instant, [(case, 0, "skipped") for case in SKIPPED])


MOMENTS = {
    "a day in UTC ends": utc(2027, 6, 1),
    "leap day": utc(2028, 2, 29),
    "a year ends": utc(2030, 1, 1),
    "32 bits are over": utc(2038, 1, 19, 3, 14, 8),
    "unsigned 32 bits are over": utc(2106, 2, 7, 6, 28, 16),
}


def fires_at(moment):
    with World() as world:
        world.clock.set(MOMENTS[moment] - 1.5)
        server, _, client = started(world)
        client.add(world.alarm(MOMENTS[moment] - world.clock.now()))
        server.wait_for(1, 5)
        world.check_ledger(server)


def test_days_and_years_that_end_make_no_difference():
    in_parallel(fires_at, MOMENTS)


ODD_TIMES = {
    "a fraction": None,
    "negative": -1.0,
    "not a number": math.nan,
    "infinite": math.inf,
    "negative infinite": -math.inf,
    "2^63": 2.0**63,
    "-2^63": -(2.0**63),
    "1e308": 1e308,
    "tiny": 5e-324,
}


@pytest.mark.parametrize("name", ODD_TIMES)
def test_odd_fire_dates_are_refused_or_tamed(world, name):
    server, daemon, client = started(world)
    alarm = world.alarm(2)
    value = alarm.fire if ODD_TIMES[name] is None else ODD_TIMES[name]
    client.ledger = None
    accepted = True
    try:
        client.add(
            alarm,
            userInfo=GLib.Variant(
                "a{sv}", {"fireDate": GLib.Variant("d", value), "meetingStart": GLib.Variant("d", value)}
            ),
        )
    except CallRefused as refusal:
        assert refusal.name == "org.freedesktop.DBus.Error.InvalidArgs"
        accepted = False
    client.pending()
    client.ledger = world.ledger
    later = world.alarm(2)
    client.add(later)
    server.wait_for(1 + accepted, 5)
    daemon.kill()
    daemon.start()
    client.pending()


def test_a_fraction_of_a_second_is_cut_off(world):
    server, _, client = started(world)
    alarm = world.alarm(0)
    alarm = world.alarm(3 - world.clock.now() % 1 + 0.9)
    assert alarm.fire % 1 > 0.85
    client.add(alarm)
    (shown,) = server.wait_for(1, 6)
    assert 0 <= shown.wall - alarm.second + 0.002 < 0.8 + world.machine.lateness()


def test_an_alarm_in_the_current_second_is_shown_at_once(world):
    server, _, client = started(world)
    wait_until(lambda: 0.3 < world.clock.now() % 1 < 0.5, 2, "the middle of a second", every=0.01)
    client.add(world.alarm(0))
    assert len(server.wait_for(1, 1)) == 1


def test_an_alarm_in_the_past_never_fires_and_stays_pending_until_cancelled(world):
    server, daemon, client = started(world)
    past = world.alarm(-5)
    client.ledger = None
    client.add(past)
    settle(1)
    assert client.pending_identifiers() == [past.identifier]
    daemon.kill()
    daemon.start()
    settle(1)
    assert client.pending_identifiers() == [past.identifier] and server.calls == []
    client.cancel(past.identifier)
    assert client.pending_identifiers() == []
    daemon.kill()
    daemon.start()
    assert client.pending_identifiers() == []


def test_the_user_is_told_before_the_last_alarm_when_the_application_never_comes_back(world):
    """The application arms a month ahead; after that nothing would ring any more."""
    server, daemon, client = started(world)
    client.add(world.alarm(30 * DAY))
    for _ in range(24 * 2):
        world.clock.sleep(DAY / 2, tell=[daemon.pid])
        client.missed()
    settle(0.3)
    assert server.calls == []
    # A clock that was just set far ahead proves nothing; one that has gone on evenly for an hour does.
    for _ in range(5):
        world.clock.sleep(DAY / 2, tell=[daemon.pid])
        for _ in range(3):
            world.clock.sleep(HOUR / 2 - 10, tell=[daemon.pid])
            settle(0.05)
    (notice,) = server.wait_for(1)
    assert notice.body != "Meeting 1" and "Calendar Murkel" in notice.summary + notice.body
    for _ in range(3):
        world.clock.sleep(HOUR / 2, tell=[daemon.pid])
        settle(0.05)
    assert len(server.calls) == 1
