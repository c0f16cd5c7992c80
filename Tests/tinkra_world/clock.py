"""The clock that a program under test sees: the machine's, moved by an offset that a test may change."""

import ctypes
import mmap
import os
import struct
import time
from pathlib import Path

_libc = ctypes.CDLL(None, use_errno=True)
_SYS_PIDFD_OPEN, _SYS_PIDFD_GETFD = 434, 438
_REAL_TIME = "0"  # CLOCK_REALTIME


class SteeredClock:
    """Real time plus an offset, and the time since boot plus another (SteeredClock.cpp). The monotonic clock
    of the programs, which stands still while a machine sleeps, is left alone."""

    def __init__(self, folder, library):
        self._path = folder / "clock"
        self._path.write_bytes(bytes(16))
        with self._path.open("r+b") as file:
            self._memory = mmap.mmap(file.fileno(), 16)
        self._library = library
        self._offset = 0.0
        self._slept = 0.0
        self._steps = [(0.0, 0.0)]

    @property
    def offset(self) -> float:
        return self._offset

    def now(self) -> float:
        return time.time() + self._offset

    def step(self, seconds: float, tell=()):
        """Sets the clock forward, or back when negative. Each process of `tell` learns of it at once, as it
        does from the kernel when its timer was set with TFD_TIMER_CANCEL_ON_SET."""
        self._offset += seconds
        self._steps.append((time.monotonic(), self._offset))
        self._memory[:8] = struct.pack("=q", round(self._offset * 1e9))
        for pid in tell:
            _expire_timers(pid)

    def sleep(self, seconds: float, tell=()):
        """The machine was asleep for so long: real time and the time since boot have gone on."""
        self._slept += seconds
        self._memory[8:] = struct.pack("=q", round(self._slept * 1e9))
        self.step(seconds, tell)

    def set(self, instant: float, tell=()):
        self.step(instant - self.now(), tell)

    def at(self, monotonic: float, wall: float) -> float:
        """What this clock showed when the real clocks showed `monotonic` and `wall`."""
        return wall + [offset for since, offset in self._steps if since <= monotonic][-1]

    def environment(self) -> dict:
        """For a program that shall see this clock."""
        return {"LD_PRELOAD": str(self._library), "TINKRA_CLOCK": str(self._path)}

    def close(self):
        self._memory.close()


def real_time_timers(pid: int) -> dict:
    """What the kernel tells of the real-time timers of a process (proc(5), "fdinfo"), by descriptor."""
    found = {}
    for entry in Path(f"/proc/{pid}/fd").iterdir():
        try:
            if os.readlink(entry) != "anon_inode:[timerfd]":
                continue
            lines = Path(f"/proc/{pid}/fdinfo/{entry.name}").read_text().splitlines()
        except FileNotFoundError:
            continue  # closed since the folder was listed, as short-lived descriptors are
        facts = {name: value.strip() for name, _, value in (line.partition(":") for line in lines)}
        if facts["clockid"] == _REAL_TIME:
            found[int(entry.name)] = facts
    return found


def _expire_timers(pid: int):
    """Makes the real-time timers of another process readable now (pidfd_getfd(2) needs the right to trace
    it)."""
    process = _libc.syscall(_SYS_PIDFD_OPEN, pid, 0)
    if process < 0:
        raise OSError(ctypes.get_errno(), "pidfd_open")
    try:
        for number in real_time_timers(pid):
            timer = _libc.syscall(_SYS_PIDFD_GETFD, process, number, 0)
            if timer < 0:
                raise OSError(ctypes.get_errno(), "pidfd_getfd")
            at_once = struct.pack("=qqqq", 0, 0, 0, 1)
            _libc.timerfd_settime(timer, 0, at_once, None)
            os.close(timer)
    finally:
        os.close(process)
