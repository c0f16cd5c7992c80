#!/usr/bin/python3
"""Measures a ringing alarm on a private X11 desktop, with the application warm and the software renderer.

  App/macOS/Benchmarks/measure.py BUILD_DIR

Prints how long it takes from the call that rings until the banner's first pixels are on the screen, how evenly it
slides, what ringing costs, and how often the process wakes when nothing rings.
"""

import os
import pathlib
import statistics
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[3]
os.environ["TINKRA_BUILD"] = str(pathlib.Path(sys.argv[1]).resolve())
sys.path[:0] = [str(ROOT / "Tests"), str(ROOT / "Tests/Desktop")]

from alarm_desktop import AlarmDesktop  # noqa: E402
from gi.repository import Gio, GLib  # noqa: E402
from Xlib import X, display  # noqa: E402
from Xlib.ext import damage  # noqa: E402

ROUNDS = 20
SLIDE = 0.45
SAME_FRAME = 0.003  # a frame may come as several rectangles


class Screen:
    """When something on the screen changes."""

    def __init__(self, name):
        self._display = display.Display(name)
        self._display.damage_query_version()
        self._display.screen().root.damage_create(damage.DamageReportRawRectangles)
        self._display.sync()

    def forget(self):
        self._display.sync()
        while self._display.pending_events():
            self._display.next_event()

    def changes(self, seconds):
        """The times of the changes within the next `seconds`, one for each frame."""
        import select
        times, end = [], time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            if not self._display.pending_events():
                select.select([self._display.fileno()], [], [], left)
            while self._display.pending_events():
                event = self._display.next_event()
                now = time.monotonic()
                inside = event.area.y < 130 if hasattr(event, "area") else False
                if inside and (not times or now - times[-1] > SAME_FRAME):
                    times.append(now)
        return times


def processor_seconds(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def wake_ups(pid):
    return sum(int(line.split()[1]) for task in pathlib.Path(f"/proc/{pid}/task").iterdir()
        for line in (task / "status").read_text().splitlines() if line.startswith("voluntary_ctxt"))


def main():
    with AlarmDesktop() as desktop:
        desktop.configure()
        desktop.move(960, 700)
        pid = desktop.start_application().pid
        bus = Gio.DBusConnection.new_for_address_sync(desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        screen = Screen(desktop.environment["DISPLAY"])

        def ring():
            bus.call("co.calendarmurkel.Tinkra", "/co/calendarmurkel/Tinkra", "co.calendarmurkel.Tinkra1", "TestAlarm",
                None, None, 0, 5000, None, None)
            bus.flush_sync(None)

        ring()
        time.sleep(1)
        first, intervals, frames = [], [], []
        for _ in range(ROUNDS):
            desktop.press("Dismiss")
            time.sleep(1)
            screen.forget()
            begin = time.monotonic()
            ring()
            times = screen.changes(0.6)
            first.append(times[0] - begin)
            slide = [at for at in times if at <= times[0] + SLIDE]
            frames.append((len(slide) - 1) / (slide[-1] - slide[0]))
            intervals += [later - earlier for earlier, later in zip(slide, slide[1:])]

        before = processor_seconds(pid)
        time.sleep(10)
        ringing = (processor_seconds(pid) - before) / 10
        desktop.press("Dismiss")
        time.sleep(2)
        before = wake_ups(pid)
        time.sleep(10)
        idle = wake_ups(pid) - before

        print(f"call to first frame: median {statistics.median(first) * 1000:.0f} ms, worst of {ROUNDS} {max(first) * 1000:.0f} ms")
        print(f"sliding: {statistics.median(frames):.0f} frames a second, longest {max(intervals) * 1000:.0f} ms, "
              f"{sum(interval > 0.025 for interval in intervals)} of {len(intervals)} over 25 ms")
        print(f"ringing: {ringing * 100:.1f} % of a core")
        print(f"after dismiss: {idle} wake-ups in 10 s")


if __name__ == "__main__":
    main()
