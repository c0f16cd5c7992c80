"""The private desktop itself: everything on it answers, and nothing of it stays."""

import os
import pathlib
import signal
import subprocess
import time

SCRIPT = str(pathlib.Path(__file__).resolve().parents[2] / "scripts" / "headless-desktop")


def inside(*command, **keywords):
    return subprocess.run([SCRIPT, *command], capture_output=True, text=True, timeout=60, **keywords)


def processes_of(directory):
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        try:
            environment = (entry / "environ").read_bytes() if entry.name.isdigit() else b""
        except OSError:
            continue
        if str(directory).encode() in environment:
            found.append((entry / "comm").read_text().strip())
    return found


def wait_until(condition, seconds=10):
    deadline = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < deadline, "waited in vain"
        time.sleep(0.05)


def test_every_service_answers():
    result = inside("sh", "-ec", """
        xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'
        xwininfo -root -tree | grep -q trayer
        pactl info | grep -q 'Default Sink: private'
        notify-send hello
        gdbus call --session --dest org.freedesktop.Notifications --object-path /org/freedesktop/Notifications \
            --method org.freedesktop.Notifications.GetServerInformation
    """)
    assert result.returncode == 0, result.stderr
    assert "dunst" in result.stdout


def test_home_and_directories_are_its_own():
    result = inside("sh", "-c", "echo $HOME $XDG_CONFIG_HOME $XDG_DATA_HOME $XDG_STATE_HOME $XDG_RUNTIME_DIR")
    paths = result.stdout.split()
    assert len(paths) == 5
    for path in paths:
        assert "tinkra-desktop-" in path
        assert not os.path.exists(path), "it should be gone by now"


def test_exit_status_is_that_of_the_command():
    assert inside("sh", "-c", "exit 7").returncode == 7


def test_a_program_that_is_not_there_is_named_in_one_line():
    result = inside("no-such-program")
    assert result.returncode == 1
    assert result.stderr.strip().splitlines() == ["headless-desktop: cannot run 'no-such-program': No such file or directory"]


def test_leaves_no_process_even_of_those_that_ran_away(tmp_path):
    result = inside("--keep", str(tmp_path), "sh", "-c", "setsid sleep 300 & setsid sh -c 'trap \"\" TERM; sleep 300; :' & sleep 0.2")
    assert result.returncode == 0
    assert processes_of(tmp_path) == []


def test_leaves_no_process_when_it_is_ended_or_killed(tmp_path):
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGKILL):
        directory = tmp_path / number.name
        desktop = subprocess.Popen([SCRIPT, "--keep", str(directory), "sleep", "300"])
        wait_until(lambda: "sleep" in processes_of(directory))
        desktop.send_signal(number)
        desktop.wait(timeout=15)
        wait_until(lambda: processes_of(directory) == [])
