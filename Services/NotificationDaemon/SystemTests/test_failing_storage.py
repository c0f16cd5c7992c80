"""Disks that are full or fail: an error to the caller, nothing half-done, and whatever is due is shown all
the same."""

import pytest
from scripted_caller import fire_everything, script

from tinkra_world import CallRefused, World
from tinkra_world import notification_server as servers
from tinkra_world.faults import failing, killing
from tinkra_world.namespaces import SmallDisk
from tinkra_world.parallel import in_parallel, sample
from tinkra_world.processes import wait_until

IO_ERROR = "org.freedesktop.DBus.Error.IOError"


def run_with_failures(world):
    """Makes the scripted calls; counts those that were refused. Refusals must say that storing failed."""
    client = world.client()
    refused = 0
    for call in script(world):
        try:
            call(client)
        except CallRefused as refusal:
            assert refusal.name == IO_ERROR, refusal
            refused += 1
    return refused


def fail_at(call, error, when):
    """One run with failing calls, then a kill and a run without. Returns how many calls were refused."""
    with World() as world:
        server = world.notification_server()
        daemon = world.daemon().start(tracing=failing(call, error, when))
        refused = run_with_failures(world)
        client = world.client()
        assert client.status()["inMemory"] is False
        world.ledger.check_pending(client.pending())
        daemon.kill()
        if str(when).endswith("+"):
            # Nothing can be taken back on a disk that fails for good, so what was refused may be found again.
            world.ledger.take_refusals_for_unknown()
        daemon.start()
        world.ledger.check_pending(client.pending())
        fire_everything(world, daemon, server)
        return refused


@pytest.mark.parametrize(
    "call, error",
    [
        ("pwrite64", "ENOSPC"),
        ("pwrite64", "EIO"),
        ("fdatasync", "EIO"),
        ("fsync", "EIO"),
        ("unlink", "EIO"),
        ("rename", "EIO"),
    ],
)
def test_one_failing_call_costs_nothing_that_was_acknowledged(call, error):
    numbers = sample(80, first=20, last=1, between=4)
    refused = in_parallel(lambda number: fail_at(call, error, number), numbers)
    # A single failure is made good for, so that callers hardly ever hear of it.
    assert sum(refused) <= len(numbers) / 4


@pytest.mark.parametrize("call, error, first", [("pwrite64", "ENOSPC", 20), ("fdatasync", "EIO", 10)])
def test_a_disk_that_fails_for_good_loses_nothing_that_was_acknowledged(call, error, first):
    refused = in_parallel(lambda number: fail_at(call, error, f"{number}+"), range(first, first + 21, 10))
    assert min(refused) > 0


def test_a_disk_that_fails_from_the_beginning_is_reported_and_alarms_ring_all_the_same(world):
    server = world.notification_server()
    world.daemon().start(tracing=failing("pwrite64", "EIO", "1+"))
    client = world.client()
    assert client.status()["inMemory"] is True and client.status()["inMemoryReason"]
    client.add(world.alarm(1))
    server.wait_for(1)
    world.check_ledger(server)


def test_what_was_armed_before_fires_on_a_disk_that_was_full_at_the_start(world):
    disk = SmallDisk(world, "256k")
    daemon = world.daemon().start(prefix=disk.prefix)
    client = world.client()
    for number in range(5):
        client.add(world.alarm(3600 + number))
    daemon.kill()
    disk.fill()
    server = world.notification_server()
    daemon.start(prefix=disk.prefix)
    world.ledger.check_pending(client.pending())
    fire_everything(world, daemon, server)
    daemon.stop()


def test_arming_on_a_full_disk_is_an_error_and_works_again_when_there_is_room(world):
    server = world.notification_server()
    disk = SmallDisk(world, "64k")
    daemon = world.daemon().start(prefix=disk.prefix)
    client = world.client()
    refused = None
    armed = 0
    while refused is None:
        alarm = world.alarm(3600, title="x" * 200 + str(armed))
        try:
            client.add(alarm)
            armed += 1
        except CallRefused as error:
            refused = error
        assert armed < 2000, "a disk of 64 KiB was never full"
    assert refused.name == IO_ERROR and armed > 0
    world.ledger.check_pending(client.pending())
    for identifier in list(world.ledger.possible())[: armed // 2]:
        try:
            client.cancel(identifier)
        except CallRefused:
            break
    disk.grow("1m")
    client.add(alarm)
    daemon.kill()
    daemon.start(prefix=disk.prefix)
    world.ledger.check_pending(client.pending())
    fire_everything(world, daemon, server)
    daemon.stop()


def test_a_disk_filled_by_others_does_not_stop_what_is_due(world):
    server = world.notification_server()
    disk = SmallDisk(world, "128k")
    daemon = world.daemon().start(prefix=disk.prefix)
    client = world.client()
    for number in range(5):
        client.add(world.alarm(3600 + number))
    disk.fill()
    with pytest.raises(CallRefused, match=IO_ERROR):
        for _ in range(100):
            client.add(world.alarm(7200, title="y" * 4000))
    fire_everything(world, daemon, server)
    daemon.kill()
    daemon.start(prefix=disk.prefix)
    world.check_ledger(server)
    daemon.stop()


@pytest.mark.parametrize("call, error", [("pwrite64", "ENOSPC"), ("pwrite64", "EIO"), ("fdatasync", "EIO")])
def test_a_notification_is_shown_although_that_cannot_be_recorded(world, call, error):
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client()
    alarms = [world.alarm(3600 + number) for number in range(3)]
    for alarm in alarms:
        client.add(alarm)
    daemon.kill()
    begin = world.clock.now()
    world.clock.step(3700)
    daemon.start(wait=False, tracing=failing(call, error, "1+"))
    server.wait_for(3)
    world.ledger.outage(begin, world.clock.now())
    daemon.kill()
    restart = world.clock.now()
    daemon.start()
    world.check_ledger(server)
    assert world.clock.now() - restart < 60
    assert all(len([shown for shown in server.shown if shown.body == alarm.title]) <= 2 for alarm in alarms)


@pytest.mark.parametrize("number", range(1, 11))
def test_a_failed_sync_of_a_file_is_never_trusted_again(world, number):
    """The pages of a failed sync count as clean afterwards, so that a second sync of them proves nothing:
    what is acknowledged must have been written again, to another file."""
    log = world.root / "trace"
    daemon = world.daemon().start(
        tracing=[
            "--seccomp-bpf",
            "-y",
            "-o",
            str(log),
            "-e",
            "trace=pwrite64,fdatasync",
            "-e",
            f"inject=fdatasync:error=EIO:when={number}",
        ]
    )
    run_with_failures(world)
    daemon.kill()
    calls = log.read_text().splitlines()
    (failed,) = [index for index, line in enumerate(calls) if "(INJECTED)" in line]
    file = calls[failed].partition("<")[2].partition(">")[0]
    later = [line for line in calls[failed + 1 :] if f"<{file}>" in line]
    # A draft is thrown away whole, and a folder has no pages that could be lost.
    if not file.endswith(".draft") and file != str(world.store.parent):
        assert not later or "pwrite64" in later[0], f"after a failed sync of {file} came {later[0]}"
    daemon.start()
    world.ledger.check_pending(world.client().pending())


def test_a_kill_between_showing_and_recording_repeats_it_once(world):
    server = world.notification_server(mode=servers.HOLD)
    daemon = world.daemon().start()
    client = world.client()
    client.add(world.alarm(1))
    server.wait_for(1)
    daemon.suspend()
    server.release()
    daemon.kill()
    server.set(servers.NORMAL)
    daemon.start()
    server.wait_for(2)
    first, second = server.shown
    assert (first.summary, first.body) == (second.summary, second.body)
    wait_until(lambda: client.status()["due"] == 0, 5, "the second answer to arrive")
    daemon.stop()
    daemon.start()
    client.pending_identifiers()
    world.check_ledger(server)
    assert len(server.shown) == 2


def test_a_kill_at_any_write_while_firing_shows_everything():
    def run(number):
        with World() as world:
            server = world.notification_server()
            daemon = world.daemon().start()
            client = world.client()
            for index in range(5):
                client.add(world.alarm(3600 + index))
            daemon.kill()
            begin = world.clock.now()
            world.clock.step(3700)
            daemon.start(
                wait=False,
                tracing=killing("pwrite64", number),
            )
            wait_until(lambda: not daemon.running or len(server.shown) >= 5, 20, "the kill or the end")
            daemon.kill()
            daemon.start()
            world.ledger.outage(begin, world.clock.now())
            world.check_ledger(server)

    in_parallel(run, sample(40, first=30, last=2, between=2))
