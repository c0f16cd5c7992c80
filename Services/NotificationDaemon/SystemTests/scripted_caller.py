"""The calls that several fault tests make: twenty alarms, five of them replaced, five cancelled."""

from dataclasses import replace

from tinkra_world import NoAnswer

ARMED, CHANGED = 20, 5
HOUR = 3600


def script(world):
    """Each call as a function of the client, in order. The alarms fire one second apart, an hour from now."""
    alarms = [world.alarm(HOUR + number) for number in range(ARMED)]
    calls = [lambda client, alarm=alarm: client.add(alarm) for alarm in alarms]
    for alarm in alarms[:CHANGED]:
        moved = replace(alarm, title=f"{alarm.title}, moved", fire=alarm.fire + 20)
        calls.append(lambda client, moved=moved: client.add(moved))
    calls += [
        lambda client, alarm=alarm: client.cancel(alarm.identifier) for alarm in alarms[CHANGED : 2 * CHANGED]
    ]
    return calls


def run_until_nobody_answers(world):
    """Makes the calls; true when all of them were answered with success."""
    client = world.client()
    try:
        for call in script(world):
            call(client)
    except NoAnswer:
        return False
    return True


def fire_everything(world, daemon, server):
    """Lets the hour of the scripted alarms come and checks the ledger."""
    begin = world.clock.now()
    world.clock.step(HOUR + 100, tell=[daemon.pid])
    world.ledger.outage(begin, world.clock.now())
    world.check_ledger(server)
