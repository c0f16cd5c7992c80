"""Keeping hold of every process that a world starts, directly or through others."""

import ctypes
import os
import signal
import subprocess
import time
from pathlib import Path

MARK = "TINKRA_WORLD"
_PR_SET_CHILD_SUBREAPER = 36


def adopt_orphans():
    """Descendants whose parent ended become ours, so that none can slip away (PR_SET_CHILD_SUBREAPER)."""
    if ctypes.CDLL(None, use_errno=True).prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl(PR_SET_CHILD_SUBREAPER)")


def marked(root) -> list[int]:
    """The living processes that carry the mark of the world at `root` in their environment."""
    mark = f"{MARK}={root}".encode()
    found = []
    for entry in Path("/proc").iterdir():
        if not entry.name.isdigit() or int(entry.name) == os.getpid():
            continue
        try:
            if mark in (entry / "environ").read_bytes().split(b"\0") and state(int(entry.name)) != "Z":
                found.append(int(entry.name))
        except OSError:
            pass
    return found


def state(pid: int) -> str:
    """One letter as in proc(5); empty when there is no such process."""
    try:
        return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0]
    except (FileNotFoundError, ProcessLookupError):
        return ""


def describe(pid: int) -> str:
    try:
        return Path(f"/proc/{pid}/cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")
    except OSError:
        return "?"


def wait_until(condition, seconds: float, what: str, every: float = 0.005):
    """Returns the first true answer of `condition`; fails after `seconds`."""
    end = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s for {what}")
        time.sleep(every)


def settle(seconds: float):
    """Lets real time pass in which something must not happen."""
    time.sleep(seconds)


def end(process: subprocess.Popen, sig=signal.SIGTERM, seconds: float = 10) -> int:
    """Signals the process and waits for its end; SIGKILL when it does not obey. Returns its exit status."""
    if process.poll() is None:
        process.send_signal(sig)
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise AssertionError(f"{process.args} did not end within {seconds} s of signal {sig}") from None
    return process.returncode
