"""Mount namespaces that outlive the programs in them: a disk of some kilobytes, another /etc/localtime."""

import os
import subprocess

from . import processes


class MountNamespace:
    """Keeps a namespace alive in which `setup` (a shell script) has run. As an ordinary user it comes with a
    user namespace in which that user is root."""

    def __init__(self, world, setup):
        user = [] if os.geteuid() == 0 else ["--user", "--map-root-user"]
        self._holder = subprocess.Popen(
            [
                "unshare",
                *user,
                "--mount",
                "--propagation",
                "private",
                "sh",
                "-ec",
                f"{setup}\necho ready\nexec cat",
            ],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env=world.environment,
        )
        if self._holder.stdout.readline() != b"ready\n":
            raise AssertionError(f"cannot prepare a mount namespace with: {setup}")
        world.keep(self)
        enter = ["--user", "--preserve-credentials"] if user else []
        #: Runs the command that follows inside of it.
        self.prefix = ["nsenter", f"--target={self._holder.pid}", *enter, "--mount", "--"]

    def run(self, script):
        subprocess.run([*self.prefix, "sh", "-ec", script], check=True, stdin=subprocess.DEVNULL)

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
        self.run(f"cat /dev/zero > {self._folder}/others 2>&1 || true")

    def free(self):
        self.run(f"rm {self._folder}/others")
