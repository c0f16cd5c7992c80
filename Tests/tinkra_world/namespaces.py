"""Mount namespaces: a disk of some kilobytes, another /etc, a program that sees another root.

An ordinary user's tests that mount are run by `python3 -m tinkra_world`, so that callers and daemon share the user
namespace that this takes: the daemon turns away whom it cannot look at.
"""

import os
import subprocess

from . import processes

OWN_USER_NAMESPACE = "TINKRA_OWN_USER_NAMESPACE"

_MARK = "--- done with"


def unshare() -> list:
    """A command that runs the one that follows, with the right to mount, in a mount namespace of its own. An
    ordinary user keeps its number there."""
    may_mount = os.geteuid() == 0 or OWN_USER_NAMESPACE in os.environ
    user = [] if may_mount else ["--user", "--map-current-user", "--keep-caps"]
    return ["unshare", *user, "--mount", "--propagation", "private"]


def behind(root, setup) -> list:
    """A command that runs the one that follows with the folder `root` as its root, once `setup` (a shell script)
    has furnished it."""
    return [*unshare(), "sh", "-ec", f'{setup}\nexec chroot {root} "$@"', "sh"]


class MountNamespace:
    """A namespace in which `setup` (a shell script) has run, and which outlives the programs in it."""

    def __init__(self, world, setup):
        self._holder = subprocess.Popen(
            [*unshare(), "sh"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env=world.environment,
            text=True,
            bufsize=1,
        )
        world.keep(self)
        self.run(setup)
        #: Runs the command that follows inside of it.
        self.prefix = ["nsenter", f"--target={self._holder.pid}", "--mount", "--"]

    def run(self, script):
        """Runs a shell script inside, with the right to mount."""
        self._holder.stdin.write(f"( set -e\n{script}\n) </dev/null; echo {_MARK} $?\n")
        self._holder.stdin.flush()
        for line in self._holder.stdout:
            if line.startswith(_MARK):
                if line.split()[-1] != "0":
                    raise AssertionError(f"failed in a mount namespace: {script}")
                return
        raise AssertionError(f"the shell in a mount namespace ended at: {script}")

    def close(self):
        self._holder.stdin.close()
        processes.end(self._holder)
        self._holder.stdout.close()


class SmallDisk(MountNamespace):
    """The state folder of the world on a disk of its own, of the given size (tmpfs; "64k")."""

    def __init__(self, world, size):
        self._folder = world.state
        super().__init__(world, f"mount -t tmpfs -o size={size},mode=0700 tmpfs {world.state}")

    def grow(self, size):
        self.run(f"mount -o remount,size={size} {self._folder}")

    def fill(self):
        """Somebody else takes all the room that is left."""
        self.run(f"cat /dev/zero > {self._folder}/others 2>/dev/null || true")
