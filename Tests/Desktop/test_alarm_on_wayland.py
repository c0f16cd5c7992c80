"""The banner of a ringing alarm in sway, without a display of its own: on the overlay layer, and through XWayland."""

import glob
import os
import subprocess
import time

import pytest
from alarm_desktop import BACKDROP, BUILD, AlarmDesktop, Picture, wait_until

PROGRAMS = BUILD / "Tests/Desktop/Programs"
NOBODY = 65534


class SwayDesktop(AlarmDesktop):
    """Sway in place of the X server and what belongs to it."""

    def __init__(self, xwayland):
        super().__init__("1920x1080")
        self._xwayland = xwayland

    def __enter__(self):
        try:
            self._desktop._start_bus()
            self._desktop._start_sound()
            self._start_sway()
            self._pointer = self.spawn(str(PROGRAMS / "virtual-pointer"), *(str(edge) for edge in self.size),
                stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        except BaseException:
            self.__exit__()
            raise
        return self

    def _start_sway(self):
        runtime = os.path.join(self.directory, "sway")
        os.mkdir(runtime, 0o700)
        configuration = os.path.join(runtime, "config")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(f"xwayland {'force' if self._xwayland else 'disable'}\n"
                       f"exec xhost +local: && echo $DISPLAY >{runtime}/display\n"
                       "output HEADLESS-1 resolution 1920x1080 position 0 0 background #404040 solid_color\n")
        command = ["sway", "--config", configuration]
        if os.getuid() == 0:  # sway refuses to run as root
            os.chmod(self.directory, 0o711)
            for path in (runtime, configuration):
                os.chown(path, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
        with open(os.path.join(self.directory, "sway.log"), "wb") as log:
            self.spawn(*command, stdout=log, stderr=log, more={"XDG_RUNTIME_DIR": runtime, "HOME": runtime,
                "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"})
        sockets = wait_until(lambda: glob.glob(runtime + "/wayland-?"), what="sway")
        self.environment["WAYLAND_DISPLAY"] = sockets[0]
        self.environment["SWAYSOCK"] = wait_until(lambda: glob.glob(runtime + "/sway-ipc.*"), what="sway's socket")[0]
        self.environment["XDG_SESSION_TYPE"] = "wayland"
        if self._xwayland:
            self.environment["DISPLAY"] = wait_until(self._x_display, what="XWayland")

    def _x_display(self):
        try:
            with open(os.path.join(self.directory, "sway/display"), encoding="utf-8") as file:
                return file.read().strip()
        except FileNotFoundError:
            return ""

    def picture(self):
        data = subprocess.run(["grim", "-t", "ppm", "-"], env=self.environment, capture_output=True, check=True).stdout
        _, size, _, pixels = data.split(b"\n", 3)
        return Picture(pixels, *(int(edge) for edge in size.split()))

    def rings(self):
        return self.shows_banner()

    def obey(self, command):
        self._pointer.stdin.write(command + "\n")
        self._pointer.stdin.flush()
        assert self._pointer.stdout.readline() == "done\n"

    def move(self, x, y):
        self.obey(f"move {int(x)} {int(y)}")

    def click(self, x, y):
        self.move(x, y)
        time.sleep(0.1)
        self.obey("press")
        time.sleep(0.05)
        self.obey("release")


class FullScreenProgram:
    def __init__(self, desktop):
        self._log = open(f"{desktop.directory}/full-screen.log", "w+")
        color = "#{:02x}{:02x}{:02x}".format(*BACKDROP)
        self._process = desktop.spawn(str(PROGRAMS / "full-screen-program"), color, stdout=self._log,
            more={"QT_QPA_PLATFORM": "wayland"})
        wait_until(lambda: desktop.picture().count(BACKDROP, (0, 0, 100, 60)) == 6000, what="the full-screen program")

    @property
    def lines(self):
        self._log.seek(0)
        return self._log.read().splitlines()

    def close(self):
        self._process.kill()
        self._process.wait()
        self._log.close()


@pytest.fixture(scope="module", params=["layer shell", "XWayland"])
def shared_desktop(request):
    with SwayDesktop(xwayland=request.param == "XWayland") as desktop:
        desktop.more = {"QT_QPA_PLATFORM": "xcb"} if request.param == "XWayland" else {}
        yield desktop


@pytest.fixture
def desktop(shared_desktop):
    shared_desktop.configure()
    shared_desktop.set_volume(40)
    shared_desktop.move(960, 540)
    program = FullScreenProgram(shared_desktop)
    shared_desktop.full_screen = program
    yield shared_desktop
    shared_desktop.end_application()
    program.close()
    wait_until(lambda: shared_desktop.streams() == 0, what="silence")


def test_the_banner_lies_above_a_full_screen_program_and_dismiss_takes_it_away(desktop):
    desktop.set_volume(40, muted=True)
    desktop.start_application(**desktop.more)
    desktop.ring()
    picture = desktop.picture()
    assert desktop.shows_banner(picture)
    assert picture.count(BACKDROP, (0, 200, 400, 300)) == 40000
    assert desktop.volume() == 70 and not desktop.is_muted() and desktop.streams() == 1

    desktop.press("Dismiss")

    desktop.wait_for_silence()
    assert desktop.volume() == 40 and desktop.streams() == 0
    assert not any(line.startswith("button") for line in desktop.full_screen.lines)


def test_snooze_takes_it_away_and_it_rings_again(desktop):
    desktop.configure(snoozeInterval=3)
    desktop.start_application(**desktop.more)
    desktop.ring()

    desktop.press("Snooze")
    desktop.wait_for_silence()
    assert desktop.volume() == 40 and desktop.streams() == 0
    wait_until(desktop.rings, what="the second ring")


def test_the_keyboard_stays_with_the_full_screen_program(desktop):
    desktop.start_application(**desktop.more)
    desktop.ring()

    desktop.output("wtype", "-s", "500", "a")  # its keyboard is new to everybody
    wait_until(lambda: "key 65 0" in desktop.full_screen.lines, what="the key")


# XWayland keeps the shape of a window's input to itself: there the margin takes clicks.
@pytest.mark.parametrize("shared_desktop", ["layer shell"], indirect=True)
def test_a_click_into_the_transparent_margin_belongs_to_what_lies_below(desktop):
    desktop.start_application(**desktop.more)
    desktop.ring()
    left, top, right, bottom = desktop.banner_box()

    desktop.click(left + 4, top + 50)
    wait_until(lambda: f"button {int(left + 4)} {int(top + 50)}" in desktop.full_screen.lines, what="the click")
    assert desktop.rings()


@pytest.mark.parametrize("shared_desktop", ["layer shell"], indirect=True)
def test_the_doctor_says_which_way_is_used(desktop):
    assert "on the compositor's overlay layer" in desktop.tinkra("doctor").stdout
