"""The power goes at any moment: what was acknowledged before is there, a cancelled alarm stays cancelled."""

import random
import time

import pytest
from scripted_caller import run_until_nobody_answers
from storage_recording import TRACING, Disk, read_recording

from tinkra_world import World
from tinkra_world.parallel import fewer_when_sanitized, in_parallel

STATES = 300


@pytest.fixture(scope="module")
def recorded():
    """The ledger of the scripted calls, the operations on the disk below them, and the folder they were made
    in."""
    with World() as world:
        log = world.root / "trace"
        to_monotonic = time.monotonic() - time.time()
        daemon = world.daemon().start(tracing=["--seccomp-bpf", *TRACING, "-o", str(log)])
        assert run_until_nobody_answers(world)
        daemon.stop()
        operations = list(read_recording(log.read_text(errors="replace"), world.store.parent))
        return world.ledger, operations, str(world.state), to_monotonic


def cuts(recorded):
    """Every legal state after every operation: (moment, description, files)."""
    _, operations, _, to_monotonic = recorded
    numbers = random.Random(3)
    disk = Disk()
    for index, operation in enumerate(operations):
        disk.play(operation)
        # The cut comes before the next operation: all that was acknowledged until then counts.
        moment = operations[index + 1].time if index + 1 < len(operations) else time.time()
        for what, files in disk.states(numbers):
            name = f"after operation {index} ({operation.kind} {operation.path}): {what}"
            yield moment + to_monotonic, name, files


def test_the_recording_shows_synced_writes(recorded):
    _, operations, _, _ = recorded
    kinds = [operation.kind for operation in operations]
    assert kinds.count("write") >= 30 and kinds.count("sync") >= 30


def test_what_was_acknowledged_survives_every_legal_state_of_the_disk(recorded):
    ledger, _, state, _ = recorded
    every = list(cuts(recorded))
    chosen = (
        every if len(every) <= STATES else random.Random(5).sample(every, fewer_when_sanitized(STATES, 6))
    )
    print(f"{len(chosen)} of {len(every)} states")

    def check(cut):
        moment, what, files = cut
        with World() as world:
            world.store.parent.mkdir(mode=0o700)
            for path, content in files.items():
                target = world.state / path.removeprefix(state).lstrip("/")
                if not target.name.endswith("-shm"):  # rebuilt from the log when it is not there
                    target.write_bytes(content)
            world.daemon().start()
            client = world.client()
            try:
                ledger.check_pending(client.pending(), moment)
            except AssertionError as violation:
                raise AssertionError(f"{what}: {violation}") from None
            return client.status()["storeWasReset"]

    class Named(tuple):
        def __str__(self):
            return self[1]

    in_parallel(check, [Named(cut) for cut in chosen])
