"""Options of strace for faults at the Nth system call of a kind."""


def killing(call, number) -> list:
    """SIGKILL instead of the call. (strace delivers no signals where it filters calls with --seccomp-bpf.)"""
    return ["-o", "/dev/null", "-e", f"trace={call}", "-e", f"inject={call}:signal=SIGKILL:when={number}"]


def failing(call, error, when) -> list:
    """An error (ENOSPC) instead of the call. `when` is a number, or "N+" for that one and all that follow."""
    return [
        "--seccomp-bpf",
        "-o",
        "/dev/null",
        "-e",
        f"trace={call}",
        "-e",
        f"inject={call}:error={error}:when={when}",
    ]
