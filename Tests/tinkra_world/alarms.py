"""One alarm as a test arms it, and the request that carries it over the bus."""

from dataclasses import dataclass
from datetime import datetime
from zoneinfo import ZoneInfo

import gi

gi.require_version("Gio", "2.0")
from gi.repository import GLib  # noqa: E402


@dataclass(frozen=True)
class Alarm:
    """Times are seconds since 1970-01-01 00:00 UTC on the clock that the daemon sees."""

    identifier: str
    title: str
    fire: float
    meeting_start: float
    zone: str = "UTC"

    @property
    def second(self) -> float:
        """The start of the second that holds the fire time: when the notification is due."""
        return float(self.fire // 1)

    def components(self) -> tuple:
        wall = datetime.fromtimestamp(self.fire // 1, ZoneInfo(self.zone))
        return (wall.year, wall.month, wall.day, wall.hour, wall.minute, wall.second)

    def request(self, **changes) -> dict:
        """The a{sv} of Add, as variants by key; `changes` replaces entries, and None removes one."""
        user_info = {
            "meetingID": GLib.Variant("s", self.identifier),
            "title": GLib.Variant("s", self.title),
            "fireDate": GLib.Variant("d", self.fire),
            "meetingStart": GLib.Variant("d", self.meeting_start),
        }
        request = {
            "title": GLib.Variant("s", "Meeting starting"),
            "body": GLib.Variant("s", self.title),
            "sound": GLib.Variant("s", "default"),
            "interruptionLevel": GLib.Variant("i", 2),
            "userInfo": GLib.Variant("a{sv}", user_info),
            "components": GLib.Variant("(iiiiii)", self.components()),
            "repeats": GLib.Variant("b", False),
        }
        request.update(changes)
        return {key: value for key, value in request.items() if value is not None}
