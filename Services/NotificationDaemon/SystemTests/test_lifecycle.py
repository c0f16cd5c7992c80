"""Starting, ending, crashing, upgrading: whatever became due in between is caught up with."""

import os
import shutil
import signal
import subprocess
import time

import pytest
from gi.repository import GLib

from tinkra_world import NoAnswer
from tinkra_world.bus import MessageBus
from tinkra_world.client import NAME
from tinkra_world.parallel import fewer_when_sanitized
from tinkra_world.processes import settle, wait_until

MINUTE, HOUR, DAY = 60, 3600, 86400


def test_is_started_by_a_call(world):
    server = world.notification_server()
    world.let_bus_start_daemon()
    client = world.client(start=True)
    client.add(world.alarm(1))
    server.wait_for(1)
    world.check_ledger(server)


def test_of_twenty_started_at_once_one_stays_and_arms_for_all(world):
    server = world.notification_server()
    daemons = [world.daemon() for _ in range(20)]
    for daemon in daemons:
        daemon.start(wait=False)
    wait_until(lambda: daemons[0].owns_name, 10, "one to take the name")
    clients = [world.client() for _ in daemons]
    for client in clients:
        client.add(world.alarm(3))
    wait_until(lambda: sum(daemon.running for daemon in daemons) == 1, 10, "all but one to leave")
    # A second one is no fault: a service manager must not start it again.
    assert {daemon.wait() for daemon in daemons if not daemon.running} == {0}
    server.wait_for(20, 10)
    world.check_ledger(server)
    assert len(server.shown) == 20


def test_a_second_one_on_another_bus_leaves_the_store_alone(world):
    """A file lock, because a second session of the same user has a bus of its own."""
    server = world.notification_server()
    first = world.daemon().start()
    client = world.client()
    client.add(world.alarm(2))
    other_bus = world.keep(MessageBus(world.root / "other-bus", world.environment).start())
    second = world.daemon()
    second.start(environment={"DBUS_SESSION_BUS_ADDRESS": other_bus.address}, wait=False)
    settle(1)
    client.add(world.alarm(2))
    server.wait_for(2)
    settle(0.5)
    assert first.running and len(server.shown) == 2
    first.kill()
    first.start()
    assert client.pending_identifiers() == []
    assert client.status()["storeWasReset"] is False


def test_an_orderly_end_leaves_everything_to_the_next_session(world):
    daemon = world.daemon().start()
    client = world.client()
    client.add(world.alarm(1))
    client.add(world.alarm(HOUR))
    assert daemon.stop() == 0
    begin = world.clock.now()
    settle(1.2)
    world.bus.kill()
    world.bus.start()
    server = world.notification_server()
    next_session = world.daemon().start()
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(1)
    world.check_ledger(server)
    assert len(world.client().pending_identifiers()) == 1
    assert next_session.stop() == 0


def test_leaves_with_a_failure_when_the_session_bus_dies_and_catches_up_on_the_next(world):
    daemon = world.daemon().start()
    client = world.client()
    client.add(world.alarm(2))
    world.bus.kill()
    begin = world.clock.now()
    assert daemon.wait() != 0
    settle(2)
    world.bus.start()
    server = world.notification_server()
    world.daemon().start()
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(1)
    world.check_ledger(server)


def test_ends_in_order_while_a_server_hangs(world):
    world.notification_server(mode="hang")
    daemon = world.daemon().start()
    world.client().add(world.alarm(1))
    settle(1.5)
    assert daemon.stop(5) == 0


@pytest.mark.parametrize(
    "age, is_shown",
    [
        (1, True),
        (5 * MINUTE, True),
        (19 * MINUTE, True),
        (21 * MINUTE, False),
        (HOUR, False),
        (2 * DAY, False),
    ],
)
def test_shows_what_came_due_while_it_was_off_unless_its_meeting_is_long_past(world, age, is_shown):
    daemon = world.daemon().start()
    client = world.client()
    alarm = world.alarm(30, lead=5 * MINUTE)
    client.add(alarm)
    daemon.stop()
    world.clock.set(alarm.fire + age)
    server = world.notification_server()
    daemon.start()
    world.ledger.outage(alarm.fire - 30, world.clock.now())
    if is_shown:
        server.wait_for(1)
        assert client.missed() == []
    else:
        assert [request["identifier"] for request in client.missed()] == [alarm.identifier]
        settle(0.5)
        assert server.calls == []
    world.check_ledger(server, missed=[] if is_shown else [alarm.identifier])
    assert client.pending_identifiers() == []


def test_four_hundred_alarms_of_a_holiday_are_filed_and_the_recent_ones_shown(world):
    daemon = world.daemon().start()
    client = world.client()
    old = [world.alarm(MINUTE + number) for number in range(fewer_when_sanitized(400))]
    recent = [world.alarm(2 * DAY + number) for number in range(3)]
    for alarm in old + recent:
        client.add(alarm)
    daemon.stop()
    begin = world.clock.now()
    world.clock.step(2 * DAY + MINUTE)
    server = world.notification_server()
    daemon.start()
    world.ledger.outage(begin, world.clock.now())
    missed = [request["identifier"] for request in client.missed()]
    assert sorted(missed) == sorted(alarm.identifier for alarm in old)
    server.wait_for(3)
    world.check_ledger(server, missed)
    assert len(server.shown) == 3


def test_a_clock_set_back_returns_missed_alarms_that_lie_ahead(world):
    daemon = world.daemon().start()
    client = world.client()
    alarm = world.alarm(HOUR)
    client.add(alarm)
    world.clock.step(DAY, tell=[daemon.pid])
    wait_until(lambda: client.missed(), 3, "the alarm to be filed as missed")
    world.clock.step(-DAY, tell=[daemon.pid])
    wait_until(lambda: client.pending_identifiers() == [alarm.identifier], 3, "the alarm to be pending again")
    assert client.missed() == []


def test_killed_every_second_it_shows_everything_and_nothing_three_times(world):
    seconds = fewer_when_sanitized(60)
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client()
    for tenth in range(10, seconds * 10, 3):
        client.add(world.alarm(tenth / 10 + 1))
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        settle(1)
        daemon.restart_during_outage()
    settle(1.5)
    world.check_ledger(server)


def test_an_upgrade_in_place_loses_nothing_that_came_due_in_the_gap(world):
    program = world.root / "tinkra-notifierd"
    shutil.copy(world.program("tinkra-notifierd"), program)
    server = world.notification_server()
    daemon = world.daemon().start(program=program)
    client = world.client()
    client.add(world.alarm(2))
    client.add(world.alarm(5))
    fresh = world.root / "fresh"
    shutil.copy(program, fresh)
    os.replace(fresh, program)
    client.pending()
    assert daemon.stop() == 0
    begin = world.clock.now()
    settle(2.5)
    daemon.start(program=program)
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(2, 8)
    world.check_ledger(server)
    assert len(server.shown) == 2


@pytest.mark.parametrize("point", ["loading", "showing"])
def test_an_alarm_that_makes_it_crash_is_set_aside_and_the_others_go_on(world, point):
    daemon = world.daemon().start()
    client = world.client()
    alarms = [world.alarm(1) for _ in range(3)]
    for alarm in alarms:
        client.add(alarm)
    daemon.kill()
    settle(1.5)
    server = world.notification_server()
    bad = alarms[1]
    crash = {"TINKRA_TEST_CRASH_AT": f"{point}:{bad.identifier}"}
    starts = 0
    while True:
        daemon.start(environment=crash, wait=False)
        starts += 1
        settle(0.7)
        if daemon.running:
            break
        daemon.wait()
        assert starts < 4, "the daemon goes on dying of one alarm"
    assert client.status()["quarantined"] == [bad.identifier]
    bodies = [shown.body for shown in server.shown]
    assert {alarms[0].title, alarms[2].title} <= set(bodies) and bad.title not in bodies
    assert all(bodies.count(alarm.title) <= 2 for alarm in alarms)
    client.ledger = None
    client.add(world.alarm(1))
    wait_until(lambda: "Meeting 4" in [shown.body for shown in server.shown], 3, "the next alarm")


CRASH_POINTS = ["opening", "added", "offered", "answered", "recorded"]


@pytest.mark.parametrize("point", CRASH_POINTS)
def test_a_crash_at_any_named_point_loses_nothing(world, point):
    server = world.notification_server()
    daemon = world.daemon()
    client = world.client()
    if point != "opening":
        daemon.start(environment={"TINKRA_TEST_CRASH_AT": point})
        try:
            client.add(world.alarm(1))
        except NoAnswer:
            assert point == "added"
        begin = world.clock.now()
        daemon.wait()
    else:
        daemon.start()
        client.add(world.alarm(1))
        daemon.kill()
        begin = world.clock.now()
        daemon.start(environment={"TINKRA_TEST_CRASH_AT": point}, wait=False)
        daemon.wait()
    daemon.start()
    world.ledger.outage(begin, world.clock.now())
    settle(1.5)
    world.check_ledger(server)


def test_the_environment_of_a_caller_does_not_reach_it(world):
    world.let_bus_start_daemon()
    trap = world.root / "trap"
    trap.mkdir()
    for name in ("sh", "sqlite3", "notify-send", "xdg-open", "logger"):
        (trap / name).write_text(f"#!/bin/sh\ntouch {world.root}/fallen-into\n")
        (trap / name).chmod(0o755)
    hostile = world.environment | {
        "PATH": f"{trap}:/usr/bin:/bin",
        "QT_PLUGIN_PATH": str(trap),
        "LD_LIBRARY_PATH": str(trap),
        "SQLITE_TMPDIR": str(trap),
        "EVIL": "yes",
    }
    subprocess.run(
        [
            "gdbus",
            "call",
            "--session",
            "--dest",
            NAME,
            "--object-path",
            "/co/calendarmurkel/NotificationCenter",
            "--method",
            "co.calendarmurkel.NotificationCenter1.PendingIdentifiers",
        ],
        env=hostile,
        check=True,
        stdout=subprocess.DEVNULL,
    )
    connection = world.client().connection
    pid = connection.call(
        "org.freedesktop.DBus",
        "/org/freedesktop/DBus",
        "org.freedesktop.DBus",
        "GetConnectionUnixProcessID",
        GLib.Variant("(s)", (NAME,)),
    )[0]
    with open(f"/proc/{pid}/environ", "rb") as file:
        environment = file.read()
    assert b"EVIL" not in environment and str(trap).encode() not in environment
    assert not (world.root / "fallen-into").exists()


def test_ends_on_every_signal_that_asks_it_to(world):
    for sign in (signal.SIGTERM, signal.SIGINT):
        daemon = world.daemon().start()
        os.kill(daemon.pid, sign)
        assert daemon.wait() == 0


def test_a_closed_standard_error_does_not_end_it(world):
    server = world.notification_server()
    daemon = world.daemon().start(prefix=["sh", "-c", 'exec "$@" 2>&- >&- <&-', "sh"])
    client = world.client()
    client.add(world.alarm(1))
    server.wait_for(1)
    world.check_ledger(server)
    assert daemon.running
