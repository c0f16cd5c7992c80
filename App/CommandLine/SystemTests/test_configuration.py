"""The stored configuration: garbage, hostile values, power cuts, full disks, other writers."""

import itertools
import json
import os
import re
import subprocess

import pytest

DEFAULT = {"masterEnabled": True, "settings": {}, "monitoring": {"selectedCalendarIDs": ["Work/Team"]}}

GARBAGE = {
    "empty": b"",
    "NUL": b"\0" * 100,
    "cut short": b'{"masterEnabled":true,"settings":{',
    "deep nesting": b"[" * 200_000,
    "deep objects": b'{"a":' * 100_000,
    "another shape": b'["masterEnabled"]',
    "wrong type": json.dumps(DEFAULT | {"masterEnabled": "yes"}).encode(),
    "wrong type in settings": json.dumps(DEFAULT | {"settings": {"leadTime": "5"}}).encode(),
    "wrong type of identifiers": json.dumps(DEFAULT | {"monitoring": {"selectedCalendarIDs": {"Work/Team": 1}}}).encode(),
    "unknown style": json.dumps(DEFAULT | {"settings": {"style": "loud"}}).encode(),
    "number too large": b'{"masterEnabled":true,"settings":{"leadTime":1e999},"monitoring":{"selectedCalendarIDs":[]}}',
    "NaN": b'{"masterEnabled":true,"settings":{"leadTime":NaN},"monitoring":{"selectedCalendarIDs":[]}}',
    "UTF-16": json.dumps(DEFAULT).encode("utf-16"),
    "UTF-16 without a mark": json.dumps(DEFAULT).encode("utf-16-le"),
    "not UTF-8": b'{"masterEnabled":true,"settings":{"soundName":"\xff"},"monitoring":{"selectedCalendarIDs":[]}}',
    "something behind it": json.dumps(DEFAULT).encode() + b" x",
    "2 MB": json.dumps(DEFAULT).encode() + b" " * (2 << 20),
}


def store(tinkra, document: bytes):
    tinkra.configuration.parent.mkdir(parents=True, exist_ok=True)
    tinkra.configuration.write_bytes(document)


@pytest.mark.parametrize("name", GARBAGE)
def test_garbage_counts_as_the_defaults_and_stays_until_the_next_change(tinkra, name):
    tinkra.meeting(after=3600)
    store(tinkra, GARBAGE[name])

    assert tinkra("sync", "--json").json == {"added": [], "removed": []}
    assert tinkra("upcoming", "--json").json == []
    assert tinkra("doctor").code == 1
    assert tinkra.configuration.read_bytes() == GARBAGE[name]

    assert tinkra("select", "Work/Team").code == 0
    assert json.loads(tinkra.configuration.read_bytes())["monitoring"] == {"selectedCalendarIDs": ["Work/Team"]}


def test_a_huge_file_is_not_read_whole(tinkra):
    store(tinkra, b"")
    os.truncate(tinkra.configuration, 1 << 40)

    outcome = tinkra("sync", prefix=("prlimit", "--data=200000000") if not os.environ.get("TINKRA_SANITIZED") == "1" else ())
    assert outcome.code == 0, outcome


@pytest.mark.parametrize("settings", [{"leadTime": 1e308}, {"leadTime": -1e308}, {"leadTime": 1e18}, {"snoozeInterval": -1},
                                      {"snoozeInterval": 1e18}, {"soundName": "../../x"}], ids=str)
def test_hostile_values_do_no_harm_and_stay_as_they_are(tinkra, settings):
    tinkra.meeting(after=3600)
    document = json.dumps(DEFAULT | {"settings": settings}).encode()
    store(tinkra, document)

    for arguments in (("sync",), ("upcoming",), ("pending",), ("calendars",)):
        assert tinkra(*arguments).code in (0, 1), arguments
    assert tinkra.configuration.read_bytes() == document


def test_a_link_in_its_place_is_replaced_and_its_target_left_alone(world, tinkra):
    tinkra.meeting(after=3600)
    target = world.root / "target"
    target.write_bytes(json.dumps(DEFAULT).encode())
    tinkra.configuration.parent.mkdir(parents=True)
    tinkra.configuration.symlink_to(target)
    before = target.read_bytes()

    assert [alarm["title"] for alarm in tinkra("select", "Work/Team").code == 0 and tinkra("upcoming", "--json").json] == ["Stand-up"]
    assert target.read_bytes() == before and not tinkra.configuration.is_symlink()


def recorded(trace):
    """The recorded calls, in their order, as (name, arguments)."""
    calls = []
    for line in trace.read_text().splitlines():
        # A call that another thread interrupts is cut in two; the first part says enough.
        found = re.match(r"\d+ +(\w+)\((.*?)(?:\) += | <unfinished)", line)
        if found:
            calls.append(found.groups())
    return calls


def select_one_more(tinkra, trace, inject=None):
    return tinkra.traced(trace, "select", "Home/Family", inject=["-y", "-e", "trace=openat,write,fsync,rename,renameat,renameat2",
                                                                 *(inject or ())])


@pytest.fixture
def two_calendars(tinkra):
    tinkra.meeting(after=3600)
    tinkra.meeting(after=3600, calendar="Home/Family")
    assert tinkra("select", "Work/Team").code == 0
    return tinkra


def test_the_document_reaches_the_disk_before_its_name_and_its_name_before_success(world, two_calendars):
    trace = world.root / "trace"
    assert select_one_more(two_calendars, trace).code == 0

    folder = str(two_calendars.configuration.parent)
    steps = []
    for call, arguments in recorded(trace):
        if "tinkra.configuration" in arguments or (call == "fsync" and f"<{folder}>" in arguments):
            steps.append("create" if call == "openat" and "O_CREAT" in arguments else
                         "sync folder" if call == "fsync" and arguments.endswith(f"<{folder}>") else call)
    steps = [step for step in steps if step != "openat"]
    # A power cut leaves a prefix of what was synchronised: the old document until the rename, the new one after it.
    assert "".join(f"{step} " for step in steps).endswith("create write fsync renameat sync folder "), steps


@pytest.mark.parametrize("call, fault", [
    ("write", "signal=SIGKILL"), ("fsync", "signal=SIGKILL"), ("renameat", "signal=SIGKILL"), ("openat", "signal=SIGKILL"),
    ("fsync", "error=ENOSPC"), ("fsync", "error=EIO"), ("renameat", "error=ENOSPC"), ("renameat", "error=EIO")])
def test_a_fault_at_any_call_leaves_the_old_document_or_the_new_one(world, two_calendars, call, fault):
    tinkra = two_calendars
    old = tinkra.configuration.read_bytes()
    for count in itertools.count(1):
        tinkra.configuration.write_bytes(old)
        trace = world.root / f"trace-{count}"
        outcome = select_one_more(tinkra, trace, ["-e", f"inject={call}:{fault}:when={count}"])
        new = tinkra.configuration.read_bytes()
        selected = json.loads(new)["monitoring"]["selectedCalendarIDs"]
        assert new == old or sorted(selected) == ["Home/Family", "Work/Team"]
        if "(INJECTED)" not in trace.read_text() and "SIGKILL" not in trace.read_text():
            assert outcome.code == 0, outcome
            break
        if "error" in fault and new == old:
            assert outcome.code == 1 and "could not be saved" in outcome.error, outcome
    assert count > 1, "nothing was injected"


def test_a_full_disk_keeps_the_old_document(world, two_calendars):
    tinkra = two_calendars
    old = tinkra.configuration.read_bytes()
    folder = tinkra.configuration.parent
    kept = {path.name: path.read_bytes() for path in folder.iterdir()}
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", folder], check=True)
    try:
        for name, content in kept.items():
            (folder / name).write_bytes(content)
        with open(folder / "filler", "wb", buffering=0) as filler:
            try:
                while True:
                    filler.write(b"x" * 4096)
            except OSError:
                pass

        outcome = tinkra("select", "Home/Family")

        assert outcome.code == 1 and "No space left on device" in outcome.error, outcome
        assert tinkra.configuration.read_bytes() == old
        assert sorted(path.name for path in folder.iterdir()) == sorted([*kept, "filler"])
    finally:
        subprocess.run(["umount", folder], check=True)


def test_two_writers_never_leave_a_mixture(two_calendars):
    tinkra = two_calendars
    writers = [tinkra.start(command, "Home/Family") for command in ("select", "deselect") * 6]
    documents = set()
    while any(writer.poll() is None for writer in writers):
        documents.add(tinkra.configuration.read_bytes())
    for writer in writers:
        writer.communicate()
    for document in documents | {tinkra.configuration.read_bytes()}:
        assert sorted(json.loads(document)["monitoring"]["selectedCalendarIDs"]) in (
            ["Work/Team"], ["Home/Family", "Work/Team"])
    assert {path.name for path in tinkra.configuration.parent.iterdir()} == {
        "tinkra.configuration", "tinkra.calendarAccess"}
