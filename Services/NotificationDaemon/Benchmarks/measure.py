#!/usr/bin/python3
"""Measures the notification daemon in a private session: lateness, memory, wake-ups, cost of an addition.

    Services/NotificationDaemon/Benchmarks/measure.py BUILD_DIR [addition] [lateness] [idle] [many]

Without a word for what to measure, everything. TINKRA_MEASURE_DIR says on which file system. Starts its own session bus, notification server and state directory, and leaves nothing running. Times of the
addition are a ratio to bare fsyncs of the same file system in the same run.
"""

import datetime
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

NAME = "co.calendarmurkel.NotificationCenter"


def in_private_session():
    if os.environ.get("TINKRA_MEASURE_SESSION") != "1":
        environment = dict(os.environ, TINKRA_MEASURE_SESSION="1")
        os.execvpe("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv], environment)


in_private_session()

import dbus  # noqa: E402
import dbus.bus  # noqa: E402
import dbus.service  # noqa: E402
from dbus.mainloop import NULL_MAIN_LOOP  # noqa: E402
from dbus.mainloop.glib import DBusGMainLoop  # noqa: E402
from gi.repository import GLib  # noqa: E402


class Server(dbus.service.Object):
    """A notification server that notes when each call arrives."""

    INTERFACE = "org.freedesktop.Notifications"

    def __init__(self, bus):
        self.arrivals = []
        self.name = dbus.service.BusName(self.INTERFACE, bus)
        super().__init__(bus, "/org/freedesktop/Notifications")

    @dbus.service.method(INTERFACE, in_signature="susssasa{sv}i", out_signature="u")
    def Notify(self, _app, _replaces, _icon, _summary, body, _actions, _hints, _timeout):
        self.arrivals.append((time.time(), str(body)))
        return len(self.arrivals)

    @dbus.service.method(INTERFACE, out_signature="as")
    def GetCapabilities(self):
        return ["body", "body-markup", "actions"]

    @dbus.service.method(INTERFACE, out_signature="ssss")
    def GetServerInformation(self):
        return "measure", "tinkra", "1", "1.2"


def request(instant, body="Stand-up with a title of ordinary length"):
    local = datetime.datetime.fromtimestamp(instant)
    return dbus.Dictionary({
        "title": "Meeting starting", "body": body, "sound": "default", "interruptionLevel": dbus.Int32(2),
        "userInfo": dbus.Dictionary({"meetingID": "standup", "title": body, "fireDate": float(instant),
                                     "meetingStart": float(instant) + 600}, signature="sv"),
        "components": dbus.Struct([local.year, local.month, local.day, local.hour, local.minute, local.second],
                                  signature="iiiiii"),
        "repeats": False}, signature="sv")


class Daemon:
    def __init__(self, program, state):
        self.log = open(pathlib.Path(state) / "log", "a", encoding="utf-8")
        began = time.monotonic()
        self.process = subprocess.Popen([program], env=dict(os.environ, XDG_STATE_HOME=state), stderr=self.log)
        # Not served by the main loop: that belongs to another thread.
        self.bus = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"], mainloop=NULL_MAIN_LOOP)
        while not self.bus.name_has_owner(NAME):
            time.sleep(0.002)
        self.center = dbus.Interface(self.bus.get_object(NAME, "/co/calendarmurkel/NotificationCenter"), NAME + "1")
        self.center.AuthorizationStatus()
        self.start_time = time.monotonic() - began

    def end(self):
        self.process.terminate()
        status = self.process.wait(10)
        self.log.close()
        return status

    def memory(self):
        """Proportional and resident size, MiB."""
        rollup = pathlib.Path(f"/proc/{self.process.pid}/smaps_rollup").read_text(encoding="utf-8")
        values = {line.split(":")[0]: int(line.split()[1]) / 1024 for line in rollup.splitlines()[1:]}
        return values["Pss"], values["Rss"]

    def wakeups(self):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="utf-8")
        return int(next(line for line in status.splitlines() if line.startswith("voluntary")).split()[1])


def bare_fsyncs(folder, count):
    payload = b"x" * 4096
    with tempfile.NamedTemporaryFile(dir=folder) as file:
        began = time.monotonic()
        for _ in range(count):
            file.write(payload)
            file.flush()
            os.fsync(file.fileno())
        return time.monotonic() - began


def measure_addition(daemon, state, count):
    later = time.time() + 86400
    requests = [(f"alarm {i}", request(later + i)) for i in range(count)]
    ratios = []
    part = count // 5
    for start in range(0, count, part):  # interleaved, because the machine is not always equally busy
        bare = bare_fsyncs(state, part)
        began = time.monotonic()
        for identifier, content in requests[start:start + part]:
            daemon.center.Add(identifier, content)
        ratios.append((time.monotonic() - began, bare))
    added = sum(r[0] for r in ratios)
    bare = sum(r[1] for r in ratios)
    print(f"{count} additions one by one: {added:.3f} s; {count} bare fsyncs: {bare:.3f} s; ratio {added / bare:.2f}"
          f" (parts {', '.join(f'{a / b:.2f}' for a, b in ratios)})")


def measure_lateness(daemon, server, count):
    server.arrivals.clear()
    first = int(time.time()) + 2
    for i in range(count):
        daemon.center.Add(f"late {i}", request(first + i, f"late {i}"))
    deadline = first + count + 3
    while len(server.arrivals) < count and time.time() < deadline:
        time.sleep(0.2)
    late = [1000 * (when - (first + int(body.split()[1]))) for when, body in server.arrivals]
    print(f"lateness of {len(late)} of {count} notifications, at the server: median {statistics.median(late):.2f} ms,"
          f" worst {max(late):.2f} ms, best {min(late):.2f} ms")


def measure_idle(daemon, seconds):
    before = daemon.wakeups()
    time.sleep(seconds)
    print(f"wake-ups while nothing is due: {(daemon.wakeups() - before) * 60 / seconds:.1f} a minute ({seconds} s)")


def measure_many(program, state, count):
    daemon = Daemon(program, state)
    later = time.time() + 86400
    slowest = 0.0
    for i in range(count):
        while True:
            began = time.monotonic()
            try:
                daemon.center.Add(f"many {i}", request(later + i % 80000))
                break
            except dbus.exceptions.DBusException as error:
                if "LimitsExceeded" not in error.get_dbus_name():
                    raise
                time.sleep(0.5)
        slowest = max(slowest, time.monotonic() - began)
    assert daemon.end() == 0
    daemon = Daemon(program, state)
    began = time.monotonic()
    listed = len(daemon.center.PendingIdentifiers())
    listing = time.monotonic() - began
    began = time.monotonic()
    daemon.center.Add("one more", request(later))
    adding = time.monotonic() - began
    pss, rss = daemon.memory()
    print(f"{listed} pending: start {daemon.start_time:.2f} s, list {listing:.3f} s, one addition {1000 * adding:.1f} ms"
          f" (slowest while filling {1000 * slowest:.1f} ms), PSS {pss:.1f} MiB, RSS {rss:.1f} MiB")
    daemon.end()


def run(program, wanted):
    state = tempfile.mkdtemp(prefix="tinkra-measure-", dir=os.environ.get("TINKRA_MEASURE_DIR"))
    try:
        daemon = Daemon(program, state)
        if "addition" in wanted:
            measure_addition(daemon, state, 1000)
            pss, rss = daemon.memory()
            print(f"with {len(daemon.center.PendingIdentifiers())} pending: PSS {pss:.1f} MiB, RSS {rss:.1f} MiB")
        if "lateness" in wanted:
            measure_lateness(daemon, SERVERS[0], 20)
        if "idle" in wanted:
            measure_idle(daemon, 120)
        print("exit status after SIGTERM:", daemon.end())
        if "many" in wanted:
            measure_many(program, tempfile.mkdtemp(dir=state), 49000)
    finally:
        shutil.rmtree(state)


SERVERS = []


def main():
    program = os.path.join(sys.argv[1], "Services/NotificationDaemon/Sources/tinkra-notifierd")
    DBusGMainLoop(set_as_default=True)
    SERVERS.append(Server(dbus.SessionBus()))
    wanted = sys.argv[2:] or ["addition", "lateness", "idle", "many"]
    loop = GLib.MainLoop()
    failures = []

    def work():
        try:
            run(program, wanted)
        except BaseException as error:  # noqa: BLE001  the loop has to end
            failures.append(error)
        GLib.idle_add(loop.quit)

    threading.Thread(target=work, daemon=True).start()
    loop.run()
    if failures:
        raise failures[0]


main()
