"""A private desktop world: folders, buses, clock, servers and daemons that belong to one test."""

import os
import shutil
import subprocess
import tempfile
import threading
import time
from pathlib import Path

from . import processes
from .alarms import Alarm
from .bus import MessageBus
from .client import NotificationCentre
from .clock import SteeredClock
from .daemon import NotificationDaemon
from .ledger import Ledger, LedgerViolation
from .notification_server import NotificationServer
from .sound_server import SoundServer

_PASSED_ON = (
    "ASAN_OPTIONS",
    "UBSAN_OPTIONS",
    "LSAN_OPTIONS",
    "TSAN_OPTIONS",
    "TINKRA_BUILD",
    "TINKRA_SANITIZED",
)
_REPORTS = ("ERROR: AddressSanitizer", "ERROR: LeakSanitizer", "runtime error:", "WARNING: ThreadSanitizer")


class TouchesUserData(Exception):
    """A program was about to run with folders or buses that do not belong to the test."""


def build_folder() -> Path:
    return Path(os.environ["TINKRA_BUILD"])


def sanitized() -> bool:
    """Whether the programs carry a sanitizer and are some ten times slower."""
    return os.environ.get("TINKRA_SANITIZED") == "1"


class World:
    """Use it as a context manager. Leaving it ends every process in it, removes every file, and fails when a
    process was left over by what was tested, or when a sanitizer had something to report."""

    def __init__(self, zone="UTC", open_to_all_users=False):
        processes.adopt_orphans()
        self.root = Path(tempfile.mkdtemp(prefix="tinkra-world-"))
        self.home = self._folder("home")
        self.data = self._folder("home/.local/share")
        self.state = self._folder("home/.local/state")
        self.config = self._folder("home/.config")
        self.cache = self._folder("home/.cache")
        self.runtime = self._folder("runtime")
        self.logs = self._folder("logs")
        if open_to_all_users:
            self.root.chmod(0o711)
        self.zone = zone
        self.environment = {
            "PATH": "/usr/bin:/bin:/usr/sbin:/sbin",
            "LANG": "C.UTF-8",
            "TZ": zone,
            "HOME": str(self.home),
            "XDG_DATA_HOME": str(self.data),
            "XDG_STATE_HOME": str(self.state),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_CACHE_HOME": str(self.cache),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "XDG_DATA_DIRS": "/usr/share",
            "XDG_CONFIG_DIRS": "/etc/xdg",
            "TMPDIR": str(self._folder("tmp")),
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.root}/no-system-bus",
            # Where it is named, no program starts a sound server of its own.
            "PULSE_SERVER": f"unix:{self.root}/no-sound-server",
            processes.MARK: str(self.root),
        } | {name: os.environ[name] for name in _PASSED_ON if name in os.environ}
        self.clock = SteeredClock(self.root, self._library("libtinkra_steered_clock.so"))
        self.ledger = Ledger()
        self.machine = _MachineLateness()
        self._closing = []
        self.bus = MessageBus(self.root / "bus", self.environment, open_to_all_users).start()
        if open_to_all_users:
            (self.root / "bus").chmod(0o711)
            (self.root / "bus/socket").chmod(0o777)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.address
        self._system_bus = None
        self._alarms = 0
        self._daemons = 0

    # What a test takes from the world.

    def daemon(self) -> NotificationDaemon:
        self._daemons += 1
        return self.keep(NotificationDaemon(self, self.keep(self.bus.connect()), self._daemons))

    def notification_server(self, **options) -> NotificationServer:
        """A recording server. At most one that owns the name."""
        return self.keep(NotificationServer(self.bus.address, self.environment, **options).start())

    def client(self, start=False, timeout: float = 10, ledger=True) -> NotificationCentre:
        return self.keep(
            NotificationCentre(self.bus.connect(), self.ledger if ledger else None, start, timeout)
        )

    def alarm(self, after: float, identifier=None, title=None, lead: float = 300) -> Alarm:
        """An alarm that fires `after` seconds from now on the world's clock, for a meeting `lead` seconds
        later."""
        self._alarms += 1
        fire = self.clock.now() + after
        return Alarm(
            identifier or f"alarm-{self._alarms}",
            f"Meeting {self._alarms}" if title is None else title,
            fire,
            fire + lead,
            self.zone,
        )

    def let_bus_start_daemon(self, program=None):
        """The service file of the daemon, so that a call to its name starts it."""
        self.bus.add_service(
            "co.calendarmurkel.NotificationCenter", str(program or self.program("tinkra-notifierd"))
        )

    def system_bus(self) -> MessageBus:
        """A system bus of the world's own; until it is asked for, there is none."""
        if self._system_bus is None:
            self._system_bus = MessageBus(self.root / "system-bus", self.environment).start()
            self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self._system_bus.address
        return self._system_bus

    def sound_server(self) -> SoundServer:
        """A sound server that listens to what is played; until it is asked for, there is none."""
        self.environment["PULSE_SERVER"] = f"unix:{self.root}/sound"
        return self.keep(SoundServer(self.root / "sound", self.logs, self.environment))

    def mock_system_service(self, template: str):
        """One of python3-dbusmock's templates (logind, timedated) on the system bus."""
        bus = self.system_bus()
        name = {"logind": "org.freedesktop.login1", "timedated": "org.freedesktop.timedate1"}[template]
        with (self.logs / template).open("wb") as log:
            process = subprocess.Popen(
                ["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", template],
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
                env=self.environment,
            )
        self.keep(_Ended(process))
        connection = self.keep(bus.connect())
        processes.wait_until(lambda: connection.owner(name), 10, f"the mock of {template}")
        return connection

    def program(self, name: str) -> Path:
        """A program of the build under test."""
        found = [
            path
            for folder in ("Services", "App")
            for path in (build_folder() / folder).rglob(name)
            if path.is_file() and os.access(path, os.X_OK)
        ]
        if not found:
            raise FileNotFoundError(f"{name} is not below {build_folder()}; build it first")
        return found[0]

    @property
    def store(self) -> Path:
        return self.state / "tinkra" / "notifications.db"

    def check_ledger(self, server, missed=(), until=None, within: float = 5):
        """The ledger check, as soon as everything that is due was shown, or after `within` seconds. What is
        shown too late stays a violation: the times are those of the showing."""
        end = time.monotonic() + within
        while True:
            try:
                self.ledger.check(server.shown, missed, self.clock, until, self.machine.lateness())
                break
            except LedgerViolation:
                if time.monotonic() > end:
                    raise
            time.sleep(0.02)

    def require_privacy(self):
        """Refuses to go on when something a program would use lies outside the world."""
        for name in (
            "HOME",
            "TMPDIR",
            *(name for name in self.environment if name.startswith("XDG_") and not name.endswith("_DIRS")),
        ):
            if not Path(self.environment[name]).resolve().is_relative_to(self.root.resolve()):
                raise TouchesUserData(f"{name}={self.environment[name]} lies outside {self.root}")
        for name in ("DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS", "PULSE_SERVER"):
            if str(self.root) not in self.environment[name]:
                raise TouchesUserData(f"{name}={self.environment[name]} is not a server of the test")

    # Life and end.

    def __enter__(self):
        return self

    def __exit__(self, kind, _error, _trace):
        self.close(check=kind is None)

    def close(self, check=True):
        troubles = []
        for thing in [*reversed(self._closing), self.machine, self._system_bus, self.bus]:
            try:
                if thing is not None:
                    thing.close()
            except Exception as error:  # noqa: BLE001  whatever it is, the rest has to end too
                troubles.append(error)
        left = self._left_over()
        reports = self._sanitizer_reports()
        if not check or left or reports or troubles:
            self._print_logs()
        self.clock.close()
        shutil.rmtree(self.root)
        if check and troubles:
            raise troubles[0]
        if check and left:
            raise AssertionError(f"left running: {left}")
        if check and reports:
            raise AssertionError(f"a sanitizer reported: {reports}")

    def _left_over(self) -> list:
        """Ends what survived its bus, which the programs are free to outlive by two seconds."""
        end = time.monotonic() + 2
        while processes.marked(self.root) and time.monotonic() < end:
            time.sleep(0.01)
        left = [processes.describe(pid) for pid in processes.marked(self.root)]
        for pid in processes.marked(self.root):
            os.kill(pid, 9)
        return left

    def _sanitizer_reports(self) -> list:
        lines = (
            line
            for path in [*self.logs.iterdir(), self.root / "bus/log"]
            if path.is_file()
            for line in path.read_text(errors="replace").splitlines()
        )
        return [line for line in lines if any(report in line for report in _REPORTS)]

    def _print_logs(self):
        for path in sorted(self.logs.iterdir()):
            text = path.read_text(errors="replace") if path.is_file() else ""
            if text:
                print(f"--- {path.name}\n{text[-4000:]}")

    def keep(self, thing):
        """`thing.close()` is called when the world ends."""
        self._closing.append(thing)
        return thing

    def _folder(self, name) -> Path:
        path = self.root / name
        path.mkdir(mode=0o700, parents=True, exist_ok=True)
        return path

    @staticmethod
    def _library(name) -> Path:
        found = next(build_folder().joinpath("Tests").rglob(name), None)
        if found is None:
            raise FileNotFoundError(f"{name} is not below {build_folder()}; build it first")
        return found


class _Ended:
    """A plain process that ends with the world."""

    def __init__(self, process):
        self._process = process

    def close(self):
        processes.end(self._process)


class _MachineLateness:
    """How late this process itself was woken at worst: what a busy machine adds to everybody's lateness."""

    def __init__(self):
        self._worst = 0.0
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def lateness(self) -> float:
        return self._worst

    def close(self):
        self._ended.set()
        self._thread.join()

    def _watch(self):
        before = time.monotonic()
        while not self._ended.wait(0.05):
            now = time.monotonic()
            self._worst = max(self._worst, now - before - 0.05)
            before = now
