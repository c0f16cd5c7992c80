"""From a calendar file to a notification, while no program of ours but the daemon runs."""

from tinkra_world.processes import wait_until
from typist import one_line


def test_a_selected_meeting_is_shown_at_its_second_after_the_program_has_ended(world, tinkra):
    server = world.notification_server()
    start = tinkra.meeting(after=5, title="Stand-up")

    selected = tinkra("select", "Work/Team")
    assert selected.code == 0, selected
    pending = tinkra("pending", "--json").json
    assert [request["body"] for request in pending] == ["Stand-up"]
    assert pending[0]["userInfo"]["fireDate"] == start
    assert set(pending[0]["userInfo"]) == {"meetingID", "title", "fireDate", "meetingStart"}

    shown = server.wait_for(1, seconds=15)
    assert (shown[0].summary, shown[0].body) == ("Meeting starting", "Stand-up")
    assert 0 <= shown[0].wall - start < 1 + world.machine.lateness()
    assert tinkra("pending", "--json").json == []


def test_passes_while_an_alarm_is_due_and_nothing_shows_it_do_not_cancel_it(world, tinkra):
    start = tinkra.meeting(after=4, title="Stand-up", uid="due")
    tinkra.meeting(after=3600, title="Later", uid="later")
    assert tinkra("select", "Work/Team").code == 0
    client = world.client()
    wait_until(lambda: client.status()["due"] == 1, 15, "the alarm to be due")

    assert tinkra("sync", "--json").json == {"added": [], "removed": []}
    (tinkra.calendars / "Work/Team/due.ics").unlink()
    assert tinkra("sync", "--json").json == {"added": [], "removed": []}

    (shown,) = world.notification_server().wait_for(1, seconds=10)
    assert shown.body == "Stand-up" and shown.wall >= start
    assert [request["body"] for request in tinkra("pending", "--json").json] == ["Later"]


def test_selecting_deselecting_and_changing_calendars_changes_what_is_armed(tinkra):
    tinkra.meeting(after=3600, title="One", uid="one")
    tinkra.meeting(after=7200, title="Home", calendar="Home/Family")
    titles = lambda: sorted(request["body"] for request in tinkra("pending", "--json").json)  # noqa: E731

    assert tinkra("select", "Work/Team").code == 0
    assert titles() == ["One"]
    assert tinkra("select", "Home/Family").code == 0
    assert titles() == ["Home", "One"]

    tinkra.meeting(after=5400, title="Moved", uid="one")
    changes = tinkra("sync", "--json").json
    assert [alarm["title"] for alarm in changes["added"]] == ["Moved"]
    assert len(changes["removed"]) == 1
    assert titles() == ["Home", "Moved"]
    assert tinkra("sync", "--json").json == {"added": [], "removed": []}

    assert tinkra("deselect", "Work/Team").code == 0
    assert titles() == ["Home"]
    assert tinkra("deselect", "Home/Family").code == 0
    assert titles() == []


def test_listing_calendars_grants_nothing_and_selecting_does(world, tinkra):
    tinkra.meeting(after=3600)

    assert "Work/Team" in tinkra("calendars").out
    assert not (world.config / "tinkra").exists()
    assert tinkra("select", "Work/Nothing").code == 1
    assert not (world.config / "tinkra").exists()

    assert tinkra("select", "Work/Team").code == 0
    assert sorted(path.name for path in (world.config / "tinkra").iterdir()) == [
        "tinkra.calendarAccess", "tinkra.configuration"]


def test_hostile_titles_are_armed_and_shown_on_one_line(tinkra):
    tinkra.meeting(after=3600, title="<b>x</b> &amp; \u202eevil\\nline \x1b[31m %n '; DROP TABLE", uid="../../x")

    assert tinkra("select", "Work/Team").code == 0
    listed = tinkra("pending")
    assert listed.code == 0 and listed.out.count("\n") == 2
    assert "\x1b" not in listed.out and "\u202e" not in listed.out


def test_a_title_of_a_megabyte_is_armed_whole(tinkra):
    # Folded, as lines of that length have to be.
    title = "x" * (1 << 20)
    tinkra.meeting(after=3600, title="\r\n ".join(title[at:at + 70] for at in range(0, len(title), 70)), uid="large")

    assert tinkra("select", "Work/Team").code == 0
    assert tinkra("pending", "--json").json[0]["body"] == title


def test_interrupting_a_pass_leaves_whole_alarms_and_the_next_pass_completes_it(world, tinkra):
    import signal
    import time
    tinkra.meeting(after=3600, rule="FREQ=HOURLY;COUNT=600")
    tinkra("calendars")
    assert tinkra("select", "Work/Team", environment={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere"}).code == 1

    process = tinkra.start("sync")
    client = world.client(start=True, ledger=False)
    while not client.pending_identifiers() and process.poll() is None:
        time.sleep(0.001)
    process.send_signal(signal.SIGINT)
    process.communicate()
    assert process.returncode == -signal.SIGINT
    assert 0 < len(client.pending_identifiers()) < 600

    assert tinkra("sync").code == 0
    assert len(client.pending_identifiers()) == 600


def test_the_output_that_cannot_be_written_is_a_failure(tinkra):
    with open("/dev/full", "wb") as full:
        for arguments in (("calendars", "--json"), ("--help",), ("occurrences", "/dev/null", "--json")):
            outcome = tinkra(*arguments, stdout=full)
            assert outcome.code == 1, arguments


def test_everything_that_cannot_work_is_one_line(tinkra):
    for arguments in (("select", "No/Such"), ("deselect", "No/Such"), ("upcoming", "--days", "-1"), ("nonsense",)):
        outcome = tinkra(*arguments)
        assert outcome.code in (1, 2) and one_line(outcome.error), (arguments, outcome)


def test_standard_input_that_cannot_be_read_is_a_failure(tinkra):
    outcome = tinkra("occurrences", "-", "--json", prefix=("sh", "-c", 'exec "$@" < /', "sh"))
    assert outcome.code == 1 and outcome.json == [] and one_line(outcome.error), outcome
