"""Callers that are strangers, sandboxed, malformed or malicious: an error at most, and never a crash."""

import os
import random
import socket
import subprocess

import pytest
from gi.repository import Gio, GLib

from tinkra_world import CallRefused
from tinkra_world.client import INTERFACE, NAME, PATH
from tinkra_world.namespaces import behind
from tinkra_world.parallel import fewer_when_sanitized
from tinkra_world.processes import settle

HOUR = 3600
DENIED = "org.freedesktop.DBus.Error.AccessDenied"
METHODS = {
    "PendingIdentifiers": None,
    "Pending": None,
    "Missed": None,
    "Status": None,
    "AuthorizationStatus": None,
    "AcknowledgeReset": None,
    "RequestAuthorization": "uint32 7",
    "TakeResponses": None,
    "RemovePending": "['alarm-1']",
    "Add": "'stranger' {'title': <'t'>}",
}


def call_as(prefix, world, method):
    """Output and error of a call by another process."""
    arguments = METHODS[method]
    command = [
        *prefix,
        "gdbus",
        "call",
        "--address",
        world.bus.address,
        "--dest",
        NAME,
        "--object-path",
        PATH,
        "--method",
        f"{INTERFACE}.{method}",
    ]
    if method == "Add":
        command += ["stranger", "{'title': <'t'>, 'body': <'b'>, 'components': <(2030, 1, 1, 1, 1, 1)>}"]
    elif arguments:
        command.append(arguments)
    result = subprocess.run(
        command, env=world.environment, capture_output=True, text=True, timeout=20, stdin=subprocess.DEVNULL
    )
    return result.stdout, result.stderr


def as_another_user():
    """Becomes nobody: directly for root, else with sudo, which the set-up asks for anyway."""
    become = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]
    return become if os.geteuid() == 0 else ["sudo", "-n", *become]


@pytest.mark.parametrize("world", [{"open_to_all_users": True}], indirect=True)
def test_another_user_is_refused_everything(world):
    world.daemon().start()
    client = world.client()
    client.add(world.alarm(HOUR, title="board meeting"))
    for method in METHODS:
        output, error = call_as(as_another_user(), world, method)
        assert DENIED in error and "board meeting" not in output + error, (method, output, error)
    world.ledger.check_pending(client.pending())


def test_a_sandboxed_program_is_refused_everything(world):
    world.daemon().start()
    client = world.client()
    client.add(world.alarm(HOUR, title="board meeting"))
    root = world.root / "sandbox"
    root.mkdir()
    inside = behind(
        root,
        f"""
        mount -t tmpfs tmpfs {root}
        cd {root}
        for folder in usr etc proc dev tmp; do mkdir $folder; mount --rbind /$folder $folder; done
        for link in bin lib lib64 sbin; do ln -s usr/$link $link; done
        touch .flatpak-info""",
    )
    for method in METHODS:
        output, error = call_as(inside, world, method)
        assert DENIED in error and "board meeting" not in output + error, (method, output, error)
    world.ledger.check_pending(client.pending())


def test_another_caller_of_the_same_user_may_replace_and_is_logged(world):
    daemon = world.daemon().start()
    alarm = world.alarm(HOUR)
    world.client().add(alarm)
    second = world.client()
    second.add(world.alarm(2 * HOUR, identifier=alarm.identifier))
    world.ledger.check_pending(second.pending())
    log = daemon.log.read_text()
    assert second.connection.unique_name in log and alarm.identifier in log


def random_value(numbers, depth=0):
    kind = numbers.choice("ybnqiuxtdsogvaAD" if depth < 3 else "ybisd")
    bounds = {"y": 8, "q": 16, "u": 32, "t": 64}
    signed = {"n": 16, "i": 32, "x": 64}
    if kind in bounds:
        return GLib.Variant(
            kind, numbers.choice([0, 2 ** bounds[kind] - 1, numbers.randrange(2 ** bounds[kind])])
        )
    if kind in signed:
        half = 2 ** (signed[kind] - 1)
        return GLib.Variant(kind, numbers.choice([-half, -1, 0, half - 1, numbers.randrange(-half, half)]))
    if kind == "b":
        return GLib.Variant("b", numbers.random() < 0.5)
    if kind == "d":
        return GLib.Variant(
            "d", numbers.choice([0.0, -1.0, float("nan"), float("inf"), 1e308, numbers.random()])
        )
    if kind == "s":
        return GLib.Variant(
            "s", numbers.choice(["", "default", "x" * numbers.randrange(2000), "%n%s", "\U0001f600", "'"])
        )
    if kind == "o":
        return GLib.Variant("o", "/some/path")
    if kind == "g":
        return GLib.Variant("g", "a{sv}")
    if kind == "v":
        return GLib.Variant("v", random_value(numbers, depth + 1))
    if kind == "a":
        return GLib.Variant("ai", [numbers.randrange(-9, 9) for _ in range(numbers.randrange(50))])
    if kind == "A":
        return GLib.Variant("as", ["x" * numbers.randrange(20) for _ in range(numbers.randrange(20))])
    return random_dictionary(numbers, depth + 1)


KEYS = [
    "title",
    "body",
    "sound",
    "interruptionLevel",
    "userInfo",
    "components",
    "repeats",
    "identifier",
    "",
    "other",
]


def random_dictionary(numbers, depth=0):
    return GLib.Variant(
        "a{sv}", {numbers.choice(KEYS): random_value(numbers, depth) for _ in range(numbers.randrange(8))}
    )


def random_body(numbers):
    shape = numbers.randrange(6)
    if shape == 0:
        return None
    if shape <= 2:
        return GLib.Variant.new_tuple(GLib.Variant("s", "random"), random_dictionary(numbers))
    if shape == 3:
        return GLib.Variant.new_tuple(GLib.Variant("as", ["nobody"] * numbers.randrange(100)))
    return GLib.Variant.new_tuple(*(random_value(numbers) for _ in range(numbers.randrange(1, 4))))


def random_message(numbers):
    message = Gio.DBusMessage.new_method_call(
        NAME,
        numbers.choice([PATH, PATH, PATH, "/", PATH + "/x"]),
        numbers.choice(
            [INTERFACE, INTERFACE, INTERFACE, None, "org.freedesktop.DBus.Properties", "no.such.Interface"]
        ),
        numbers.choice([*METHODS, *METHODS, "GetAll", "Set", "Nothing"]),
    )
    body = random_body(numbers)
    if body is not None:
        message.set_body(body)
    return message


def test_malformed_and_random_calls_get_errors_and_leave_no_handle_open(world):
    server = world.notification_server()
    daemon = world.daemon().start()
    client = world.client(timeout=60)
    client.add(world.alarm(HOUR, identifier="kept"))
    handles = None
    numbers = random.Random(42)
    caller = world.bus.connect()
    with open("/dev/null", "rb") as something:
        for number in range(fewer_when_sanitized(100_000, 10)):
            message = random_message(numbers)
            if number % 50 == 0:
                files = Gio.UnixFDList.new()
                for _ in range(numbers.randrange(1, 5)):
                    files.append(something.fileno())
                message.set_unix_fd_list(files)
            if number % 5:
                message.set_flags(Gio.DBusMessageFlags.NO_REPLY_EXPECTED)
            caller.gio.send_message(message, Gio.DBusSendMessageFlags.NONE)
            if number % 1000 == 999:
                caller.gio.flush_sync(None)
                client.status()
                # What a first round makes it open (its own event descriptors) stays open; nothing is added.
                handles = handles or daemon.handles()
    caller.gio.flush_sync(None)
    assert daemon.running
    caller.close()
    settle(0.3)
    assert daemon.handles() == handles
    assert "kept" in client.pending_identifiers()
    client.add(world.alarm(1, title="still alive"))
    server.wait_until(
        lambda: "still alive" in [call.body for call in server._calls], 10, "an alarm after the storm"
    )


def test_a_dictionary_of_a_hundred_thousand_keys_is_one_call_like_another(world):
    daemon = world.daemon().start()
    client = world.client(timeout=60)
    alarm = world.alarm(HOUR)
    many = {f"key {number}": GLib.Variant("s", "x" * 50) for number in range(fewer_when_sanitized(100_000))}
    for changes in ({"userInfo": GLib.Variant("a{sv}", many)}, many):
        try:
            client.add(alarm, **changes)
        except CallRefused as refusal:
            assert refusal.name.endswith(("InvalidArgs", "LimitsExceeded"))
    client.cancel(*(f"nobody {number}" for number in range(100_000)))
    client.pending_identifiers()
    assert daemon.running


def authenticated_socket(world):
    """A raw connection to the bus: bytes that no library would send."""
    raw = socket.socket(socket.AF_UNIX)
    raw.connect(world.bus.address.removeprefix("unix:path="))
    raw.sendall(b"\0AUTH EXTERNAL " + str(os.geteuid()).encode().hex().encode() + b"\r\n")
    assert raw.recv(200).startswith(b"OK")
    raw.sendall(b"BEGIN\r\n")
    hello = Gio.DBusMessage.new_method_call(
        "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "Hello"
    )
    hello.set_serial(1)
    raw.sendall(bytes(hello.to_blob(Gio.DBusCapabilityFlags.NONE)))
    raw.recv(4000)
    return raw


@pytest.mark.parametrize("bad", [b"\xff\xfe\xfd", b"a\0b", b"\xed\xa0\x80", b"\xc0\x80", b"\xf4\x90\x80\x80"])
def test_texts_that_are_not_utf8_cost_their_sender_its_connection_at_most(world, bad):
    server = world.notification_server()
    daemon = world.daemon().start()
    marker = "Z" * len(bad)
    add = Gio.DBusMessage.new_method_call(NAME, PATH, INTERFACE, "Add")
    add.set_body(GLib.Variant("(sa{sv})", ("broken", world.alarm(HOUR, title=marker).request())))
    add.set_serial(2)
    raw = authenticated_socket(world)
    raw.sendall(bytes(add.to_blob(Gio.DBusCapabilityFlags.NONE)).replace(marker.encode(), bad))
    raw.settimeout(2)
    try:
        while raw.recv(4000):
            pass
    except OSError:
        pass
    raw.close()
    client = world.client()
    assert client.pending_identifiers() == [] and daemon.running
    client.add(world.alarm(1))
    server.wait_for(1)


INVALID = {
    "no components": {"components": None},
    "components of another type": {"components": GLib.Variant("s", "2030-01-01")},
    "30 February": {"components": GLib.Variant("(iiiiii)", (2030, 2, 30, 10, 0, 0))},
    "month 13": {"components": GLib.Variant("(iiiiii)", (2030, 13, 1, 10, 0, 0))},
    "hour 24": {"components": GLib.Variant("(iiiiii)", (2030, 1, 1, 24, 0, 0))},
    "negative year": {"components": GLib.Variant("(iiiiii)", (-5, 1, 1, 1, 0, 0))},
    "huge year": {"components": GLib.Variant("(iiiiii)", (2**31 - 1, 1, 1, 1, 0, 0))},
    "level 9": {"interruptionLevel": GLib.Variant("i", 9)},
    "unknown sound": {"sound": GLib.Variant("s", "../../x")},
    "user info with a number": {"userInfo": GLib.Variant("a{sv}", {"fireDate": GLib.Variant("i", 5)})},
    "a title that is a number": {"title": GLib.Variant("i", 5)},
}


@pytest.mark.parametrize("what", INVALID)
def test_a_request_that_makes_no_sense_is_refused_whole(world, what):
    daemon = world.daemon().start()
    client = world.client()
    alarm = world.alarm(HOUR)
    client.add(alarm)
    with pytest.raises(CallRefused, match="InvalidArgs"):
        client.add(alarm, **INVALID[what])
    world.ledger.check_pending(client.pending())
    assert daemon.running
