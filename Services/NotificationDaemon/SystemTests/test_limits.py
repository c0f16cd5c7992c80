"""Masses of alarms and callers, too little memory, too few handles: new work is refused, what is armed
fires."""

import os
import threading
import time


from tinkra_world import CallRefused, NoAnswer
from tinkra_world.client import NotificationCentre
from tinkra_world.namespaces import SmallDisk
from tinkra_world.parallel import fewer_when_sanitized
from tinkra_world.world import sanitized
from tinkra_world.processes import settle

HOUR, DAY = 3600, 86400
LIMITS = "org.freedesktop.DBus.Error.LimitsExceeded"
MOST = 50_000
#: A sanitizer looks at memory through pipes.
SANITIZER_HANDLES = 4 if sanitized() else 0


def seconds(work):
    begin = time.monotonic()
    work()
    return time.monotonic() - begin


def cpu_seconds(daemon, work):
    """What the work costs the daemon."""

    def used():
        with open(f"/proc/{daemon.pid}/stat", encoding="ascii") as file:
            fields = file.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    begin = used()
    work()
    return used() - begin


def resident_kib(pid, field="Pss"):
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        return next(int(line.split()[1]) for line in file if line.startswith(field + ":"))


def fill(world, count):
    """Arms alarms as fast as the daemon takes them. One caller is slowed down after some twenty thousand
    calls."""
    for first in range(0, count, 15_000):
        caller = world.client(timeout=60)
        caller.add_many(world.alarm(HOUR + number) for number in range(first, min(first + 15_000, count)))


def test_fifty_thousand_alarms_are_kept_listed_and_fired_in_time_and_one_more_is_refused(world):
    slower = 10 if sanitized() else 1
    server = world.notification_server()
    disk = SmallDisk(world, "300m")  # in memory, because the time of so many syncs is another test's matter
    daemon = world.daemon().start(prefix=disk.prefix)
    client = world.client(timeout=60)
    kept = world.alarm(HOUR)
    client.add(kept)
    filling = seconds(lambda: fill(world, MOST - 3))
    daemon.stop()
    start = seconds(lambda: daemon.start(prefix=disk.prefix))
    listing = seconds(lambda: client.call_unread("PendingIdentifiers"))
    # Whole requests take longer to pass the bus and to be read here than to be given out.
    listing_whole = cpu_seconds(daemon, lambda: client.call_unread("Pending"))
    arming = min(seconds(lambda: client.add(kept)) for _ in range(20))
    for _ in range(2):
        client.add(world.alarm(4))
    resident = resident_kib(daemon.pid) / 1024
    print(
        f"{MOST} alarms: armed in {filling:.1f} s, start {start:.2f} s, identifiers {listing:.2f} s, "
        f"requests {listing_whole:.2f} s, one more {arming * 1000:.1f} ms, {resident:.0f} MiB"
    )
    flood = NotificationCentre(world.bus.connect(), None, timeout=60)
    count = fewer_when_sanitized(MOST)
    refused = flood.add_many((world.alarm(DAY) for _ in range(count)), refusals_are_fine=True)
    flood.close()
    client.add(kept)  # replacing needs no room
    server.wait_for(2, 10)
    world.check_ledger(server)
    # Two fire in between and make room for two of the flood, if it still goes on by then.
    assert count - 2 <= refused <= count
    assert MOST - 2 <= len(client.pending_identifiers()) <= MOST
    assert start < 2 * slower and listing < 1 * slower and listing_whole < 1 * slower
    assert arming < 0.02 * slower
    assert sanitized() or resident < 100
    daemon.stop()


def test_killed_while_thousands_are_armed_it_keeps_each_that_was_acknowledged(world):
    count = fewer_when_sanitized(5000)
    daemon = world.daemon().start()
    client = world.client()
    killer = threading.Timer(0.4, daemon.kill)
    killer.start()
    armed = 0
    try:
        for number in range(count):
            client.add(world.alarm(HOUR + number))
            armed += 1
    except NoAnswer:
        pass
    killer.join()
    assert 0 < armed < count
    daemon.start()
    world.ledger.check_pending(client.pending())
    for number in range(count - armed):
        client.add(world.alarm(2 * HOUR + number))
    daemon.kill()
    daemon.start()
    world.ledger.check_pending(client.pending())


def test_a_flood_of_calls_delays_no_alarm(world):
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client()
    for number in range(4):
        client.add(world.alarm(2 + number))
    ended = threading.Event()
    counts = []

    def flood():
        mine = NotificationCentre(world.bus.connect(), None)
        calls = refused = 0
        while not ended.is_set():
            try:
                mine.pending_identifiers()
                calls += 1
            except CallRefused as refusal:
                assert refusal.name == LIMITS
                refused += 1
        counts.append((calls, refused))
        mine.close()

    floods = [threading.Thread(target=flood) for _ in range(10)]
    for thread in floods:
        thread.start()
    try:
        server.wait_for(4, 12)
    finally:
        ended.set()
        for thread in floods:
            thread.join()
    world.check_ledger(server)
    print(
        f"{sum(calls for calls, _ in counts)} lists answered, {sum(refused for _, refused in counts)} refused"
    )
    assert len(counts) == 10 and daemon.running


def test_a_flood_that_arms_delays_no_alarm(world):
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client(timeout=60)
    for number in range(4):
        client.add(world.alarm(1.5 + number))
    flood = NotificationCentre(world.bus.connect(), None, timeout=60)
    begin = world.clock.now()
    while world.clock.now() < begin + 4:
        flood.add_many((world.alarm(DAY) for _ in range(500)), refusals_are_fine=True)
    flood.close()
    server.wait_for(4)
    world.check_ledger(server)
    assert daemon.running


def test_ten_thousand_connections_that_come_and_go_delay_no_alarm_and_leave_nothing_behind(world):
    count = fewer_when_sanitized(10_000)
    at_once = 500
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client()
    client.add(world.alarm(HOUR))
    for number in range(5):
        client.add(world.alarm(2 + number))
    handles = daemon.handles()
    before = resident_kib(daemon.pid, "Private_Dirty")
    for first in range(0, count, at_once):
        passing = [
            NotificationCentre(world.bus.connect(), None) for _ in range(first, min(first + at_once, count))
        ]
        for caller in passing:
            assert len(caller.pending_identifiers()) >= 1
        for caller in passing:
            caller.close()
    server.wait_for(5, 10)
    world.check_ledger(server)
    settle(0.2)
    assert daemon.handles() == handles
    assert sanitized() or resident_kib(daemon.pid, "Private_Dirty") < before + 4096


def test_fires_with_hardly_any_file_handles(world):
    server = world.notification_server()
    daemon = world.daemon().start(limits=[f"--nofile={16 + SANITIZER_HANDLES}"])
    client = world.client()
    for number in range(3):
        client.add(world.alarm(1 + number / 2))
    server.wait_for(3)
    world.check_ledger(server)
    assert daemon.running


def test_fires_when_every_file_handle_is_taken_while_it_runs(world):
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client()
    client.add(world.alarm(2))
    daemon.limit(f"--nofile={daemon.handles() + SANITIZER_HANDLES}")
    try:
        client.add(world.alarm(2))
    except CallRefused as refusal:
        assert refusal.name == "org.freedesktop.DBus.Error.IOError"
    server.wait_for(1)
    settle(0.5)
    world.check_ledger(server)
    assert daemon.running


def test_memory_that_runs_out_means_refusals_and_no_crash(world):
    """Without a sanitizer, whose shadow memory needs terabytes of address space, the address space is
    limited; with one, only the daemon's own bounds hold it back."""
    server = world.notification_server()
    daemon = world.daemon().start(limits=[] if sanitized() else ["--as=200000000"])
    client = world.client(timeout=30)
    begin = world.clock.now()
    due = world.alarm(6)
    client.add(due)
    refused = None
    try:
        for number in range(fewer_when_sanitized(600)):
            client.add(world.alarm(HOUR + number, title="m" * 1_000_000))
    except CallRefused as refusal:
        refused = refusal
        assert refusal.name in ("org.freedesktop.DBus.Error.NoMemory", LIMITS)
    assert sanitized() or refused is not None
    assert daemon.running
    server.wait_for(1, 30)
    world.ledger.outage(begin, begin)
    world.check_ledger(server)
