"""A notification server (org.freedesktop.Notifications) that writes down what it shows, and misbehaves on
demand.

The class is the handle that tests hold. The server itself is this file, run as a program of its own, so that
killing it is real: commands arrive on its standard input and events leave on its standard output, a line of
JSON each.
"""

import json
import os
import signal
import subprocess
import sys
import threading
import time
from dataclasses import dataclass, field

NAME = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"

_XML = """<node><interface name="org.freedesktop.Notifications">
  <method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/>
    <arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
  <method name="CloseNotification"><arg type="u" direction="in"/></method>
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="GetServerInformation"><arg type="s" direction="out"/><arg type="s" direction="out"/>
    <arg type="s" direction="out"/><arg type="s" direction="out"/></method>
  <signal name="NotificationClosed"><arg type="u"/><arg type="u"/></signal>
  <signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal>
</interface></node>"""

PLAIN = ("body", "actions", "persistence")
MARKUP = ("body", "body-markup", "actions", "persistence")

# What Notify does. "hold" shows at once and answers when it is released; "crash" ends the server before it
# answers, "crash-after" just behind its answer.
NORMAL, SLOW, HOLD, HANG, ERROR, ZERO = "normal", "slow", "hold", "hang", "error", "zero"
CRASH, CRASH_AFTER = "crash", "crash-after"


@dataclass(frozen=True)
class Shown:
    """One Notify call. `accepted` tells whether it was answered with an identifier; times are the real
    clocks'."""

    summary: str
    body: str
    accepted: bool
    wall: float
    monotonic: float
    server_id: int
    replaces: int
    application: str = ""
    icon: str = ""
    actions: list = field(default_factory=list)
    hints: dict = field(default_factory=dict)
    timeout: int = -1


class NotificationServer:
    def __init__(self, address, environment, capabilities=PLAIN, mode=NORMAL, own=True):
        self._calls = []
        self._closed = []
        self._changed = threading.Condition()
        self._environment = dict(environment, DBUS_SESSION_BUS_ADDRESS=address)
        self._capabilities = list(capabilities)
        self._mode = mode
        self._own = own
        self._process = None

    @property
    def pid(self) -> int:
        return self._process.pid

    def start(self):
        self._process = subprocess.Popen(
            ["/usr/bin/python3", "-P", os.path.abspath(__file__)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env=self._environment,
            text=True,
            bufsize=1,
        )
        self._reader = threading.Thread(target=self._read, args=(self._process,), daemon=True)
        self._answers = []
        self._reader.start()
        self._command(capabilities=self._capabilities, mode=self._mode, own=self._own)
        return self

    def set(self, mode=None, delay: float = 0, count: int = 0, capabilities=None):
        """`count` limits the misbehaviour to that many calls; 0 means for good."""
        command = {"delay": delay, "count": count}
        if mode:
            command["mode"] = mode
            self._mode = mode
        if capabilities is not None:
            command["capabilities"] = list(capabilities)
        self._command(**command)

    def set_next(self, mode):
        """How it behaves after its next start."""
        self._mode = mode

    def release(self):
        """Answers every call that is held."""
        self._command(release=True)

    def give_up_name(self):
        self._command(own=False)

    def take_name(self):
        self._command(own=True)

    def invoke(self, server_id: int, action="default"):
        self._command(invoke=[server_id, action])

    def close_notification(self, server_id: int, reason=2):
        self._command(close=[server_id, reason])

    @property
    def calls(self) -> list:
        """Every Notify that has arrived, whatever came of it."""
        with self._changed:
            return list(self._calls)

    @property
    def shown(self) -> list:
        return [call for call in self.calls if call.accepted]

    def wait_for(self, count: int, seconds: float = 10) -> list:
        """The first `count` accepted notifications, as soon as there are that many."""
        self.wait_until(
            lambda: len([call for call in self._calls if call.accepted]) >= count,
            seconds,
            f"{count} notifications",
        )
        return self.shown

    def wait_for_calls(self, count: int, seconds: float = 10) -> list:
        self.wait_until(lambda: len(self._calls) >= count, seconds, f"{count} calls")
        return self.calls

    def wait_until(self, condition, seconds: float, what: str):
        with self._changed:
            if not self._changed.wait_for(condition, seconds):
                bodies = [call.body[:60] for call in self._calls]
                raise AssertionError(f"waited {seconds} s for {what}; Notify was called for {bodies}")

    @property
    def alive(self) -> bool:
        return self._process is not None and self._process.poll() is None

    def kill(self):
        if self._process is None:
            return
        self._process.send_signal(signal.SIGKILL)
        self._finish()

    def wait_for_end(self, seconds: float = 10):
        self._process.wait(seconds)
        self._finish()

    close = kill

    def _finish(self):
        self._process.wait()
        self._reader.join()
        self._process.stdin.close()
        self._process.stdout.close()
        self._process = None

    def _command(self, **command):
        with self._changed:
            expected = len(self._answers) + 1
            self._process.stdin.write(json.dumps(command) + "\n")
            self._process.stdin.flush()
            if not self._changed.wait_for(lambda: len(self._answers) >= expected, 10):
                raise AssertionError(f"the notification server did not obey {command}")

    def _read(self, process):
        for line in process.stdout:
            event = json.loads(line)
            with self._changed:
                if "done" in event:
                    self._answers.append(event)
                elif "closed" in event:
                    self._closed.append(event["closed"])
                else:
                    self._calls.append(Shown(**event))
                self._changed.notify_all()


class _Server:
    def __init__(self):
        import gi

        gi.require_version("Gio", "2.0")
        from gi.repository import Gio, GLib

        self._gio, self._glib = Gio, GLib
        self._capabilities, self._mode, self._delay, self._count = list(PLAIN), NORMAL, 0.0, 0
        self._next_id = 1
        self._own = False
        self._held = []
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None
        )
        self._bus.set_exit_on_close(False)
        interface = Gio.DBusNodeInfo.new_for_xml(_XML).interfaces[0]
        self._bus.register_object(PATH, interface, self._on_call, None, None)
        GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_HIGH, GLib.IO_IN | GLib.IO_HUP, self._on_input)
        self._unread = b""

    def run(self):
        self._glib.MainLoop().run()

    def _on_input(self, *_):
        data = os.read(sys.stdin.fileno(), 65536)
        if not data:
            os._exit(0)
        *lines, self._unread = (self._unread + data).split(b"\n")
        for line in lines:
            self._obey(json.loads(line))
            _tell({"done": True})
        return True

    def _obey(self, command):
        self._capabilities = command.get("capabilities", self._capabilities)
        if "mode" in command:
            self._mode = command["mode"]
        self._delay = command.get("delay", self._delay)
        self._count = command.get("count", self._count)
        if "own" in command and command["own"] != self._own:
            self._own = command["own"]
            method, arguments = (
                ("RequestName", ("su", (NAME, 4))) if self._own else ("ReleaseName", ("s", (NAME,)))
            )
            self._bus.call_sync(
                "org.freedesktop.DBus",
                "/org/freedesktop/DBus",
                "org.freedesktop.DBus",
                method,
                self._glib.Variant(f"({arguments[0]})", arguments[1]),
                None,
                0,
                5000,
                None,
            )
        if "release" in command:
            for invocation, server_id in self._held:
                self._answer(invocation, server_id)
            self._held.clear()
        if "invoke" in command:
            self._emit("ActionInvoked", "(us)", command["invoke"])
        if "close" in command:
            self._emit("NotificationClosed", "(uu)", command["close"])

    def _emit(self, signal_name, signature, arguments):
        self._bus.emit_signal(None, PATH, NAME, signal_name, self._glib.Variant(signature, tuple(arguments)))
        self._bus.flush_sync(None)

    def _on_call(self, _bus, _sender, _path, _interface, method, parameters, invocation):
        monotonic, wall = time.monotonic(), time.time()
        variant = self._glib.Variant
        if method == "GetCapabilities":
            invocation.return_value(variant("(as)", (self._capabilities,)))
        elif method == "GetServerInformation":
            invocation.return_value(variant("(ssss)", ("recorder", "tests", "1", "1.2")))
        elif method == "CloseNotification":
            _tell({"closed": parameters.unpack()[0]})
            invocation.return_value(None)
        else:
            self._notify(parameters, invocation, monotonic, wall)

    def _notify(self, parameters, invocation, monotonic, wall):
        mode = self._mode
        if self._count:
            self._count -= 1
            if not self._count:
                self._mode = NORMAL
        application, replaces, icon, summary, body, actions, hints, timeout = parameters.unpack()
        call = {
            "application": application,
            "replaces": replaces,
            "icon": icon,
            "summary": summary,
            "body": body,
            "actions": actions,
            "hints": hints,
            "timeout": timeout,
            "monotonic": monotonic,
            "wall": wall,
        }
        if mode == SLOW:
            self._glib.timeout_add(int(self._delay * 1000), self._accept, invocation, call)
        elif mode in (NORMAL, HOLD, CRASH_AFTER):
            self._accept(invocation, call, held=mode == HOLD)
            if mode == CRASH_AFTER:
                os._exit(1)
        else:
            _tell(call | {"accepted": False, "server_id": 0})
            if mode == ERROR:
                invocation.return_dbus_error("org.freedesktop.DBus.Error.Failed", "not now")
            elif mode == ZERO:
                invocation.return_value(self._glib.Variant("(u)", (0,)))
            elif mode == CRASH:
                os._exit(1)

    def _accept(self, invocation, call, held=False):
        server_id = call["replaces"] or self._next_id
        self._next_id += not call["replaces"]
        _tell(call | {"accepted": True, "server_id": server_id})
        if held:
            self._held.append((invocation, server_id))
        else:
            self._answer(invocation, server_id)
        return False

    def _answer(self, invocation, server_id):
        invocation.return_value(self._glib.Variant("(u)", (server_id,)))
        self._bus.flush_sync(None)


def _tell(event):
    sys.stdout.write(json.dumps(event) + "\n")
    sys.stdout.flush()


if __name__ == "__main__":
    _Server().run()
