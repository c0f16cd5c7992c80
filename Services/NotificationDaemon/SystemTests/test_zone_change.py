"""The user travels, or the zone's rules are updated: alarms follow the wall clock that is then in force."""

import os
import shutil
from pathlib import Path

from gi.repository import GLib

from tinkra_world.namespaces import MountNamespace

HOUR = 3600
ZONES = Path("/usr/share/zoneinfo")


def replace(path, zone):
    """As the desktop's settings do it: a fresh link, renamed over the old one."""
    fresh = path.with_name("fresh")
    fresh.symlink_to(ZONES / zone)
    os.replace(fresh, path)


def armed_for_one_hour_on(world, client):
    client.ledger = None
    alarm = world.alarm(HOUR + 3)
    client.add(alarm)
    return alarm


def check_fired_one_hour_early(world, server, alarm):
    (shown,) = server.wait_for(1, 6)
    late = shown.wall - (alarm.second - HOUR)
    assert -0.002 <= late <= 1 + world.machine.lateness(), late


def test_follows_a_zone_link_that_is_replaced(world):
    link = world.root / "localtime"
    link.symlink_to(ZONES / "UTC")
    world.environment["TZ"] = f":{link}"
    server, client = world.notification_server(), world.client()
    world.daemon().start()
    alarm = armed_for_one_hour_on(world, client)
    replace(link, "Etc/GMT-1")
    check_fired_one_hour_early(world, server, alarm)


def test_follows_rules_that_are_updated_in_place(world):
    file = world.root / "localtime"
    shutil.copy(ZONES / "UTC", file)
    world.environment["TZ"] = f":{file}"
    server, client = world.notification_server(), world.client()
    world.daemon().start()
    alarm = armed_for_one_hour_on(world, client)
    fresh = world.root / "fresh"
    shutil.copy(ZONES / "Etc/GMT-1", fresh)
    os.replace(fresh, file)
    check_fired_one_hour_early(world, server, alarm)


def test_follows_the_zone_of_the_machine(world):
    etc = MountNamespace(
        world,
        f"""
        mkdir {world.root}/etc
        mount -t tmpfs tmpfs {world.root}/etc
        cp /etc/passwd /etc/group /etc/nsswitch.conf /etc/ld.so.cache {world.root}/etc
        ln -s /usr/share/zoneinfo/UTC {world.root}/etc/localtime
        mount --bind {world.root}/etc /etc""",
    )
    del world.environment["TZ"]
    timedated = world.mock_system_service("timedated")
    server, client = world.notification_server(), world.client()
    daemon = world.daemon().start(prefix=etc.prefix)
    alarm = armed_for_one_hour_on(world, client)
    etc.run("ln -s /usr/share/zoneinfo/Etc/GMT-1 /etc/fresh; mv -T /etc/fresh /etc/localtime")
    timedated.call(
        "org.freedesktop.timedate1",
        "/org/freedesktop/timedate1",
        "org.freedesktop.DBus.Properties",
        "Set",
        GLib.Variant("(ssv)", ("org.freedesktop.timedate1", "Timezone", GLib.Variant("s", "Etc/GMT-1"))),
    )
    check_fired_one_hour_early(world, server, alarm)
    daemon.stop()


def test_a_zone_changed_while_the_daemon_was_not_running_counts(world):
    server, client = world.notification_server(), world.client()
    daemon = world.daemon().start()
    alarm = armed_for_one_hour_on(world, client)
    daemon.stop()
    world.environment["TZ"] = "Etc/GMT-1"
    daemon.start()
    check_fired_one_hour_early(world, server, alarm)


def test_a_machine_without_a_zone_keeps_utc(world):
    etc = MountNamespace(
        world,
        f"""
        mkdir {world.root}/etc
        mount -t tmpfs tmpfs {world.root}/etc
        cp /etc/passwd /etc/nsswitch.conf /etc/ld.so.cache {world.root}/etc
        mount --bind {world.root}/etc /etc""",
    )
    del world.environment["TZ"]
    server, client = world.notification_server(), world.client()
    daemon = world.daemon().start(prefix=etc.prefix)
    client.add(world.alarm(1))
    server.wait_for(1, 5)
    world.check_ledger(server)
    daemon.stop()
