"""A private desktop world for tests of whole programs. README.md says what is where."""

from .alarms import Alarm
from .client import CallRefused, NoAnswer, NotificationCentre
from .daemon import NotificationDaemon
from .ledger import Ledger, LedgerViolation
from .notification_server import NotificationServer
from .world import TouchesUserData, World

__all__ = [
    "Alarm",
    "CallRefused",
    "Ledger",
    "LedgerViolation",
    "NoAnswer",
    "NotificationCentre",
    "NotificationDaemon",
    "NotificationServer",
    "TouchesUserData",
    "World",
]
