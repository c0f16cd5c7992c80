"""kill -9 at every system call that can change what is stored: what was acknowledged is there afterwards."""

import pytest
from scripted_caller import fire_everything, run_until_nobody_answers

from tinkra_world import World
from tinkra_world.faults import killing
from tinkra_world.parallel import in_parallel, sample
from tinkra_world.processes import wait_until

CALLS = ["pwrite64", "write", "fdatasync", "fsync", "rename", "unlink", "sendmsg"]


def count_of(call):
    """How often the daemon makes the call in an undisturbed run."""
    with World() as world:
        log = world.root / "trace"
        daemon = world.daemon().start(tracing=["--seccomp-bpf", "-e", f"trace={call}", "-o", str(log)])
        assert run_until_nobody_answers(world)
        daemon.stop()
        return sum(f" {call}(" in line for line in log.read_text().splitlines())


def kill_at(call, number):
    """One run that is killed at the given call, and what came of it. True when the run ended before that
    call."""
    with World() as world:
        server = world.notification_server()
        daemon = world.daemon().start(wait=False, tracing=killing(call, number))
        wait_until(lambda: daemon.owns_name or not daemon.running, 20, "the daemon to start or to be killed")
        ended = run_until_nobody_answers(world) if daemon.running else False
        daemon.kill()
        daemon.start()
        world.ledger.check_pending(world.client().pending())
        fire_everything(world, daemon, server)
        return ended


@pytest.mark.parametrize("call", CALLS)
def test_what_was_acknowledged_survives_a_kill_at_any(call):
    total = count_of(call)
    assert total > 0
    # One far beyond the end shows that a run comes through by itself, so nothing was left out.
    *ended, beyond = in_parallel(
        lambda number: kill_at(call, number), [*sample(total, first=40), 2 * total + 20]
    )
    assert beyond is True and ended[0] is False
