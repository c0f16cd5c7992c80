"""The banner of a ringing alarm on X11: above everything, pressed with a real pointer."""

import os
import signal
import subprocess
import sys
import time

import pytest
from alarm_desktop import APPLICATION, BACKDROP, AlarmDesktop, wait_until


@pytest.fixture(scope="module")
def shared_desktop():
    with AlarmDesktop() as desktop:
        yield desktop


@pytest.fixture
def desktop(shared_desktop):
    shared_desktop.configure()
    shared_desktop.set_volume(40)
    shared_desktop.move(960, 540)
    yield shared_desktop
    shared_desktop.end_application()
    wait_until(lambda: shared_desktop.streams() == 0, what="silence")


class FullScreenProgram:
    def __init__(self, desktop):
        self._log = open(f"{desktop.directory}/full-screen.log", "w+")
        color = ",".join(str(part) for part in BACKDROP)
        program = __file__.replace("test_alarm_on_x11.py", "full_screen_program.py")
        self._process = desktop.spawn(sys.executable, program, color, stdout=self._log)
        wait_until(lambda: "focused" in self.lines, what="the full-screen program")
        wait_until(lambda: desktop.picture().count(BACKDROP, (0, 0, 100, 60)) == 6000, what="its colour")

    @property
    def lines(self):
        self._log.seek(0)
        return self._log.read().splitlines()

    def close(self):
        self._process.kill()
        self._process.wait()
        self._log.close()


@pytest.fixture
def full_screen(desktop):
    program = FullScreenProgram(desktop)
    yield program
    program.close()


def test_the_banner_lies_above_a_focused_full_screen_program_and_leaves_it_the_keyboard(desktop, full_screen):
    desktop.start_application()
    desktop.ring()

    picture = desktop.picture()
    assert desktop.shows_banner(picture)
    assert picture.count(BACKDROP, (0, 200, 400, 300)) == 40000, "the rest of the screen is the program's"
    desktop.output("xdotool", "key", "a")
    wait_until(lambda: f"key {ord('a')}" in full_screen.lines, what="the key")
    assert "unfocused" not in full_screen.lines


def test_dismiss_takes_it_away_and_restores_the_volume(desktop, full_screen):
    desktop.set_volume(40, muted=True)
    desktop.start_application()
    desktop.ring()
    assert desktop.volume() == 70 and not desktop.is_muted() and desktop.streams() == 1

    desktop.press("Dismiss")

    desktop.wait_for_silence()
    assert not desktop.shows_banner() and desktop.streams() == 0
    assert desktop.volume() == 40 and not desktop.is_muted()
    assert [line for line in full_screen.lines if line.startswith("button")] == [], "the click was the banner's"


def test_snooze_takes_it_away_and_it_rings_again(desktop, full_screen):
    desktop.configure(snoozeInterval=3)
    desktop.start_application()
    desktop.ring()

    desktop.press("Snooze")
    desktop.wait_for_silence()
    assert desktop.volume() == 40 and desktop.streams() == 0

    wait_until(lambda: desktop.rings() and desktop.shows_banner(), what="the second ring")
    assert desktop.volume() == 70


def test_without_raising_the_volume_and_mute_are_left_alone(desktop):
    desktop.configure(raiseVolume=False)
    desktop.set_volume(30, muted=True)
    desktop.start_application()
    desktop.ring()

    assert desktop.volume() == 30 and desktop.is_muted()
    desktop.press("Dismiss")
    desktop.wait_for_silence()
    assert desktop.volume() == 30 and desktop.is_muted()


def test_a_click_into_the_transparent_margin_belongs_to_what_lies_below(desktop, full_screen):
    desktop.start_application()
    desktop.ring()
    left, top, right, bottom = desktop.banner_box()

    for x, y in ((left + 4, top + 50), (right - 4, top + 50), (left + 290, bottom - 4), (left + 12, top + 12)):
        desktop.click(x, y)
        wait_until(lambda: f"button {int(x)} {int(y)}" in full_screen.lines, what=f"the click at {x}, {y}")
    assert desktop.rings()


def test_it_can_be_dragged_aside_and_leaves_upwards_from_there(desktop):
    desktop.start_application()
    desktop.ring()
    left, top, right, bottom = desktop.banner_box()

    desktop.move(left + 300, top + 18)
    desktop.output("xdotool", "mousedown", "1")
    for step in range(1, 11):
        desktop.move(left + 300 - 30 * step, top + 18 + 20 * step)
        time.sleep(0.02)
    desktop.output("xdotool", "mouseup", "1")

    wait_until(lambda: desktop.shows_banner(left=-300, top=200), what="the banner at its new place")
    desktop.press("Dismiss", left=-300, top=200)
    desktop.wait_for_silence()


def test_without_a_compositor_nothing_black_surrounds_the_card(desktop, full_screen):
    desktop.output("pkill", "-x", "-P", str(os.getpid()), "picom")
    try:
        wait_until(lambda: "picom" not in desktop.window_tree(), what="the compositor's end")
        desktop.start_application()
        desktop.ring()
        picture = desktop.picture()
        assert desktop.shows_banner(picture)
        left, top, right, bottom = desktop.banner_box()
        for x, y in ((left + 4, top + 50), (right - 4, top + 50), (left + 290, bottom - 4), (left + 12, top + 12)):
            assert picture.at(x, y) == BACKDROP
        desktop.press("Dismiss")
        desktop.wait_for_silence()
    finally:
        desktop.spawn("picom", "--backend", "xrender", "--config", "/dev/null")
        wait_until(lambda: "picom" in desktop.window_tree(), what="the compositor")


@pytest.mark.parametrize("scale", [1.5, 2.0])
def test_it_is_as_large_as_the_display_asks_for_and_its_buttons_are_where_they_show(desktop, scale):
    desktop.start_application(QT_SCALE_FACTOR=str(scale))
    desktop.ring()

    assert desktop.shows_banner(scale=scale)
    desktop.press("Dismiss", scale=scale)
    desktop.wait_for_silence()


def test_it_keeps_clear_of_panels(desktop):
    panel = desktop.spawn(sys.executable, "-c", """
from Xlib import X, Xatom, display
d = display.Display()
w = d.screen().root.create_window(0, 0, 1920, 40, 0, d.screen().root_depth, background_pixel=0x222222)
w.change_property(d.intern_atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32, [d.intern_atom("_NET_WM_WINDOW_TYPE_DOCK")])
w.change_property(d.intern_atom("_NET_WM_STRUT_PARTIAL"), Xatom.CARDINAL, 32, [0, 0, 40, 0, 0, 0, 0, 0, 0, 1919, 0, 0])
w.map()
while True: d.next_event()
""")
    try:
        wait_until(lambda: "_NET_WORKAREA(CARDINAL) = 0, 40" in desktop.output("xprop", "-root", "_NET_WORKAREA"),
            what="the panel's strut")
        desktop.start_application()
        desktop.ring()
        assert desktop.shows_banner(top=40)
    finally:
        panel.kill()
        panel.wait()


@pytest.fixture
def two_screens(desktop):
    output = desktop.output("xrandr", "--listmonitors").split()[-1]
    desktop.output("xrandr", "--setmonitor", "left", "960/254x1080/286+0+0", output)
    desktop.output("xrandr", "--setmonitor", "right", "960/254x1080/286+960+0", "none")
    yield desktop
    for name in ("left", "right"):
        subprocess.run(["xrandr", "--delmonitor", name], env=desktop.environment, capture_output=True)


@pytest.mark.parametrize("screen", ["left", "right"])
def test_it_shows_on_the_screen_under_the_pointer(two_screens, screen):
    desktop = two_screens
    left = 0 if screen == "left" else 960
    desktop.move(left + 100, 700)
    desktop.start_application()
    desktop.ring()

    assert desktop.shows_banner(left=left, width=960)


def test_it_survives_the_loss_of_its_screen(two_screens):
    desktop = two_screens
    desktop.move(1500, 700)
    desktop.start_application()
    desktop.ring()
    assert desktop.shows_banner(left=960, width=960)

    desktop.output("xrandr", "--delmonitor", "right")

    wait_until(lambda: desktop.shows_banner(left=0, width=960), what="the banner on the screen that is left")
    desktop.press("Dismiss", left=0, width=960)
    desktop.wait_for_silence()


def test_a_second_alarm_replaces_the_first_and_the_first_volume_comes_back(desktop):
    desktop.start_application()
    desktop.ring()
    desktop.ring()
    wait_until(lambda: len(desktop.windows()) == 1, what="one banner")
    assert desktop.streams() == 1 and desktop.volume() == 70

    desktop.press("Dismiss")
    desktop.wait_for_silence()
    assert desktop.volume() == 40


def test_the_command_starts_the_application_and_a_second_start_leaves_at_once(desktop):
    desktop.ring()
    assert desktop.shows_banner()
    second = desktop.spawn(APPLICATION)
    assert second.wait(10) == 0
    desktop.press("Dismiss")
    desktop.wait_for_silence()
    os.kill(desktop.owner("co.calendarmurkel.Tinkra"), signal.SIGTERM)
