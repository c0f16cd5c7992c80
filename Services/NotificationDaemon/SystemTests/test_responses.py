"""A click on a notification reaches the application, which it starts when need be."""

import textwrap

from tinkra_world import processes

APPLICATION = "co.calendarmurkel.Tinkra"


def let_bus_start_application(world):
    """A stand-in that owns the name and leaves a mark."""
    started = world.root / "application-started"
    program = world.root / "application"
    program.write_text(textwrap.dedent(f"""\
        #!/usr/bin/python3
        import gi
        from gi.repository import Gio, GLib
        open("{started}", "a").write("started\\n")
        Gio.bus_own_name(Gio.BusType.SESSION, "{APPLICATION}", 0, None, None, None)
        loop = GLib.MainLoop()
        GLib.timeout_add_seconds(60, loop.quit)
        Gio.bus_get_sync(Gio.BusType.SESSION).connect("closed", lambda *_: loop.quit())
        Gio.bus_get_sync(Gio.BusType.SESSION).set_exit_on_close(True)
        loop.run()
        """))
    program.chmod(0o755)
    world.bus.add_service(APPLICATION, str(program))
    return started


def shown(world, client, server):
    alarm = world.alarm(after=1)
    client.add(alarm)
    return alarm, server.wait_for(1)[0].server_id


def test_a_click_starts_the_application_and_is_held_until_it_takes_it(world):
    started = let_bus_start_application(world)
    server = world.notification_server()
    world.daemon().start()
    client = world.client()
    alarm, server_id = shown(world, client, server)

    server.invoke(server_id)

    processes.wait_until(started.exists, 10, "the application to be started")
    [(action, request)] = client.call("TakeResponses")
    assert action == "default"
    assert request["identifier"] == alarm.identifier and request["title"] == "Meeting starting"
    assert client.call("TakeResponses") == []


def test_a_second_click_does_not_start_it_again(world):
    started = let_bus_start_application(world)
    server = world.notification_server()
    world.daemon().start()
    client = world.client()
    _, server_id = shown(world, client, server)

    for _ in range(2):
        server.invoke(server_id)
    processes.wait_until(lambda: len(client.call("TakeResponses")) > 0, 10, "a response")
    processes.wait_until(started.exists, 10, "the application to be started")
    processes.settle(0.3)
    assert started.read_text() == "started\n"


def test_closing_a_notification_is_no_response(world):
    started = let_bus_start_application(world)
    server = world.notification_server()
    world.daemon().start()
    client = world.client()
    _, server_id = shown(world, client, server)

    server.close_notification(server_id)
    server.invoke(server_id + 1)  # somebody else's
    processes.settle(0.3)

    assert client.call("TakeResponses") == [] and not started.exists()


def test_an_action_that_is_told_after_the_closing_counts(world):
    server = world.notification_server()
    world.daemon().start()
    client = world.client()
    _, server_id = shown(world, client, server)

    server.close_notification(server_id)
    server.invoke(server_id, "default")

    processes.wait_until(lambda: client.call("TakeResponses"), 10, "the response")


def test_an_application_that_cannot_be_started_costs_nothing(world):
    world.bus.add_service(APPLICATION, "/nowhere/at/all")
    server = world.notification_server()
    daemon = world.daemon()
    daemon.start()
    client = world.client()
    _, server_id = shown(world, client, server)

    server.invoke(server_id)

    processes.wait_until(lambda: "was not started" in daemon.log.read_text(), 10, "the daemon's words")
    assert len(client.call("TakeResponses")) == 1
    alarm = world.alarm(after=1)
    client.add(alarm)
    server.wait_for(2)
