"""Whatever has become of the store: the daemon starts within two seconds, says what it lost, and arms
anew."""

import os
import random
import sqlite3
import time

import pytest

from tinkra_world import World
from tinkra_world.faults import killing
from tinkra_world.namespaces import MountNamespace
from tinkra_world.parallel import fewer_when_sanitized, in_parallel
from tinkra_world.processes import wait_until

ALARMS = 40
HOUR = 3600
START_SECONDS = 2.0 * (5 if os.environ.get("TINKRA_SANITIZED") == "1" else 1)


def make_store(leave="stop"):
    """The alarms of a good store and its files by name, after an orderly end or a kill."""
    with World() as world:
        daemon = world.daemon().start()
        client = world.client()
        alarms = [world.alarm(HOUR * 24 + number) for number in range(ALARMS)]
        for alarm in alarms:
            client.add(alarm)
        getattr(daemon, leave)()
        return alarms, {
            path.name: path.read_bytes()
            for path in world.store.parent.iterdir()
            if path.name.startswith(world.store.name)
        }


@pytest.fixture(scope="module")
def good():
    return make_store()


@pytest.fixture(scope="module")
def good_after_kill():
    return make_store("kill")


def start_on(world, files):
    world.store.parent.mkdir(mode=0o700, exist_ok=True)
    for name, content in files.items():
        (world.store.parent / name).write_bytes(content)
    begin = time.monotonic()
    daemon = world.daemon().start()
    assert time.monotonic() - begin < START_SECONDS + world.machine.lateness()
    return daemon


def survivors(alarms, files, loss_is_visible=True):
    """Starts on the files. The number of alarms that are left, each of them whole; checks that a loss is
    reported and that everything can be armed anew."""
    with World() as world:
        start_on(world, files)
        client = world.client()
        pending = {request["identifier"]: request for request in client.pending()}
        status = client.status()
        by_identifier = {alarm.identifier: alarm for alarm in alarms}
        for identifier, request in pending.items():
            alarm = by_identifier.get(identifier)
            assert alarm is not None, f"{identifier} was never armed"
            assert request["body"] == alarm.title and tuple(request["components"]) == alarm.components()
            assert request["userInfo"]["fireDate"] == alarm.fire
        if len(pending) < len(alarms) and loss_is_visible:
            assert (
                status["storeWasReset"] or status["lostRecords"] > 0
            ), f"{len(pending)} are left, and not a word"
        if status["storeWasReset"]:
            kept = [
                path
                for path in world.store.parent.iterdir()
                if path.name
                not in {world.store.name + end for end in ("", "-wal", "-shm", "-journal", ".lock")}
            ]
            assert kept, "the damaged store was not kept"
        client.add_many(alarms)
        client.acknowledge_reset()
        status = client.status()
        assert not status["storeWasReset"]
        assert sorted(client.pending_identifiers()) == sorted(by_identifier)
        return len(pending)


def damages_of_everything(content):
    size = len(content)
    numbers = random.Random(7)
    yield "empty", b""
    yield "zeros", bytes(size)
    yield "random", numbers.randbytes(size)
    yield "text", b"this is not a store\n" * 100
    yield "second half zeros", content[: size // 2] + bytes(size - size // 2)
    yield "random page", content[:4096] + numbers.randbytes(4096) + content[8192:]
    for page in range(0, size, 4096):
        yield f"cut at page {page // 4096}", content[:page]
    for _ in range(fewer_when_sanitized(64)):
        offset = numbers.randrange(size)
        yield f"cut at {offset}", content[:offset]


def test_starts_on_a_store_that_is_empty_cut_short_zeroed_or_random(good):
    alarms, files = good
    name = "notifications.db"
    cases = dict(damages_of_everything(files[name]))
    in_parallel(lambda case: survivors(alarms, {name: cases[case]}), cases)


def test_starts_on_a_log_that_is_empty_cut_short_zeroed_or_random(good_after_kill):
    """A log whose end was never written looks the same, so the loss cannot be reported; but no alarm is
    half."""
    alarms, files = good_after_kill
    logs = [name for name in files if name.endswith(("-wal", "-journal"))]
    assert logs
    for name in logs:
        cases = dict(damages_of_everything(files[name]))
        in_parallel(lambda case: survivors(alarms, files | {name: cases[case]}, loss_is_visible=False), cases)


def test_a_single_wrong_byte_costs_at_most_what_it_hits(good, record_property):
    alarms, files = good
    name = "notifications.db"
    content = files[name]
    numbers = random.Random(11)
    offsets = sorted(numbers.sample(range(len(content)), min(fewer_when_sanitized(200, 8), len(content))))

    def flip(offset):
        changed = bytearray(content)
        changed[offset] ^= 1 << numbers.randrange(8)
        return survivors(alarms, {name: bytes(changed)})

    left = in_parallel(flip, offsets)
    total = len(offsets) * ALARMS
    print(
        f"{len(offsets)} single-byte faults: {sum(left)} of {total} records survive; "
        f"{sum(count == ALARMS for count in left)} faults cost nothing, "
        f"{sum(count == 0 for count in left)} cost everything"
    )
    record_property("surviving records", f"{sum(left)} of {total}")
    assert sum(left) > 0.8 * total


def test_one_damaged_record_in_the_middle_leaves_the_others(good):
    alarms, files = good
    name = "notifications.db"
    content = files[name]
    at = content.index(alarms[ALARMS // 2].title.encode())
    damaged = content[:at] + b"\xff\xfe" + content[at + 2 :]
    assert survivors(alarms, {name: damaged}) >= ALARMS - 1


def test_a_damaged_record_is_reported_until_that_is_acknowledged_and_never_again(world, good):
    alarms, files = good
    content = files["notifications.db"]
    lost = alarms[ALARMS // 2]
    at = content.index(lost.title.encode())
    daemon = start_on(world, {"notifications.db": content[:at] + b"\xff\xfe" + content[at + 2 :]})
    client = world.client()
    client.add(lost)
    status = client.status()
    assert status["storeWasReset"] is True and status["lostRecords"] == 1
    client.acknowledge_reset()
    daemon.kill()
    daemon.start()
    status = client.status()
    assert status["storeWasReset"] is False and status["lostRecords"] == 0
    assert sorted(client.pending_identifiers()) == sorted(alarm.identifier for alarm in alarms)


def test_tells_the_callers_that_the_store_was_reset(world):
    world.let_bus_start_daemon()
    world.store.parent.mkdir(mode=0o700)
    world.store.write_bytes(b"damaged" * 1000)
    client = world.client(start=True)
    resets = client.connection.collect("co.calendarmurkel.NotificationCenter1", "StoreWasReset")
    assert client.status()["storeWasReset"] is True
    assert len(resets) <= 1
    client.acknowledge_reset()
    assert client.status()["storeWasReset"] is False


def test_the_reset_is_remembered_until_it_is_acknowledged(world):
    world.store.parent.mkdir(mode=0o700)
    world.store.write_bytes(b"damaged" * 1000)
    daemon = world.daemon().start()
    daemon.kill()
    daemon.start()
    client = world.client()
    assert client.status()["storeWasReset"] is True
    client.acknowledge_reset()
    daemon.kill()
    daemon.start()
    assert client.status()["storeWasReset"] is False


def lives_and_fires(world, daemon, in_memory):
    """It arms and shows, and says whether it keeps things in memory alone."""
    server = world.notification_server()
    client = world.client()
    status = client.status()
    assert status["inMemory"] is in_memory, status
    assert bool(status["inMemoryReason"]) is in_memory
    client.add(world.alarm(1))
    server.wait_for(1)
    world.check_ledger(server)
    assert daemon.running


def test_a_missing_folder_is_made_for_the_user_alone(world):
    assert not world.store.parent.exists()
    daemon = world.daemon().start()
    assert world.store.parent.stat().st_mode & 0o777 == 0o700
    lives_and_fires(world, daemon, in_memory=False)


def test_a_missing_state_home_is_made_for_the_user_alone(world):
    world.state.rmdir()
    daemon = world.daemon().start()
    assert world.state.stat().st_mode & 0o777 == 0o700
    lives_and_fires(world, daemon, in_memory=False)


def test_works_in_memory_with_a_file_in_place_of_its_folder(world):
    world.store.parent.write_text("in the way")
    lives_and_fires(world, world.daemon().start(), in_memory=True)
    assert world.store.parent.read_text() == "in the way"


def test_works_in_memory_where_its_folder_belongs_to_somebody_else(world):
    if os.geteuid() == 0:
        world.store.parent.mkdir()
        os.chown(world.store.parent, 65534, 65534)
    else:
        world.store.parent.symlink_to("/usr")
    before = sorted(world.store.parent.iterdir())
    lives_and_fires(world, world.daemon().start(), in_memory=True)
    assert sorted(world.store.parent.iterdir()) == before


def test_does_not_fall_for_a_folder_in_place_of_its_file(world):
    world.store.mkdir(parents=True, mode=0o700)
    world.store.parent.chmod(0o700)
    (world.store / "something").write_text("kept")
    daemon = world.daemon().start()
    status = world.client().status()
    lives_and_fires(world, daemon, in_memory=status["inMemory"])
    assert [path for path in world.store.parent.rglob("something")]


def read_only_disk(world, files=()):
    """The daemon's folder, with these files in it, on a disk that nobody can write."""
    folder = world.store.parent
    folder.mkdir(mode=0o700)
    source = world.root / "source"
    source.mkdir()
    for name, content in dict(files).items():
        (source / name).write_bytes(content)
    return MountNamespace(
        world,
        f"""
        mount -t tmpfs -o mode=0700 tmpfs {folder}
        cp -r {source}/. {folder}
        mount -o remount,bind,ro {folder}""",
    )


def test_works_in_memory_on_a_disk_that_cannot_be_written(world):
    disk = read_only_disk(world)
    lives_and_fires(world, world.daemon().start(prefix=disk.prefix), in_memory=True)


@pytest.mark.parametrize("end", ["stop", "kill"])
def test_what_a_store_holds_fires_although_it_cannot_be_written(world, end):
    alarms, files = make_store(end)
    disk = read_only_disk(world, files)
    daemon = world.daemon().start(prefix=disk.prefix)
    client = world.client()
    assert client.status()["inMemory"] is True
    assert len(client.pending_identifiers()) == ALARMS
    server = world.notification_server()
    world.clock.set(alarms[-1].fire, tell=[daemon.pid])
    server.wait_for(ALARMS)
    assert {shown.body for shown in server.shown} == {alarm.title for alarm in alarms}
    assert list((world.root / "tmp").iterdir()) == []


def test_works_in_memory_without_a_home(world):
    world.environment["HOME"] = str(world.root / "nowhere")
    world.environment["XDG_STATE_HOME"] = str(world.root / "nowhere/state")
    (world.root / "nowhere").symlink_to("/proc/1/nonexistent")
    try:
        daemon = world.daemon()
        world.require_privacy = lambda: None
        lives_and_fires(world, daemon.start(), in_memory=True)
    finally:
        (world.root / "nowhere").unlink()


def make_version_newer(path, into_log_only):
    """Adds one to the version of the store at `path`. A log that was not folded in stays beside it."""
    database = sqlite3.connect(path)
    version = database.execute("PRAGMA user_version").fetchone()[0]
    database.execute(f"PRAGMA user_version = {version + 1}")
    if into_log_only:
        kept = {name: (path.parent / name).read_bytes() for name in (path.name, path.name + "-wal")}
    database.close()
    if into_log_only:
        for name, content in kept.items():
            (path.parent / name).write_bytes(content)


def files_below(folder):
    return {
        path.name: path.read_bytes() for path in folder.iterdir() if path.name.startswith("notifications.db")
    }


@pytest.mark.parametrize("into_log_only", [False, True])
def test_a_store_of_a_newer_version_is_left_untouched(world, good, into_log_only):
    _, files = good
    world.store.parent.mkdir(mode=0o700)
    world.store.write_bytes(files[world.store.name])
    make_version_newer(world.store, into_log_only)
    before = files_below(world.store.parent)
    daemon = world.daemon().start()
    lives_and_fires(world, daemon, in_memory=True)
    daemon.stop()
    assert files_below(world.store.parent) == before


def make_version_older(path):
    """The store as the first version wrote it: without the column that tells what was offered."""
    database = sqlite3.connect(path)
    database.execute("ALTER TABLE request DROP COLUMN offered")
    database.execute("PRAGMA user_version = 1")
    database.commit()
    database.close()
    return path.read_bytes()


@pytest.fixture(scope="module")
def older(good, tmp_path_factory):
    alarms, files = good
    path = tmp_path_factory.mktemp("older") / "notifications.db"
    path.write_bytes(files["notifications.db"])
    return alarms, {"notifications.db": make_version_older(path)}


def test_a_store_of_an_older_version_is_brought_up_to_date(older):
    alarms, files = older
    assert survivors(alarms, files) == ALARMS


def test_a_kill_while_an_older_store_is_brought_up_to_date_costs_nothing(older):
    alarms, files = older

    def run(case):
        call, number = case
        with World() as world:
            world.store.parent.mkdir(mode=0o700)
            for name, content in files.items():
                (world.store.parent / name).write_bytes(content)
            daemon = world.daemon().start(wait=False, tracing=killing(call, number))
            wait_until(lambda: daemon.answers or not daemon.running, 20, "the start or the kill")
            was_killed = not daemon.running
            daemon.kill()
            daemon.start()
            client = world.client()
            assert sorted(client.pending_identifiers()) == sorted(alarm.identifier for alarm in alarms)
            assert client.status()["storeWasReset"] is False
            return was_killed

    cases = [(call, number) for call in ("pwrite64", "fdatasync", "unlink") for number in range(1, 13)]
    assert sum(in_parallel(run, cases)) > 3


def test_opens_its_store_again_after_an_orderly_end_and_after_a_kill(good, good_after_kill):
    for alarms, files in (good, good_after_kill):
        assert survivors(alarms, files) == ALARMS
