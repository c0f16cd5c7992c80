"""The notification daemon under test, started by hand with whatever a fault needs around it."""

import os
import resource
import signal
import subprocess
import time

from . import processes
from .client import NAME


class NotificationDaemon:
    """One daemon of a world; it may be started, ended and started again on the same store."""

    def __init__(self, world, connection):
        self._world = world
        self._connection = connection
        self._process = None
        self._starts = 0

    def start(self, prefix=(), limits=None, environment=None, program=None, umask=None, tracing=None, wait=True,
              arguments=()):
        """`prefix` is a command that runs the daemon (it must exec it); `tracing` are strace's options;
        `limits` maps RLIMIT_x to a value. Returns when the daemon answers to its name, unless `wait` is false."""
        assert self._process is None, "the daemon runs already"
        self._world.require_privacy()
        variables = self._world.environment | self._world.clock.environment() | (environment or {})
        command = [*prefix, str(program or self._world.program("tinkra-notifierd")), *arguments]
        if tracing is not None:
            # -D keeps the daemon our own child, and the tracer its grandchild.
            command = ["strace", "-D", "-f", "-qq", *tracing, *command]
            variables["ASAN_OPTIONS"] = variables.get("ASAN_OPTIONS", "") + ":detect_leaks=0"

        def prepare():
            for limit, value in (limits or {}).items():
                resource.setrlimit(limit, (value, value))
            if umask is not None:
                os.umask(umask)

        self._starts += 1
        self.log = self._world.logs / f"daemon-{id(self) % 10000}-{self._starts}"
        with self.log.open("wb") as log:
            self._process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=variables,
                                             preexec_fn=prepare, cwd=self._world.root)
        if wait:
            self.wait_until_up()
        return self

    @property
    def pid(self) -> int:
        return self._process.pid

    @property
    def running(self) -> bool:
        return self._process is not None and self._process.poll() is None

    def wait_until_up(self, seconds: float = 10):
        processes.wait_until(lambda: self._connection.owner(NAME) or not self.running, seconds,
                             f"the daemon to take its name; it wrote: {self.log.read_text()}")
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
        # The name is free only when the bus has seen the connection go.
        processes.wait_until(lambda: not self._connection.owner(NAME), 5, "the name of an ended daemon to be free")
        return status

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


def settle(seconds: float):
    """Real time in which something must not happen."""
    time.sleep(seconds)
