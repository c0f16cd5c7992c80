"""A caller of the notification centre that writes what it was promised into the ledger."""

import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME = "co.calendarmurkel.NotificationCenter"
PATH = "/co/calendarmurkel/NotificationCenter"
INTERFACE = "co.calendarmurkel.NotificationCenter1"


class CallRefused(Exception):
    """The daemon answered with an error; `name` is the D-Bus error name."""

    def __init__(self, name, message):
        super().__init__(f"{name}: {message}")
        self.name = name


class NoAnswer(Exception):
    """Nobody answered: it is unknown whether the call took effect."""


_NOBODY_ANSWERED = (
    "org.freedesktop.DBus.Error.NoReply",
    "org.freedesktop.DBus.Error.Disconnected",
    "org.freedesktop.DBus.Error.Timeout",
    "org.freedesktop.DBus.Error.ServiceUnknown",
    "org.freedesktop.DBus.Error.NameHasNoOwner",
)


class NotificationCentre:
    def __init__(self, connection, ledger=None, start=False, timeout: float = 10):
        """`start` lets the bus activate the daemon."""
        self.connection = connection
        self.ledger = ledger
        self._start = start
        self._timeout = timeout

    def call(self, method, signature=None, *arguments):
        reply = self.call_unread(method, signature, *arguments).unpack()
        return reply[0] if len(reply) == 1 else reply

    def call_unread(self, method, signature=None, *arguments):
        """The reply as a GLib.Variant, which costs little however long it is."""
        variant = GLib.Variant(signature, arguments) if signature else None
        try:
            return self.connection.call_unread(
                NAME, PATH, INTERFACE, method, variant, self._timeout, self._start
            )
        except GLib.Error as error:
            name = Gio.DBusError.get_remote_error(error) or ""
            if not name or name in _NOBODY_ANSWERED:
                raise NoAnswer(f"{name} {error.message}") from None
            raise CallRefused(name, error.message) from None

    def add(self, alarm, **changes):
        """Arms the alarm. Raises CallRefused or NoAnswer."""
        begin = time.monotonic()
        outcome = "unknown"
        try:
            self.call("Add", "(sa{sv})", alarm.identifier, alarm.request(**changes))
            outcome = "done"
        except CallRefused:
            outcome = "refused"
            raise
        finally:
            if self.ledger is not None:
                self.ledger.record(alarm.identifier, alarm, outcome, begin)

    def add_many(self, alarms, refusals_are_fine=False, at_once=200) -> int:
        """Arms the alarms with up to `at_once` calls under way. Returns how many were refused."""
        context = GLib.MainContext()
        context.push_thread_default()
        under_way, refused = 0, 0

        def answered(connection, result, sent):
            nonlocal under_way, refused
            alarm, begin = sent
            under_way -= 1
            outcome = "done"
            try:
                connection.call_finish(result)
            except GLib.Error as error:
                name = Gio.DBusError.get_remote_error(error) or ""
                outcome = "unknown" if not name or name in _NOBODY_ANSWERED else "refused"
                refused += 1
                if not refusals_are_fine:
                    raise
            finally:
                if self.ledger is not None:
                    self.ledger.record(alarm.identifier, alarm, outcome, begin)

        for alarm in alarms:
            while under_way >= at_once:
                context.iteration(True)
            under_way += 1
            self.connection.gio.call(
                NAME,
                PATH,
                INTERFACE,
                "Add",
                GLib.Variant("(sa{sv})", (alarm.identifier, alarm.request())),
                None,
                Gio.DBusCallFlags.NONE,
                int(self._timeout * 1000),
                None,
                answered,
                (alarm, time.monotonic()),
            )
        while under_way:
            context.iteration(True)
        context.pop_thread_default()
        if refused and not refusals_are_fine:
            raise AssertionError(f"{refused} alarms were refused")
        return refused

    def cancel(self, *identifiers):
        begin = time.monotonic()
        outcome = "unknown"
        try:
            self.call("RemovePending", "(as)", list(identifiers))
            outcome = "done"
        except CallRefused:
            outcome = "refused"
            raise
        finally:
            if self.ledger is not None:
                for identifier in identifiers:
                    self.ledger.record(identifier, None, outcome, begin)

    def pending_identifiers(self) -> list:
        return self.call("PendingIdentifiers")

    def pending(self) -> list:
        return self.call("Pending")

    def missed(self) -> list:
        return self.call("Missed")

    def status(self) -> dict:
        return self.call("Status")

    def authorization_status(self) -> int:
        return self.call("AuthorizationStatus")

    def request_authorization(self, options=7) -> bool:
        return self.call("RequestAuthorization", "(u)", options)

    def acknowledge_reset(self):
        self.call("AcknowledgeReset")

    def close(self):
        self.connection.close()
