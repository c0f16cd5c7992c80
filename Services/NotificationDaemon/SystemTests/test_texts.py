"""Titles and identifiers that are anything: kept byte for byte, shown so that they can do no harm."""

import os
import stat

import pytest

from tinkra_world import notification_server as servers

HOUR = 3600
ZERO_WIDTH, JOINER = "\u200b", "\u200d"
BIDI_CONTROLS = "\u202a\u202b\u202c\u202d\u202e\u200e\u200f\u061c"
ISOLATES = "\u2066\u2067\u2068\u2069"


def show(world, title, capabilities=servers.PLAIN):
    """What the server gets for a meeting of this title."""
    server = world.notification_server(capabilities=capabilities)
    world.daemon().start()
    client = world.client(timeout=30)
    alarm = world.alarm(60, title=title)
    client.add(alarm)
    assert client.pending()[0]["body"] == title
    client.cancel(alarm.identifier)
    client.ledger = None
    client.add(world.alarm(1, title=title))
    return server.wait_for(1)[0]


MARKUP = [
    "<b>bold</b>",
    '<a href="http://evil.example">Join</a>',
    '<img src="file:///etc/passwd"/>',
    "Q&amp;A",
    "Q&A",
    "1 < 2",
    "<",
    "a > b",
    "<!-- -->",
    "&#60;b&#62;",
    "&lt;b&gt;",
    "]]>",
    "\"quoted\" 'text'",
]


@pytest.mark.parametrize("title", MARKUP)
def test_markup_is_shown_as_text_to_a_server_that_knows_markup(world, title):
    escaped = title.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
    shown = show(world, title, servers.MARKUP)
    assert shown.body.replace("&quot;", '"').replace("&apos;", "'").replace("&#39;", "'") == escaped
    assert shown.summary == "Meeting starting"


@pytest.mark.parametrize("title", MARKUP)
def test_markup_is_left_as_it_is_for_a_server_that_shows_plain_text(world, title):
    assert show(world, title, servers.PLAIN).body == title


def test_what_a_server_can_is_asked_anew_when_it_changes(world):
    server = world.notification_server(capabilities=servers.PLAIN)
    world.daemon().start()
    client = world.client()
    client.ledger = None
    client.add(world.alarm(1, title="a<b"))
    assert server.wait_for(1)[-1].body == "a<b"
    server.give_up_name()
    server.set(capabilities=servers.MARKUP)
    server.take_name()
    client.add(world.alarm(1, title="c<d"))
    # The first is shown again, because its server vanished so soon behind it.
    assert {shown.body for shown in server.wait_for(3)} == {"a<b", "a&lt;b", "c&lt;d"}


@pytest.mark.parametrize(
    "title",
    [
        "invoice \u202efdp.exe",
        "\u202b\u202a",
        "a\u200fb",
        "\u2066x",
        "\u2069\u2069y",
        "\u05d0\u05d1\u05d2 Hebrew",
        "\u0627\u0644 arabic (1)",
    ],
)
def test_directions_stay_inside_the_title(world, title):
    body = show(world, title).body
    opened = sum(body.count(isolate) for isolate in ISOLATES[:3])
    assert not any(control in body for control in BIDI_CONTROLS) and opened == body.count(ISOLATES[3])
    kept = "".join(letter for letter in title if letter not in BIDI_CONTROLS + ISOLATES)
    assert "".join(letter for letter in body if letter not in ISOLATES) == kept


@pytest.mark.parametrize(
    "title",
    [
        "two\nlines",
        "tab\there",
        "bell\x07",
        "escape\x1b[31mred",
        "return\rover",
        "c1\x85\x9b",
        "line\u2028separator\u2029end",
        "delete\x7f",
        "\x01\x02\x03",
    ],
)
def test_control_characters_are_not_shown(world, title):
    body = show(world, title).body
    assert not any(
        ord(letter) < 32 or 127 <= ord(letter) < 160 or letter in "\u2028\u2029" for letter in body
    ), body


def test_log_lines_are_one_line_without_controls(world):
    world.notification_server()
    daemon = world.daemon().start()
    client = world.client()
    client.ledger = None
    evil = "x\n<3>forged: line\x1b]0;title\x07\u202e"
    client.add(world.alarm(HOUR, identifier=evil, title=evil))
    client.add(world.alarm(HOUR, identifier=evil, title=evil))
    client.cancel(evil)
    log = daemon.log.read_bytes()
    assert b"\x1b" not in log and b"\x07" not in log and "\u202e".encode() not in log
    assert not any(line.startswith(b"<3>forged") for line in log.splitlines())


@pytest.mark.parametrize(
    "title",
    [
        "a" * 1_000_000,
        "\U0001f600" * 10_000,
        "e" + "\u0301" * 50_000,
        "\U0001f468\u200d\U0001f469\u200d\U0001f467" * 5_000,
    ],
)
def test_a_giant_title_is_kept_whole_and_shown_cut(world, title):
    body = show(world, title).body
    assert 0 < len(body.encode()) < 20_000
    body.encode("utf-8")
    # Never half of a composed sign: a family stays a family, an accent stays on its letter.
    assert not body.rstrip("\u2026").endswith(JOINER)
    if title.startswith("\U0001f468"):
        whole = "\U0001f468\u200d\U0001f469\u200d\U0001f467"
        assert body.rstrip("\u2026").replace(whole, "") == ""


def test_an_empty_title_is_shown_all_the_same(world):
    shown = show(world, "")
    assert shown.summary == "Meeting starting"


IDENTIFIERS = [
    "../../etc/passwd",
    "/",
    ".",
    "'; DROP TABLE requests; --",
    '"',
    "%n%n%s%x",
    "$(reboot)",
    "`id`",
    "",
    " ",
    "a" * 100_000,
    "\U0001f600",
    "\n",
    "*",
    "_",
    "%",
    "\ufeff",
    "A",
    "a",
]


def test_identifiers_are_opaque(world):
    daemon = world.daemon().start()
    client = world.client()
    for identifier in IDENTIFIERS:
        client.add(
            world.alarm(HOUR, identifier=identifier or None)
            if identifier
            else world.alarm(HOUR, identifier="stand-in")
        )
    world.ledger.check_pending(client.pending())
    daemon.kill()
    daemon.start()
    world.ledger.check_pending(client.pending())
    for identifier in IDENTIFIERS:
        client.cancel(identifier or "stand-in")
        world.ledger.check_pending(client.pending())
    assert client.pending_identifiers() == []
    files = {path.name for path in world.store.parent.iterdir()}
    assert all(name.startswith("notifications.") for name in files), files


@pytest.mark.parametrize(
    "one, other",
    [
        ("caf\u00e9", "cafe\u0301"),
        ("STRASSE", "stra\u00dfe"),
        ("i", "\u0130"),
        ("\u212b", "\u00c5"),
        ("a", "A"),
        ("x", "x "),
    ],
)
def test_identifiers_that_look_alike_are_kept_apart(world, one, other):
    world.daemon().start()
    client = world.client()
    client.add(world.alarm(HOUR, identifier=one))
    client.add(world.alarm(HOUR, identifier=other))
    world.ledger.check_pending(client.pending())
    client.cancel(one)
    assert client.pending_identifiers() == [other]


@pytest.mark.parametrize("umask", [0o000, 0o777])
def test_its_files_are_the_users_alone_whatever_the_umask(world, umask):
    server = world.notification_server()
    daemon = world.daemon().start(umask=umask)
    client = world.client()
    client.add(world.alarm(1))
    server.wait_for(1)
    world.check_ledger(server)
    folder = world.store.parent
    assert stat.S_IMODE(folder.stat().st_mode) == 0o700
    for path in folder.iterdir():
        assert stat.S_IMODE(path.stat().st_mode) == 0o600, (path.name, oct(path.stat().st_mode))
        assert path.stat().st_uid == os.geteuid()
    daemon.kill()
    daemon.start(umask=umask)
    assert client.status()["inMemory"] is False
