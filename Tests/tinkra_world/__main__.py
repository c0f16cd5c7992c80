"""Runs pytest where tests may mount: `python3 -m tinkra_world ARGUMENTS`.

Root may do so anyway. An ordinary user gets a user namespace in which it keeps its own number, and the rights of
root over what is mounted there.
"""

import os
import sys

from .namespaces import OWN_USER_NAMESPACE, unshare


def main():
    command = [sys.executable, "-m", "pytest", *sys.argv[1:]]
    if os.geteuid() != 0:
        command = [*unshare(), *command]
        os.environ[OWN_USER_NAMESPACE] = "1"
    os.execvp(command[0], command)


main()
