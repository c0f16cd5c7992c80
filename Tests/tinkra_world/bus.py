"""A private message bus: dbus-daemon with a configuration of its own."""

import subprocess
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from . import processes

_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
    {other_users}
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">1000000000</limit>
  <limit name="max_pending_service_starts">10000</limit>
  <limit name="max_connections_per_user">100000</limit>
  <limit name="max_match_rules_per_connection">50000</limit>
  <limit name="max_replies_per_connection">50000</limit>
</busconfig>
"""


class MessageBus:
    """Its socket stays at the same place when the bus is killed and started anew."""

    def __init__(self, folder, environment, open_to_all_users=False):
        folder.mkdir(exist_ok=True)
        self.services = folder / "services"
        self.services.mkdir(exist_ok=True)
        self._socket = folder / "socket"
        self._configuration = folder / "bus.conf"
        self._configuration.write_text(
            _CONFIGURATION.format(
                socket=self._socket,
                services=self.services,
                other_users='<allow user="*"/>' if open_to_all_users else "",
            )
        )
        self._environment = environment
        self._log = folder / "log"
        self.address = f"unix:path={self._socket}"
        self.process = None

    def start(self):
        self._socket.unlink(missing_ok=True)
        with self._log.open("ab") as log:
            self.process = subprocess.Popen(
                [
                    "dbus-daemon",
                    f"--config-file={self._configuration}",
                    "--nofork",
                    "--nopidfile",
                    "--nosyslog",
                    "--print-address=1",
                ],
                stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE,
                stderr=log,
                env=self._environment,
            )
        if not self.process.stdout.readline():
            raise AssertionError(f"dbus-daemon did not start: {self._log.read_text()}")
        return self

    def kill(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def stop(self):
        if self.process and self.process.poll() is None:
            processes.end(self.process)
            self.process.stdout.close()

    close = stop

    def connect(self) -> "Connection":
        return Connection(self.address)

    def add_service(self, name: str, command: str):
        """A file for D-Bus activation, read by the bus at once."""
        (self.services / f"{name}.service").write_text(f"[D-BUS Service]\nName={name}\nExec={command}\n")
        connection = self.connect()
        connection.call(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReloadConfig"
        )
        connection.close()


class Connection:
    """A connection of its own to a bus. Calls block; signals are collected by a thread."""

    def __init__(self, address: str):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.gio = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.gio.set_exit_on_close(False)

    @property
    def unique_name(self) -> str:
        return self.gio.get_unique_name()

    def call(self, destination, path, interface, method, arguments=None, timeout: float = 10, start=True):
        """The reply as Python values. Raises GLib.Error."""
        reply = self.call_unread(destination, path, interface, method, arguments, timeout, start)
        return reply.unpack() if reply is not None else ()

    def call_unread(
        self, destination, path, interface, method, arguments=None, timeout: float = 10, start=True
    ):
        """The reply as a GLib.Variant, or None."""
        flags = Gio.DBusCallFlags.NONE if start else Gio.DBusCallFlags.NO_AUTO_START
        return self.gio.call_sync(
            destination, path, interface, method, arguments, None, flags, int(timeout * 1000), None
        )

    def owner(self, name: str) -> str:
        """The unique name that owns `name`; empty when nobody does."""
        try:
            return self.call(
                "org.freedesktop.DBus",
                "/org/freedesktop/DBus",
                "org.freedesktop.DBus",
                "GetNameOwner",
                GLib.Variant("(s)", (name,)),
            )[0]
        except GLib.Error:
            return ""

    def collect(self, interface: str, signal: str) -> list:
        """The list that every arrival of the signal is appended to, from now on, as its arguments."""
        arrivals = []
        ready = threading.Event()
        threading.Thread(target=self._listen, args=(interface, signal, arrivals, ready), daemon=True).start()
        ready.wait(5)
        return arrivals

    def _listen(self, interface, signal, arrivals, ready):
        context = GLib.MainContext()
        context.push_thread_default()
        self.gio.signal_subscribe(
            None,
            interface,
            signal,
            None,
            None,
            Gio.DBusSignalFlags.NONE,
            lambda *arguments: arrivals.append(arguments[5].unpack()),
        )
        # A round trip, so that the match rule is in force before the caller goes on.
        self.owner("org.freedesktop.DBus")
        ready.set()
        while not self.gio.is_closed():
            while context.pending():
                context.iteration(False)
            threading.Event().wait(0.01)
        context.pop_thread_default()

    def close(self):
        if not self.gio.is_closed():
            self.gio.close_sync(None)
