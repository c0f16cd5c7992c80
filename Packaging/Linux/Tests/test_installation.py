"""`cmake --install`: every file where a desktop looks for it, and the installed tree works."""

import os
import re
import subprocess
import time
from pathlib import Path

import pytest

NAME = "co.calendarmurkel.NotificationCenter"
BUILD = os.environ["TINKRA_BUILD"]


def install(destination=None, prefix=None):
    command = [os.environ["TINKRA_CMAKE"], "--install", BUILD]
    if prefix is not None:
        command += ["--prefix", str(prefix)]
    environment = os.environ | ({"DESTDIR": str(destination)} if destination is not None else {})
    subprocess.run(command, env=environment, check=True, capture_output=True)


def files_below(folder: Path) -> set:
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}


@pytest.fixture(scope="module")
def package(tmp_path_factory):
    """What a distribution's package would hold."""
    root = tmp_path_factory.mktemp("package")
    install(destination=root, prefix="/usr")
    return root


def test_a_package_holds_every_file_at_its_place(package):
    assert files_below(package) == {
        "usr/bin/tinkra",
        "usr/libexec/tinkra-notifierd",
        "usr/libexec/tinkra-wakehelper",
        "usr/libexec/tinkra-app",
        "usr/share/dbus-1/services/co.calendarmurkel.Tinkra.service",
        f"usr/share/dbus-1/services/{NAME}.service",
        "usr/lib/systemd/user/tinkra-notifierd.service",
        "usr/lib/systemd/system/tinkra-wakehelper.service",
        "usr/lib/tmpfiles.d/tinkra.conf",
        f"etc/xdg/autostart/{NAME}.desktop",
        "usr/share/man/man1/tinkra.1",
        "usr/share/bash-completion/completions/tinkra",
        "usr/share/zsh/site-functions/_tinkra",
        "usr/share/fish/vendor_completions.d/tinkra.fish",
        "usr/share/doc/tinkra/LICENSE",
        "usr/share/doc/tinkra/CHANGELOG.md",
        *(f"usr/share/tinkra/sounds/{sound}.wav"
          for sound in ("Glass", "Funk", "Sosumi", "Ping", "Hero", "Submarine")),
    }


def test_programs_may_be_run_by_everybody_and_nothing_may_be_written_by_others(package):
    for path in package.rglob("*"):
        mode = path.stat().st_mode & 0o777
        assert mode & 0o022 == 0 or path == package, path
        if path.is_file():
            assert (mode & 0o111 == 0o111) == (path.name in ("tinkra", "tinkra-notifierd") and "bin" in str(path)
                                               or path.parent.name == "libexec"), path


def test_no_file_names_the_place_where_it_was_built_or_staged(package):
    for name in files_below(package):
        path = package / name
        if path.parent.name not in ("bin", "libexec", "sounds"):
            text = path.read_text()
            assert BUILD not in text and str(package) not in text, name
            assert not re.search(r"@[A-Z_]+@", text), name


def test_the_service_files_name_the_installed_daemon(package):
    service = (package / f"usr/share/dbus-1/services/{NAME}.service").read_text()
    assert "\nExec=/usr/libexec/tinkra-notifierd\n" in service
    assert "\nSystemdService=tinkra-notifierd.service\n" in service
    unit = (package / "usr/lib/systemd/user/tinkra-notifierd.service").read_text()
    assert "\nExecStart=/usr/libexec/tinkra-notifierd\n" in unit
    assert f"\nBusName={NAME}\n" in unit


def test_the_desktop_accepts_the_login_entry(package):
    checked = subprocess.run(["desktop-file-validate", package / f"etc/xdg/autostart/{NAME}.desktop"],
                             capture_output=True, text=True)
    assert (checked.returncode, checked.stdout, checked.stderr) == (0, "", "")


@pytest.mark.parametrize("folder, program", [("user", "tinkra-notifierd"), ("system", "tinkra-wakehelper")])
def test_systemd_accepts_the_unit(package, tmp_path, folder, program):
    # The unit names /usr/libexec; systemd wants the program to be there, so the check gets one that is.
    unit = (package / f"usr/lib/systemd/{folder}/{program}.service").read_text()
    copy = tmp_path / f"{program}.service"
    copy.write_text(unit.replace(f"/usr/libexec/{program}", str(package / f"usr/libexec/{program}")))
    checked = subprocess.run(["systemd-analyze", "verify", f"--{folder}", "--man=no", copy],
                             capture_output=True, text=True,
                             env=os.environ | {"XDG_RUNTIME_DIR": str(tmp_path), "SYSTEMD_UNIT_PATH": f"{tmp_path}:"})
    complaints = [line for line in checked.stderr.splitlines() if "tinkra" in line]
    assert (checked.returncode, complaints) == (0, [])


def test_the_wake_helper_is_left_with_next_to_nothing(package):
    # systemd's own estimate of what a service could do, from 0 (nothing) to 10 (everything).
    unit = package / "usr/lib/systemd/system/tinkra-wakehelper.service"
    checked = subprocess.run(["systemd-analyze", "security", "--offline=true", "--threshold=15", "--no-pager", unit],
                             capture_output=True, text=True)
    assert checked.returncode == 0, checked.stdout + checked.stderr
    assert "\nAmbientCapabilities=CAP_WAKE_ALARM\nCapabilityBoundingSet=CAP_WAKE_ALARM\n" in unit.read_text()


def test_the_manual_page_has_no_mistake_and_names_every_command(package):
    page = package / "usr/share/man/man1/tinkra.1"
    checked = subprocess.run(["groff", "-man", "-Tutf8", "-wall", "-Wbreak", page], capture_output=True, text=True)
    assert (checked.returncode, checked.stderr) == (0, "")
    usage = subprocess.run([package / "usr/bin/tinkra", "--help"], capture_output=True, text=True).stdout
    commands = re.findall(r"^  ([\w-]+)  ", usage.split("Subcommands:")[1], re.M)
    assert len(commands) == 9
    for command in commands:
        assert f"tinkra {command}".replace("-", "\\-") in page.read_text(), command


@pytest.mark.parametrize("shell, name", [("bash", "bash-completion/completions/tinkra"),
                                         ("zsh", "zsh/site-functions/_tinkra"),
                                         ("fish", "fish/vendor_completions.d/tinkra.fish")])
def test_each_shell_can_read_its_completion(package, shell, name):
    checked = subprocess.run([shell, "-n", package / "usr/share" / name], capture_output=True, text=True)
    assert (checked.returncode, checked.stderr) == (0, "")


def complete_in_bash(package, world, line):
    script = ('source "$1"; read -ra COMP_WORDS <<<"$2"; [[ $2 == *" " ]] && COMP_WORDS+=("");'
              'COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tinkra; printf "%s\\n" "${COMPREPLY[@]}"')
    environment = world.environment | {"PATH": f"{package}/usr/bin:/usr/bin:/bin"}
    completion = package / "usr/share/bash-completion/completions/tinkra"
    return subprocess.run(["bash", "-c", script, "bash", completion, line], env=environment, capture_output=True,
                          cwd=world.root, text=True, check=True).stdout.split("\n")[:-1]


def test_bash_completes_commands_options_and_identifiers(package, world):
    (world.data / "tinkra/calendars/Work/Team one").mkdir(parents=True)

    assert complete_in_bash(package, world, "tinkra dese") == ["deselect"]
    assert complete_in_bash(package, world, "tinkra upcoming --d") == ["--days"]
    assert complete_in_bash(package, world, "tinkra select W") == ["Work/Team\\ one"]


def test_bash_carries_out_nothing_that_stands_in_an_identifier(package, world):
    (world.data / "tinkra/calendars/Work/$(touch pwned);").mkdir(parents=True)

    assert complete_in_bash(package, world, "tinkra select W") == ["Work/\\$\\(touch\\ pwned\\)\\;"]
    assert not (world.root / "pwned").exists()


def test_fish_completes_commands_and_identifiers(package, world):
    (world.data / "tinkra/calendars/Work/Team one").mkdir(parents=True)
    environment = world.environment | {"PATH": f"{package}/usr/bin:/usr/bin:/bin"}

    def complete(line):
        script = f"source {package}/usr/share/fish/vendor_completions.d/tinkra.fish; complete -C '{line}'"
        return subprocess.run(["fish", "--no-config", "-c", script], env=environment, capture_output=True, text=True,
                              check=True).stdout

    assert "deselect\t" in complete("tinkra dese")
    assert "Work/Team one" in complete("tinkra select W")


def test_the_bus_starts_the_installed_daemon(world, tmp_path):
    prefix = tmp_path / "prefix"
    install(prefix=prefix)
    world.bus.stop()
    world.environment["XDG_DATA_DIRS"] = str(prefix / "share")
    installed_bus = subprocess.Popen(
        ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1", "--address=" + world.bus.address],
        env=world.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    try:
        assert installed_bus.stdout.readline().startswith(b"unix:")

        pending = subprocess.run([prefix / "bin/tinkra", "pending", "--json"], env=world.environment,
                                 capture_output=True, text=True)

        assert (pending.returncode, pending.stdout) == (0, "[]\n")
        running = [path for path in Path("/proc").glob("[0-9]*/exe")
                   if os.path.lexists(path) and readlink(path) == str(prefix / "libexec/tinkra-notifierd")]
        assert len(running) == 1
    finally:
        installed_bus.terminate()
        installed_bus.wait()
        wait_for_the_end_of(prefix / "libexec/tinkra-notifierd")


def test_the_login_entry_starts_the_installed_daemon(world, tmp_path):
    prefix = tmp_path / "prefix"
    install(prefix=prefix)
    world.let_bus_start_daemon(prefix / "libexec/tinkra-notifierd")
    entry = (prefix / f"etc/xdg/autostart/{NAME}.desktop").read_text()
    command = re.search(r"^Exec=(.*)$", entry, re.M).group(1).split()

    subprocess.run(command, env=world.environment, check=True)

    connection = world.bus.connect()
    try:
        end = time.monotonic() + 10
        while not connection.owner(NAME):
            assert time.monotonic() < end, "the daemon was not started"
            time.sleep(0.01)
    finally:
        connection.close()


def readlink(path) -> str:
    try:
        return os.readlink(path)
    except OSError:
        return ""


def wait_for_the_end_of(program: Path):
    end = time.monotonic() + 5
    while any(readlink(path) == str(program) for path in Path("/proc").glob("[0-9]*/exe")):
        assert time.monotonic() < end, "the daemon outlived its bus"
        time.sleep(0.02)
