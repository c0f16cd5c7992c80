"""The notification daemon under test, started by hand with whatever a fault needs around it."""

import os
import signal
import subprocess

from gi.repository import GLib

from . import processes
from .client import NAME

PEER = "org.freedesktop.DBus.Peer"


class NotificationDaemon:
    """One daemon of a world; it may be started, ended and started again on the same store."""

    def __init__(self, world, connection, number=1):
        self._world = world
        self._connection = connection
        self._number = number
        self._process = None
        self._starts = 0

    def start(
        self,
        prefix=(),
        limits=(),
        environment=None,
        program=None,
        umask=None,
        tracing=None,
        wait=True,
        arguments=(),
    ):
        """`prefix` is a command that runs the daemon (it must exec it), `limits` are options of prlimit(1),
        `tracing` those of strace. Returns when the daemon answers, unless `wait` is false."""
        assert self._process is None, "the daemon runs already"
        self._world.require_privacy()
        variables = self._world.environment | (environment or {})
        shown_clock = self._world.clock.environment()
        command = [*prefix]
        if limits:
            command += ["prlimit", *limits, "--"]
        if umask is not None:
            command += ["sh", "-c", f'umask {umask:03o}; exec "$@"', "sh"]
        if tracing is not None:
            # -D keeps the daemon our own child, the tracer its grandchild. The tracer keeps the real clock.
            command += ["strace", "-D", "-f", "-qq", *tracing]
            command += [option for name, value in shown_clock.items() for option in ("-E", f"{name}={value}")]
            variables["ASAN_OPTIONS"] = variables.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        else:
            variables |= shown_clock
        command += [str(program or self._world.program("tinkra-notifierd")), *arguments]
        self._starts += 1
        self.log = self._world.logs / f"daemon-{self._number}-{self._starts}"
        with self.log.open("wb") as log:
            self._process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=variables, cwd=self._world.root
            )
        if wait:
            self.wait_until_up()
        return self

    @property
    def pid(self) -> int:
        return self._process.pid

    @property
    def running(self) -> bool:
        return self._process is not None and self._process.poll() is None

    @property
    def owns_name(self) -> bool:
        return bool(self._connection.owner(NAME))

    @property
    def answers(self) -> bool:
        """It has its name and serves calls, so it has read its store."""
        try:
            return (
                self.owns_name
                and self._connection.call(NAME, "/", PEER, "Ping", timeout=5, start=False) == ()
            )
        except GLib.Error:
            return False

    def wait_until_up(self, seconds: float = 10):
        processes.wait_until(
            lambda: self.answers or not self.running,
            seconds,
            f"the daemon to answer; it wrote: {self.log.read_text()}",
        )
        if not self.running:
            status = self.wait()
            raise AssertionError(f"the daemon ended with {status} at its start: {self.log.read_text()}")

    def stop(self, seconds: float = 10) -> int:
        """Ends it as a session does (SIGTERM). Returns its exit status."""
        try:
            return processes.end(self._process, signal.SIGTERM, seconds)
        finally:
            self._process = None

    def kill(self):
        self._process.kill()
        self.wait()

    def wait(self, seconds: float = 10) -> int:
        """Its exit status, once it ends by itself."""
        status = self._process.wait(seconds)
        self._process = None
        return status

    def handles(self) -> int:
        """How many file descriptors it has open."""
        return len(os.listdir(f"/proc/{self.pid}/fd"))

    def limit(self, option):
        """Sets a resource limit while it runs; an option of prlimit(1)."""
        subprocess.run(["prlimit", f"--pid={self.pid}", option], check=True)

    def suspend(self):
        os.kill(self.pid, signal.SIGSTOP)
        processes.wait_until(lambda: processes.state(self.pid) == "T", 5, "the daemon to stand still")

    def resume(self):
        os.kill(self.pid, signal.SIGCONT)

    def restart_during_outage(self, **options):
        """Kills it and starts it anew; the ledger learns of the outage."""
        begin = self._world.clock.now()
        self.kill()
        self.start(**options)
        self._world.ledger.outage(begin, self._world.clock.now())

    def close(self):
        if self.running:
            if processes.state(self.pid) == "T":
                self.resume()
            self._process.kill()
        if self._process is not None:
            self._process.wait()
            self._process = None
