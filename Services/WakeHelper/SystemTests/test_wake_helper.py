"""The wake helper as a program: it follows the wake files, and believes nobody."""

import os
import subprocess
import time
from pathlib import Path

import pytest

PROGRAM = Path(os.environ["TINKRA_BUILD"]) / "Services/WakeHelper/Sources/tinkra-wakehelper"


class Helper:
    def __init__(self, folder):
        self.base = folder / "CalendarMurkel"
        self.base.mkdir(mode=0o1777)
        self.clock = folder / "wakealarm"
        self.clock.touch()
        self.process = subprocess.Popen([PROGRAM, self.base, self.clock], stderr=subprocess.PIPE, text=True)

    def own_folder(self):
        own = self.base / str(os.geteuid())
        own.mkdir(exist_ok=True)
        own.chmod(0o755)
        return own

    def write(self, text):
        part = self.own_folder() / "part"
        part.write_text(text)
        part.chmod(0o644)
        part.rename(self.own_folder() / "wake")

    def says(self):
        return self.process.stderr.readline().removeprefix("tinkra-wakehelper: ").strip()


@pytest.fixture
def helper(tmp_path):
    started = Helper(tmp_path)
    yield started
    started.process.kill()
    started.process.wait()


def test_it_follows_the_file_of_a_user_who_comes_later(helper):
    wake = int(time.time()) + 3600
    assert helper.says() == "no wake is wanted"

    helper.write(str(wake))
    assert helper.says() == f"the machine is woken at {wake}"
    helper.write(str(wake + 60))
    assert helper.says() == f"the machine is woken at {wake + 60}"
    helper.write("0")
    assert helper.says() == "no wake is wanted"


def test_garbage_takes_the_wake_back(helper):
    wake = int(time.time()) + 3600
    helper.says()
    for garbage in ("x", str(wake) + "\n", "9" * 100, str(wake + 400 * 86400)):
        helper.write(str(wake))
        assert helper.says() == f"the machine is woken at {wake}"
        helper.write(garbage)
        assert helper.says() == "no wake is wanted", garbage


def test_a_wake_that_has_passed_is_over(helper):
    wake = int(time.time()) + 3
    helper.says()
    helper.write(str(wake))
    assert helper.says() == f"the machine is woken at {wake}"
    if (helper.clock.read_text()) == "":  # the kernel's timer tells the helper that the time has come
        assert helper.says() == "no wake is wanted"
        assert time.time() >= wake


def test_without_its_folder_it_ends_and_says_why(helper):
    assert helper.says() == "no wake is wanted"
    helper.base.rmdir()

    assert helper.says() == f"there is no folder {helper.base}"
    assert helper.process.wait(timeout=10) == 1
