"""The world itself: it is private, its parts do what they say, and it notices what is left behind."""

import os
import subprocess
import time

import pytest
from gi.repository import GLib

from tinkra_world import TouchesUserData, World
from tinkra_world import notification_server as servers
from tinkra_world.processes import settle


def notify(world, body="hello", timeout=1.0):
    connection = world.bus.connect()
    try:
        return connection.call(
            servers.NAME,
            servers.PATH,
            servers.NAME,
            "Notify",
            GLib.Variant("(susssasa{sv}i)", ("test", 0, "", "Title", body, [], {}, -1)),
            timeout,
        )[0]
    finally:
        connection.close()


def test_leaves_no_file_and_no_process():
    with World() as made:
        made.notification_server()
        root = made.root
    assert not root.exists()


def test_reports_a_process_that_was_left_behind():
    made = World()
    subprocess.Popen(["sh", "-c", "setsid sleep 60 & exit 0"], env=made.environment).wait()
    with pytest.raises(AssertionError, match="sleep 60"):
        made.close()


def test_ends_everything_although_one_thing_cannot_be_closed():
    class Stubborn:
        def close(self):
            raise OSError("stubborn")

    made = World()
    made.keep(Stubborn())
    with pytest.raises(OSError, match="stubborn"):
        made.close()
    assert not made.root.exists() and made.bus.process.poll() is not None


def test_reports_what_a_sanitizer_wrote():
    made = World()
    (made.logs / "program").write_text("==1==ERROR: AddressSanitizer: heap-use-after-free\n")
    with pytest.raises(AssertionError, match="heap-use-after-free"):
        made.close()


@pytest.mark.parametrize("name", ["HOME", "XDG_STATE_HOME", "DBUS_SESSION_BUS_ADDRESS"])
def test_refuses_to_run_against_the_users_own_data(world, name):
    world.environment[name] = "/home/somebody"
    with pytest.raises(TouchesUserData):
        world.require_privacy()


def test_the_server_records_what_it_shows(world):
    server = world.notification_server()
    assert notify(world) == 1
    (shown,) = server.wait_for(1)
    assert (shown.summary, shown.body, shown.accepted) == ("Title", "hello", True)
    assert abs(shown.wall - time.time()) < 10


def test_a_hanging_server_does_not_answer(world):
    server = world.notification_server(mode=servers.HANG)
    with pytest.raises(GLib.Error):
        notify(world)
    assert [call.accepted for call in server.wait_for_calls(1)] == [False]


def test_a_server_can_misbehave_a_few_times_only(world):
    server = world.notification_server()
    server.set(servers.ZERO, count=2)
    assert [notify(world), notify(world), notify(world)] == [0, 0, 1]
    assert len(server.wait_for(1)) == 1


def test_a_server_can_crash_behind_its_answer(world):
    server = world.notification_server(mode=servers.CRASH_AFTER)
    assert notify(world) == 1
    server.wait_for_end()
    assert len(server.shown) == 1


def test_a_server_can_give_its_name_away_and_take_it_back(world):
    server = world.notification_server()
    connection = world.bus.connect()
    server.give_up_name()
    assert not connection.owner(servers.NAME)
    server.take_name()
    assert connection.owner(servers.NAME)
    connection.close()


def date_in(world):
    return float(
        subprocess.check_output(["date", "+%s.%N"], env=world.environment | world.clock.environment())
    )


@pytest.mark.parametrize("offset", [0, 3600, -50 * 365 * 86400, 70 * 365 * 86400])
def test_programs_see_the_clock_of_the_world(world, offset):
    world.clock.step(offset)
    assert abs(date_in(world) - world.clock.now()) < 5


def test_sleeping_moves_the_time_since_boot_and_not_the_monotonic_clock(world):
    world.clock.sleep(5000)
    script = "import time as t; print(t.clock_gettime(t.CLOCK_BOOTTIME), t.clock_gettime(t.CLOCK_MONOTONIC))"
    environment = world.environment | world.clock.environment()
    boot, monotonic = map(
        float, subprocess.check_output(["/usr/bin/python3", "-c", script], env=environment).split()
    )
    assert abs(boot - time.clock_gettime(time.CLOCK_BOOTTIME) - 5000) < 5
    assert abs(monotonic - time.monotonic()) < 5


WAIT_FOR_TIMER = """
import ctypes, os, struct, sys, time
libc = ctypes.CDLL(None, use_errno=True)
libc.read.argtypes = [ctypes.c_int, ctypes.c_void_p, ctypes.c_size_t]
timer = libc.timerfd_create(0, 0)
due = float(sys.argv[1])
def arm():
    libc.timerfd_settime(timer, 3, struct.pack("=qqqq", 0, 0, int(due), int(due % 1 * 1e9)), None)
arm()
print("armed", flush=True)
while libc.read(timer, ctypes.create_string_buffer(8), 8) < 0:
    error = os.strerror(ctypes.get_errno())
    arm()
    print(error, flush=True)
print(time.time(), flush=True)
"""


def waiting_for(world, due):
    process = subprocess.Popen(
        ["/usr/bin/python3", "-c", WAIT_FOR_TIMER, str(due)],
        text=True,
        stdout=subprocess.PIPE,
        env=world.environment | world.clock.environment(),
    )
    assert process.stdout.readline() == "armed\n"
    return process


def test_timers_follow_the_clock_of_the_world(world):
    world.clock.step(86400)
    due = world.clock.now() + 0.5
    output, _ = waiting_for(world, due).communicate(timeout=10)
    assert 0 <= float(output) - due < 5


def test_a_waiting_program_learns_that_the_clock_was_set(world):
    due = world.clock.now() + 3600
    process = waiting_for(world, due)
    world.clock.step(1000, tell=[process.pid])
    assert process.stdout.readline() == os.strerror(125) + "\n"  # ECANCELED
    world.clock.step(3000, tell=[process.pid])
    output, _ = process.communicate(timeout=10)
    assert output.startswith(os.strerror(125)) and float(output.split()[-1]) >= due


def test_a_program_may_stand_still_while_the_clock_goes_on(world):
    process = waiting_for(world, world.clock.now() + 0.2)
    os.kill(process.pid, 19)
    settle(0.5)
    os.kill(process.pid, 18)
    output, _ = process.communicate(timeout=10)
    assert float(output) > 0


def test_system_services_can_be_mocked(world):
    connection = world.mock_system_service("logind")
    assert connection.owner("org.freedesktop.login1")
