"""A private desktop on which the application rings: its pixels, its sound, and a pointer."""

import array
import importlib.machinery
import importlib.util
import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

from tinkra_world import processes

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["TINKRA_BUILD"])
TINKRA = str(BUILD / "App/CommandLine/tinkra")
APPLICATION = str(BUILD / "App/libexec/tinkra-app")
RATE = 48000

BACKDROP = (10, 120, 200)  # of the full-screen program; nothing of the banner's is like it
BANNER = (580, 104)
CARD_MARGIN = 10


def _load_script(name):
    loader = importlib.machinery.SourceFileLoader(name.replace("-", "_"), str(ROOT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


headless_desktop = _load_script("headless-desktop")


def wait_until(condition, seconds=10, what="the condition"):
    return processes.wait_until(condition, seconds, what, every=0.02)


class Picture:
    """What is on the screen, as rows of RGB."""

    def __init__(self, data, width, height):
        self._data, self.width, self.height = data, width, height

    def at(self, x, y):
        offset = (int(y) * self.width + int(x)) * 3
        return tuple(self._data[offset:offset + 3])

    def count(self, color, box=None, tolerance=6):
        """How many pixels of `box` (left, top, right, bottom) are about of this colour."""
        left, top, right, bottom = (int(edge) for edge in box or (0, 0, self.width, self.height))
        wanted = 0
        for y in range(top, bottom):
            row = self._data[(y * self.width + left) * 3:(y * self.width + right) * 3]
            for x in range(0, len(row), 3):
                wanted += all(abs(row[x + i] - color[i]) <= tolerance for i in range(3))
        return wanted


class AlarmDesktop:
    """Use as a context manager. The application of this build rings on it."""

    def __init__(self, size="1920x1080"):
        self.directory = tempfile.mkdtemp(prefix="tinkra-alarm-")
        headless_desktop.libc.prctl(headless_desktop.PR_SET_CHILD_SUBREAPER, 1)
        self._desktop = headless_desktop.Desktop(self.directory, size, [])
        self.size = tuple(int(edge) for edge in size.split("x"))
        self.environment = self._desktop.environment
        self.environment["LC_ALL"] = "C.UTF-8"
        self.environment["PULSE_COOKIE"] = self.directory + "/cookie"
        # libxkbcommon copies with strndup from a message that has no end of string, which that check forbids.
        self.environment["ASAN_OPTIONS"] = os.environ.get("ASAN_OPTIONS", "") + ":strict_string_checks=0"
        self.application = None

    def __enter__(self):
        try:
            self._desktop.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self._desktop.stop()
        shutil.rmtree(self.directory, ignore_errors=True)

    # Programs.

    def spawn(self, *command, **keywords):
        environment = self.environment | keywords.pop("more", {})
        return subprocess.Popen(command, env=environment, preexec_fn=headless_desktop.die_with_parent,
            **{"stdin": subprocess.DEVNULL} | keywords)

    def output(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=True, timeout=30).stdout

    def start_application(self, **more):
        self.application = self.spawn(APPLICATION, more=more)
        wait_until(self._application_answers, what="the application")
        return self.application

    def _application_answers(self):
        assert self.application.poll() is None, "the application has ended"
        answer = subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
            "--method", "org.freedesktop.DBus.NameHasOwner", "co.calendarmurkel.Tinkra"], env=self.environment,
            capture_output=True, text=True)
        return "true" in answer.stdout

    def owner(self, name):
        """The process that owns a name on the session bus."""
        answer = self.output("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
            "--method", "org.freedesktop.DBus.GetConnectionUnixProcessID", name)
        return int(answer.strip("()\n, ").split()[-1])

    def end_application(self, how=signal.SIGTERM):
        if self.application and self.application.poll() is None:
            self.application.send_signal(how)
            self.application.wait(10)
        self.application = None

    def configure(self, **settings):
        """Stored settings; those that are not named have their defaults."""
        folder = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "tinkra"
        folder.mkdir(mode=0o700, exist_ok=True)
        whole = {"leadTime": 0, "style": "notificationAndWindow", "ignoreAllDay": True, "soundName": "default",
            "snoozeInterval": 300, "raiseVolume": True, "keepAwake": True} | settings
        document = {"masterEnabled": True, "settings": whole, "monitoring": {"selectedCalendarIDs": []}}
        (folder / "tinkra.configuration").write_text(json.dumps(document))

    def tinkra(self, *arguments):
        return subprocess.run([TINKRA, *arguments], env=self.environment, capture_output=True, text=True, timeout=60)

    def ring(self):
        outcome = self.tinkra("test-alarm")
        assert (outcome.returncode, outcome.stdout, outcome.stderr) == (0, "", "")
        wait_until(self.rings, what="the banner")
        time.sleep(0.6)  # it slides for 0.45 s

    # The screen.

    def picture(self):
        data = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"], env=self.environment,
            capture_output=True, check=True).stdout
        return Picture(data, *self.size)

    def banner_box(self, scale=1.0, left=0, width=None, top=0):
        """Where the resting banner is on a screen that begins at `left`, in pixels."""
        middle = left + (width or self.size[0]) / 2
        return (middle - BANNER[0] * scale / 2, top + 8 * scale, middle + BANNER[0] * scale / 2,
            top + (8 + BANNER[1]) * scale)

    def shows_banner(self, picture=None, **place):
        """Whether the card, white for the most part, is at its place."""
        left, top, right, bottom = self.banner_box(**place)
        inset = 14 * place.get("scale", 1.0)
        picture = picture or self.picture()
        inside = (left + inset, top + inset, right - inset, top + inset + 8)
        return picture.count((255, 255, 255), inside, tolerance=3) > 0.9 * (inside[2] - inside[0]) * 8

    def window_tree(self):
        """Every window there is. xwininfo gives up when one goes away while it walks, and is asked again."""
        for _ in range(9):
            try:
                return self.output("xwininfo", "-root", "-tree")
            except subprocess.CalledProcessError:
                continue
        return self.output("xwininfo", "-root", "-tree")

    def windows(self):
        """The windows of ours that are shown, as (left, top, width, height)."""
        found = []
        for line in self.window_tree().splitlines():
            if '"Calendar Murkel": (' not in line or "1x1" in line:
                continue
            state = subprocess.run(["xwininfo", "-id", line.split()[0]], env=self.environment, capture_output=True,
                text=True).stdout  # empty when it has gone meanwhile
            if "IsViewable" in state:
                found.append(tuple(int(state.split(name)[1].split()[0]) for name in
                    ("Absolute upper-left X:", "Absolute upper-left Y:", "Width:", "Height:")))
        return found

    def rings(self):
        return bool(self.windows())

    def wait_for_silence(self):
        wait_until(lambda: not self.rings(), what="the banner to leave")

    # The pointer.

    def move(self, x, y):
        self.output("xdotool", "mousemove", str(int(x)), str(int(y)))

    def click(self, x, y):
        self.move(x, y)
        time.sleep(0.05)
        self.output("xdotool", "click", "1")

    def button(self, name, **place):
        """The middle of a button of the resting banner."""
        scale = place.get("scale", 1.0)
        left, top, right, bottom = self.banner_box(**place)
        from_right = {"Dismiss": 80, "Snooze": 187}[name]
        return (right - from_right * scale, (top + bottom) / 2)

    def press(self, name, **place):
        self.click(*self.button(name, **place))

    # The sound.

    def volume(self):
        text = self.output("pactl", "get-sink-volume", "@DEFAULT_SINK@")
        return int(text.split("%")[0].split()[-1])

    def is_muted(self):
        return "yes" in self.output("pactl", "get-sink-mute", "@DEFAULT_SINK@")

    def set_volume(self, percent, muted=False):
        self.output("pactl", "set-sink-volume", "@DEFAULT_SINK@", f"{percent}%")
        self.output("pactl", "set-sink-mute", "@DEFAULT_SINK@", str(int(muted)))

    def streams(self):
        return len(self.output("pactl", "list", "short", "sink-inputs").splitlines())

    def sound_server(self):
        return self._part("pulseaudio")

    def session_bus(self):
        return self._part("dbus-daemon")

    def display_server(self):
        return self._part("Xvfb")

    @staticmethod
    def _part(name):
        """The newest child of ours of this name."""
        found = subprocess.run(["pgrep", "-n", "-x", "-P", str(os.getpid()), name], capture_output=True, text=True, check=True)
        return int(found.stdout)

    def start_sound_server(self):
        pathlib.Path(self.environment["PULSE_SERVER"].removeprefix("unix:")).unlink(missing_ok=True)
        self._desktop._start_sound()

    def listen(self):
        return Listening(self)


class Listening:
    """What the silent device plays, from now on."""

    def __init__(self, desktop):
        self._path = pathlib.Path(desktop.directory) / f"heard-{time.monotonic_ns()}"
        self._file = self._path.open("wb")
        self._process = desktop.spawn("parec", "--device=@DEFAULT_MONITOR@", "--format=s16le", "--channels=1",
            f"--rate={RATE}", "--latency-msec=5", stdout=self._file)
        wait_until(lambda: self._path.stat().st_size > 0, what="the monitor of the sound device")

    def end(self):
        """The samples until now."""
        time.sleep(0.1)
        self._process.terminate()
        self._process.wait()
        self._file.close()
        samples = array.array("h")
        data = self._path.read_bytes()
        samples.frombytes(data[:len(data) // 2 * 2])
        return samples

    def position(self):
        """How many samples have been heard by now."""
        return self._path.stat().st_size // 2


def quiet_stretches(samples, threshold=8):
    """(begin, length) of the stretches in which no sample is louder, in samples."""
    found, begin = [], None
    for i, sample in enumerate(samples):
        if -threshold <= sample <= threshold:
            begin = i if begin is None else begin
        elif begin is not None:
            found.append((begin, i - begin))
            begin = None
    if begin is not None:
        found.append((begin, len(samples) - begin))
    return found
