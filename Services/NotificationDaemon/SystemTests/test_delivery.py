"""Notification servers that are absent, slow, hanging, failing or crashing: each alarm is shown, at most
twice."""

import pytest

from tinkra_world import World
from tinkra_world import notification_server as servers
from tinkra_world.parallel import in_parallel
from tinkra_world.processes import settle, wait_until


def test_is_urgent_never_expires_and_can_be_opened(world):
    server = world.notification_server()
    world.daemon().start()
    world.client().add(world.alarm(1))
    (shown,) = server.wait_for(1)
    assert shown.hints["urgency"] == 2
    assert shown.timeout == 0
    assert "default" in shown.actions[::2]
    assert shown.summary == "Meeting starting" and shown.body == "Meeting 1"
    assert shown.replaces == 0


def test_waits_for_a_server_and_shows_at_once_when_there_is_one(world):
    daemon = world.daemon().start()
    client = world.client()
    client.add(world.alarm(1))
    begin = world.clock.now()
    wait_until(lambda: client.status()["due"] == 1, 3, "the alarm to be due")
    settle(2)
    status = client.status()
    assert (status["due"], status["shown"], status["pending"]) == (1, 0, 0)
    assert daemon.log.read_text(), "nothing in the journal although an alarm cannot be shown"
    server = world.notification_server()
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(1, 2)
    world.check_ledger(server)
    wait_until(lambda: client.status()["due"] == 0, 3, "the showing to be recorded")


def test_without_a_server_it_sounds_the_alarm_goes_on_trying_and_shows_it_at_the_first_that_comes(world):
    sound = world.sound_server()
    daemon = world.daemon().start()
    client = world.client()
    alarm = world.alarm(1)
    client.add(alarm)
    wait_until(lambda: sound.loudness() > 0.05, 10, "the fallback sound")
    assert world.clock.now() >= alarm.second
    assert "no notification server takes it" in daemon.log.read_text()
    settle(alarm.second + 20 - world.clock.now())
    status = client.status()
    assert (status["due"], status["shown"], status["pending"]) == (1, 0, 0)
    server = world.notification_server()
    world.ledger.outage(alarm.fire, world.clock.now())
    server.wait_for(1, 2)
    world.check_ledger(server)
    wait_until(lambda: client.status()["due"] == 0, 3, "the showing to be recorded")


def test_an_alarm_that_is_due_is_neither_listed_nor_cancelled(world):
    world.daemon().start()
    client = world.client()
    alarm = world.alarm(1)
    client.add(alarm)
    wait_until(lambda: client.status()["due"] == 1, 3, "the alarm to be due")
    assert client.pending_identifiers() == [] and client.pending() == []
    client.ledger = None
    client.cancel(alarm.identifier)
    begin = alarm.fire
    server = world.notification_server()
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(1)
    world.check_ledger(server)


def test_a_due_alarm_has_left_the_list_before_the_first_answer_after_a_start(world):
    """A caller that asks the moment the daemon is back must not find, and so not cancel, what is being
    delivered."""
    daemon = world.daemon().start()
    client = world.client()
    alarm = world.alarm(1)
    client.add(alarm)
    daemon.kill()
    settle(1.5)
    world.let_bus_start_daemon()
    eager = world.client(start=True)
    eager.ledger = None
    assert eager.pending_identifiers() == []
    eager.cancel(alarm.identifier)
    server = world.notification_server()
    world.ledger.outage(alarm.fire, world.clock.now())
    server.wait_for(1)
    world.check_ledger(server)


def crashed_behind_its_answer(pause):
    """How often an alarm is shown when the server dies behind its answer and another comes after the
    pause."""
    with World() as world:
        server = world.notification_server(mode=servers.CRASH_AFTER)
        world.daemon().start()
        world.client().add(world.alarm(1))
        server.wait_for(1)
        server.wait_for_end()
        settle(pause)
        server.set_next(servers.NORMAL)
        server.start()
        settle(2)
        world.check_ledger(server)
        bodies = {(shown.summary, shown.body) for shown in server.shown}
        assert len(bodies) == 1
        return len(server.shown)


def test_a_server_that_crashes_behind_its_answer_means_showing_again():
    assert in_parallel(crashed_behind_its_answer, [0, 5]) == [2, 2]


def test_a_server_that_changes_long_after_showing_means_nothing(world):
    server = world.notification_server()
    world.daemon().start()
    world.client().add(world.alarm(1))
    server.wait_for(1)
    settle(11)
    server.kill()
    server.start()
    settle(1)
    assert len(server.shown) == 1


def test_a_server_that_crashes_before_its_answer_means_showing_again(world):
    server = world.notification_server(mode=servers.CRASH)
    world.daemon().start()
    world.client().add(world.alarm(1))
    begin = world.clock.now()
    server.wait_for_calls(1)
    server.wait_for_end()
    server.set_next(servers.NORMAL)
    server.start()
    world.ledger.outage(begin, world.clock.now())
    server.wait_for(1)
    world.check_ledger(server)


def test_a_call_that_hangs_does_not_delay_the_others(world):
    server = world.notification_server()
    server.set(servers.HANG, count=1)
    world.daemon().start()
    client = world.client()
    second = world.alarm(2).fire
    for number in range(10):
        client.add(world.alarm(second - world.clock.now()))
    shown = server.wait_for(9, 4)
    assert all(one.wall - second // 1 < 1 + world.machine.lateness() for one in shown)
    # The tenth is called for again once its call has timed out.
    server.wait_for(10, 9)
    assert len({one.body for one in server.shown}) == 10


def test_a_server_that_hangs_for_good_never_stops_the_daemon(world):
    server = world.notification_server(mode=servers.HANG)
    daemon = world.daemon().start()
    client = world.client()
    for _ in range(10):
        client.add(world.alarm(1))
    begin = world.clock.now()
    server.wait_for_calls(10, 5)
    client.add(world.alarm(3600))
    assert len(client.pending_identifiers()) == 1
    server.set(servers.NORMAL)
    world.ledger.outage(
        begin, world.clock.now() + 8
    )  # the time-out of the call and the pause before the next one
    server.wait_for(10, 15)
    world.check_ledger(server)
    assert daemon.running


@pytest.mark.parametrize("mode", [servers.ERROR, servers.ZERO])
def test_an_answer_without_success_means_trying_again(world, mode):
    server = world.notification_server()
    server.set(mode, count=1)
    world.daemon().start()
    client = world.client()
    client.add(world.alarm(1))
    server.wait_for_calls(1)
    assert client.status()["shown"] == 0
    server.wait_for(1, 7)
    settle(0.5)
    assert len(server.shown) == 1


@pytest.mark.parametrize("delay, most", [(1.0, 1), (4.0, 2)])
def test_a_slow_server_is_given_time(world, delay, most):
    server = world.notification_server()
    server.set(servers.SLOW, delay=delay)
    world.daemon().start()
    client = world.client()
    for _ in range(5):
        client.add(world.alarm(1))
    server.wait_for_calls(5, delay + 4)
    settle(2 * delay + 4)
    counts = [sum(shown.body == f"Meeting {number}" for shown in server.shown) for number in range(1, 6)]
    assert all(1 <= count <= most for count in counts), counts


def test_a_new_server_that_finds_nothing_due_shows_nothing(world):
    server = world.notification_server()
    world.daemon().start()
    world.client().add(world.alarm(60))
    for _ in range(3):
        server.give_up_name()
        server.take_name()
    settle(0.5)
    assert server.calls == []


def test_the_name_may_change_hands_at_the_very_moment(world):
    server = world.notification_server(mode=servers.HOLD)
    world.daemon().start()
    world.client().add(world.alarm(1))
    server.wait_for(1)
    server.give_up_name()
    server.set(servers.NORMAL)
    server.take_name()
    server.wait_for(2, 5)
    settle(1)
    world.check_ledger(server)


def test_forty_alarms_in_one_second_are_all_shown_in_order(world):
    server = world.notification_server()
    world.daemon().start()
    client = world.client()
    fire = world.clock.now() + 3
    for _ in range(40):
        client.add(world.alarm(fire - world.clock.now()))
    assert world.clock.now() < fire, "arming took too long for this test"
    server.wait_for(40)
    world.check_ledger(server)
    assert [shown.body for shown in server.shown] == [f"Meeting {number}" for number in range(1, 41)]


def test_says_whether_it_can_notify(world):
    world.daemon().start()
    client = world.client()
    assert client.authorization_status() == 1 and client.request_authorization() is False
    server = world.notification_server()
    wait_until(lambda: client.authorization_status() == 2, 3, "the server to be seen")
    assert client.request_authorization() is True
    server.kill()
    wait_until(lambda: client.authorization_status() == 1, 3, "the server's end to be seen")


def test_tells_its_callers_what_was_delivered(world):
    server = world.notification_server()
    world.daemon().start()
    client = world.client()
    delivered = client.connection.collect("co.calendarmurkel.NotificationCenter1", "Delivered")
    alarm = world.alarm(1)
    client.add(alarm)
    server.wait_for(1)
    wait_until(lambda: delivered, 3, "the signal")
    settle(0.3)
    ((identifier, request),) = delivered
    assert identifier == alarm.identifier
    assert request["userInfo"] == {
        "meetingID": alarm.identifier,
        "title": alarm.title,
        "fireDate": alarm.fire,
        "meetingStart": alarm.meeting_start,
    }
