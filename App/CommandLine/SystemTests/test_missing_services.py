"""The plug is pulled on each service that the product needs."""

import os
import shutil
import signal
import threading

import pytest
from tinkra_world.parallel import in_parallel
from typist import Typist, one_line

NAME = "co.calendarmurkel.NotificationCenter"


def levels(outcome) -> dict:
    """The worst level of each subject of `tinkra doctor --json`."""
    order = ("ok", "warning", "failure")
    worst = {}
    for finding in outcome.json:
        worst[finding["subject"]] = max(worst.get(finding["subject"], "ok"), finding["level"], key=order.index)
    return worst


def test_doctor_is_content_with_a_whole_desktop(world, tinkra):
    world.notification_server()
    tinkra.meeting(after=3600)
    assert tinkra("select", "Work/Team").code == 0

    outcome = tinkra("doctor", "--json")

    assert outcome.code == 0, outcome
    found = levels(outcome)
    assert {subject for subject, level in found.items() if level != "ok"} == {"Login entry", "Login manager", "Display", "Sound"}
    assert {"Clock", "Configuration", "Calendars", "Session bus", "Notification service", "Alarm store",
            "Notification server", "Calendar folders", "Change notices", "Time zone", "Display", "Sound"} <= set(found)


@pytest.mark.parametrize("program", [None, "/nowhere/at/all", "/bin/false"], ids=["removed", "no such program", "ends at once"])
def test_without_the_daemon_sync_says_that_alarms_are_not_armed(world, program):
    tinkra = Typist(world)
    if program:
        world.let_bus_start_daemon(program)
    tinkra.meeting(after=3600)

    selected = tinkra("select", "Work/Team")
    assert selected.code == 1 and "Alarms are not armed" in selected.error
    assert tinkra.configuration.exists()
    for command in ("sync", "pending"):
        outcome = tinkra(command)
        assert outcome.code == 1 and one_line(outcome.error) and "Alarms are not armed" in outcome.error, outcome
        assert outcome.out == ""
    doctor = tinkra("doctor", "--json")
    assert doctor.code == 1 and levels(doctor)["Notification service"] == "failure"
    # What needs no daemon works.
    assert [alarm["title"] for alarm in tinkra("upcoming", "--json").json] == ["Stand-up"]


def test_a_daemon_that_hangs_holds_nobody_up(world, tinkra):
    tinkra.meeting(after=3600)
    assert tinkra("select", "Work/Team").code == 0
    pid = world.bus.connect().call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                   "GetConnectionUnixProcessID", variant("(s)", (NAME,)))[0]
    os.kill(pid, signal.SIGSTOP)
    try:
        for command in ("sync", "pending", "doctor"):
            outcome = tinkra(command)
            assert outcome.code == 1 and outcome.seconds < 30, (command, outcome)
            assert "does not answer" in outcome.error + outcome.out
    finally:
        os.kill(pid, signal.SIGCONT)
    assert tinkra("sync").code == 0


@pytest.mark.parametrize("address", [None, "unix:path=/nowhere/at/all", "nonsense"])
def test_without_a_session_bus_commands_fail_in_one_line(world, tinkra, address):
    tinkra.meeting(after=3600)
    environment = {"DBUS_SESSION_BUS_ADDRESS": address}

    for command in ("sync", "pending"):
        outcome = tinkra(command, environment=environment)
        assert outcome.code == 1 and one_line(outcome.error) and "no session bus answers" in outcome.error, outcome
    doctor = tinkra("doctor", "--json", environment=environment)
    assert doctor.code == 1 and levels(doctor)["Session bus"] == "failure"


def test_a_bus_that_hangs_holds_nobody_up(world, tinkra):
    tinkra.meeting(after=3600)
    world.bus.process.send_signal(signal.SIGSTOP)
    try:
        for command in ("sync", "pending", "doctor"):
            outcome = tinkra(command)
            assert outcome.code == 1 and outcome.seconds < 30, (command, outcome)
    finally:
        world.bus.process.send_signal(signal.SIGCONT)


def test_alarms_are_armed_without_a_notification_server_and_the_user_is_told(world, tinkra):
    tinkra.meeting(after=3600)

    selected = tinkra("select", "Work/Team")
    assert selected.code == 0 and "tinkra doctor" in selected.error
    assert len(tinkra("pending", "--json").json) == 1
    doctor = tinkra("doctor", "--json")
    assert doctor.code == 1 and levels(doctor)["Notification server"] == "failure"


def test_folders_that_vanish_cancel_nothing(world, tinkra):
    tinkra.meeting(after=3600)
    assert tinkra("select", "Work/Team").code == 0
    tinkra.calendars.rename(world.root / "elsewhere")

    # Looking for the calendars puts no empty folder in the place of theirs.
    for command in (("calendars",), ("select", "Work/Team"), ("deselect", "Work/Team")):
        outcome = tinkra(*command)
        assert outcome.code == 1 and one_line(outcome.error) and not tinkra.calendars.exists(), outcome
    outcome = tinkra("sync")
    assert outcome.code == 1 and outcome.error.startswith("tinkra: Sync failed: ") and one_line(outcome.error), outcome
    assert len(tinkra("pending", "--json").json) == 1
    assert tinkra("doctor").code == 1

    (world.root / "elsewhere").rename(tinkra.calendars)
    assert tinkra("sync", "--json").json == {"added": [], "removed": []}


def test_folders_that_fail_in_any_way_cancel_nothing(world, tinkra):
    """Each call that lists, opens or looks at a calendar's folders, with each error that a file system may give."""
    tinkra.meeting(after=3600)
    assert tinkra("select", "Work/Team").code == 0
    root, account, calendar = tinkra.calendars, tinkra.calendars / "Work", tinkra.calendars / "Work/Team"
    folder_errors = ("EIO", "EACCES", "EMFILE", "ENOMEM", "ESTALE")
    faults = [("getdents64", place, error) for place in (root, account, calendar) for error in folder_errors]
    faults += [("openat", place, error) for place in (root, account) for error in folder_errors]
    # What is wrong with one file alone is told, and the others go on; this is what is wrong with all of them.
    faults += [("openat", calendar, error) for error in ("EMFILE", "ENFILE", "ENOMEM", "ESTALE", "ETIMEDOUT")]
    faults += [("newfstatat", root, error) for error in ("EIO", "EACCES", "ENOENT", "ESTALE")]

    def run(fault):
        call, place, error = fault
        outcome = tinkra.traced("/dev/null", "sync", inject=("-P", place, "-e", f"inject={call}:error={error}"))
        assert outcome.code == 1 and one_line(outcome.error) and "Sync failed" in outcome.error, outcome

    in_parallel(run, faults, workers=4)
    assert len(tinkra("pending", "--json").json) == 1
    assert tinkra("sync", "--json").json == {"added": [], "removed": []}


def test_a_pass_while_a_calendar_is_being_written_cancels_nothing(world, tinkra):
    tinkra.meeting(after=3600, uid="meeting")
    assert tinkra("select", "Work/Team").code == 0
    file = tinkra.calendars / "Work/Team/meeting.ics"
    whole = file.read_text()
    ended = threading.Event()

    def write():
        file.write_text(whole[: len(whole) // 2])

    def go_on_writing():
        while not ended.wait(0.1):
            write()

    write()
    writer = threading.Thread(target=go_on_writing)
    writer.start()
    try:
        outcome = tinkra("sync")
    finally:
        ended.set()
        writer.join()
    assert outcome.code == 1 and "is being written" in outcome.error and one_line(outcome.error), outcome
    assert len(tinkra("pending", "--json").json) == 1


def test_a_file_of_which_nothing_can_be_used_is_named_by_each_pass(tinkra):
    tinkra.meeting(after=3600)
    (tinkra.calendars / "Work/Team/empty.ics").write_text("")

    for outcome in (tinkra("select", "Work/Team"), tinkra("sync")):
        assert outcome.code == 0, outcome
        named = [line for line in outcome.error.splitlines() if "Left out: " in line]
        assert len(named) == 1 and "Work/Team/empty.ics: does not begin" in named[0], outcome
    assert len(tinkra("pending", "--json").json) == 1


def test_an_empty_folder_in_place_of_the_calendars_cancels_nothing(world, tinkra):
    """What is left of a file system that is not mounted."""
    tinkra.meeting(after=3600)
    assert tinkra("select", "Work/Team").code == 0
    tinkra.calendars.rename(world.root / "elsewhere")
    tinkra.calendars.mkdir()

    outcome = tinkra("sync")
    assert outcome.code == 1 and "no alarm was changed" in outcome.error and one_line(outcome.error), outcome
    assert len(tinkra("pending", "--json").json) == 1


def test_a_monitored_calendar_that_was_removed_is_named_and_empties_only_itself(tinkra):
    tinkra.meeting(after=3600)
    tinkra.meeting(after=3600, calendar="Home/Family", title="Home")
    assert tinkra("select", "Work/Team", "Home/Family").code == 0
    shutil.rmtree(tinkra.calendars / "Work")

    assert len(tinkra("sync", "--json").json["removed"]) == 1
    assert [request["body"] for request in tinkra("pending", "--json").json] == ["Home"]
    assert "Work/Team" in tinkra("calendars").error
    assert levels(tinkra("doctor", "--json"))["Calendars"] == "warning"
    assert tinkra("deselect", "Work/Team").code == 0


def test_doctor_names_files_that_were_not_understood(tinkra):
    tinkra.meeting(after=3600)
    (tinkra.calendars / "Work/Team/bad.ics").write_text(
        "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:1\r\nSUMMARY:no start\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")
    assert tinkra("select", "Work/Team").code == 0

    findings = [finding for finding in tinkra("doctor", "--json").json if finding["subject"] == "Calendar files"]
    assert [finding["level"] for finding in findings] == ["warning"]
    assert "bad.ics" in findings[0]["finding"]


def test_doctor_tells_a_store_that_was_damaged_and_a_pass_mends_it(world, tinkra):
    world.notification_server()
    tinkra.meeting(after=3600)
    daemon = world.daemon().start()
    assert tinkra("select", "Work/Team").code == 0
    daemon.kill()
    world.store.write_bytes(b"\0" * 8192)
    for suffix in ("-wal", "-shm", "-journal"):
        world.store.with_name(world.store.name + suffix).unlink(missing_ok=True)
    daemon.start()

    assert levels(tinkra("doctor", "--json"))["Alarm store"] == "warning"
    assert [alarm["title"] for alarm in tinkra("sync", "--json").json["added"]] == ["Stand-up"]
    assert levels(tinkra("doctor", "--json"))["Alarm store"] == "ok"


def test_doctor_works_with_nothing_at_all(world, tinkra):
    environment = {"DBUS_SESSION_BUS_ADDRESS": None, "XDG_RUNTIME_DIR": None, "XDG_DATA_DIRS": "/nowhere",
                   "XDG_CONFIG_DIRS": "/nowhere", "TZ": "Nowhere/At_All", "LANG": None,
                   "HOME": str(world.root / "nowhere"), "XDG_CONFIG_HOME": None, "XDG_DATA_HOME": None,
                   "XDG_STATE_HOME": None, "XDG_CACHE_HOME": None}

    outcome = tinkra("doctor", "--json", environment=environment)

    found = levels(outcome)
    assert outcome.code == 1 and outcome.error == ""
    assert found["Session bus"] == "failure" and found["Time zone"] == "warning"
    assert all(finding["remedy"] for finding in outcome.json if finding["level"] != "ok")
    assert not (world.root / "nowhere").exists()


@pytest.mark.parametrize("world", [{"zone": "Europe/Zurich"}], indirect=True)
def test_local_times_are_those_of_the_users_zone(tinkra):
    file = tinkra.world.root / "zurich.ics"
    file.write_text("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:1\r\nDTSTART:20260701T100000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")

    outcome = tinkra("occurrences", file, "--from", "2026-07-01", "--to", "2026-07-02", "--json")
    assert outcome.json[0]["start"] == "2026-07-01T08:00:00Z"
    assert "Wed 2026-07-01 10:00" in tinkra("occurrences", file, "--from", "2026-07-01", "--to", "2026-07-02").out


def variant(signature, value):
    from gi.repository import GLib
    return GLib.Variant(signature, value)


