"""The first thing a newcomer runs: a meeting in a file becomes a notification, on either kind of desktop."""

import os
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
RUN = str(ROOT / "scripts" / "run")
HEADLESS_DESKTOP = str(ROOT / "scripts" / "headless-desktop")


def environment(tmp_path, **more):
    home = tmp_path / "home"
    home.mkdir()
    without_desktop = {name: value for name, value in os.environ.items()
        if name not in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS")}
    return {**without_desktop, "HOME": str(home), "TMPDIR": str(tmp_path), **more,
        "TINKRA_PRESET": pathlib.Path(os.environ["TINKRA_BUILD"]).name}


def run(command, environment):
    return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=300)


def assert_rang(result):
    assert result.returncode == 0, result.stdout + result.stderr
    late = re.search(r"(-?\d+) ms after the meeting's second began", result.stdout)
    assert late and 0 <= int(late.group(1)) < 1000, result.stdout
    picture = re.search(r"The picture of it: (.*)", result.stdout)
    assert picture and pathlib.Path(picture.group(1)).read_bytes().startswith(b"\x89PNG"), result.stdout


def test_without_a_display_it_rings_on_a_private_desktop(tmp_path):
    result = run([RUN], environment(tmp_path))
    assert "using a private desktop" in result.stdout
    assert_rang(result)


def test_with_a_display_it_rings_there_and_leaves_the_users_folders_alone(tmp_path):
    desktop = tmp_path / "desktop"
    result = run([HEADLESS_DESKTOP, "--keep", str(desktop), RUN], environment(tmp_path))
    assert "Using this desktop." in result.stdout
    assert_rang(result)
    left = [path for path in (desktop / "home").rglob("*") if "tinkra" in path.name.lower()]
    assert left == []


def test_leaves_nothing_in_the_temporary_folder(tmp_path):
    run([RUN], environment(tmp_path))
    assert [path.name for path in tmp_path.iterdir()] == ["home"]


def test_an_unknown_argument_is_one_clear_line(tmp_path):
    result = run([RUN, "--fast"], environment(tmp_path))
    assert result.returncode == 1
    assert result.stderr == "run: takes no arguments\n"
