"""What an alarm does when the sound, the display or the application itself fails."""

import os
import pathlib
import signal
import time

import pytest
from alarm_desktop import RATE, AlarmDesktop, quiet_stretches, wait_until


@pytest.fixture
def desktop():
    with AlarmDesktop() as made:
        made.configure()
        made.set_volume(40)
        made.move(960, 540)
        yield made
        made.end_application(signal.SIGKILL)


def test_the_sound_loops_without_a_gap_and_stops_with_the_banner(desktop):
    desktop.start_application()
    heard = desktop.listen()
    desktop.ring()
    time.sleep(6)
    desktop.move(*desktop.button("Dismiss"))
    time.sleep(0.05)
    pressed = heard.position()
    desktop.output("xdotool", "click", "1")
    desktop.wait_for_silence()
    samples = heard.end()

    begin = next(i for i, sample in enumerate(samples) if abs(sample) > 8)
    ringing = samples[begin:pressed]
    assert len(ringing) > 5 * RATE
    longest = max((length for _, length in quiet_stretches(ringing)), default=0)
    assert longest <= 0.005 * RATE, f"a gap of {longest / RATE * 1000:.1f} ms"
    assert max(abs(sample) for sample in ringing) > 1000, "it is loud enough to hear"
    after = [i for i in range(pressed, len(samples)) if abs(samples[i]) > 8]
    heard_after = (after[-1] - pressed) / RATE if after else 0
    # The click itself, and what was on its way to the recorder when its position was read.
    assert heard_after < 0.15, f"heard for {heard_after * 1000:.0f} ms after the press"


def test_without_a_sound_server_the_banner_shows(desktop):
    os.kill(desktop.sound_server(), signal.SIGKILL)
    desktop.start_application()
    desktop.ring()

    assert desktop.shows_banner()
    findings = desktop.tinkra("doctor", "--json").stdout
    assert "no sound server with a device answers" in findings
    desktop.press("Dismiss")
    desktop.wait_for_silence()


def test_a_sound_server_that_hangs_holds_nobody_up(desktop):
    server = desktop.sound_server()
    os.kill(server, signal.SIGSTOP)
    try:
        desktop.start_application()
        desktop.ring()
        assert desktop.shows_banner()
        desktop.press("Dismiss")
        desktop.wait_for_silence()
    finally:
        os.kill(server, signal.SIGCONT)


def test_a_sound_server_that_dies_while_ringing_is_found_again(desktop):
    desktop.start_application()
    desktop.ring()
    assert desktop.streams() == 1

    os.kill(desktop.sound_server(), signal.SIGKILL)
    time.sleep(0.3)
    assert desktop.shows_banner()
    desktop.start_sound_server()

    wait_until(lambda: desktop.streams() == 1, what="the sound on the new server")
    desktop.press("Dismiss")
    desktop.wait_for_silence()
    assert desktop.streams() == 0


def test_a_device_that_is_unplugged_while_ringing_leaves_the_banner_and_the_next_is_used(desktop):
    desktop.start_application()
    desktop.ring()

    desktop.output("pactl", "unload-module", "module-null-sink")
    wait_until(lambda: desktop.streams() == 0, what="the end of the stream")
    assert desktop.shows_banner()
    desktop.output("pactl", "load-module", "module-null-sink", "sink_name=other")

    wait_until(lambda: desktop.streams() == 1, what="the sound on the other device")


def test_the_volume_that_a_killed_application_left_raised_is_restored_at_its_next_start(desktop):
    desktop.start_application()
    desktop.ring()
    assert desktop.volume() == 70
    desktop.end_application(signal.SIGKILL)
    assert desktop.volume() == 70

    desktop.start_application()

    wait_until(lambda: desktop.volume() == 40, what="the volume from before")
    desktop.end_application()
    desktop.set_volume(55)
    desktop.start_application()
    time.sleep(0.3)
    assert desktop.volume() == 55, "once"


def test_quitting_while_it_rings_restores_the_volume(desktop):
    desktop.start_application()
    desktop.ring()
    desktop.end_application(signal.SIGTERM)

    assert desktop.volume() == 40 and desktop.streams() == 0


def test_the_loss_of_the_session_bus_leaves_the_banner_and_its_buttons(desktop):
    application = desktop.start_application()
    desktop.ring()
    os.kill(desktop.session_bus(), signal.SIGKILL)
    time.sleep(0.5)

    assert application.poll() is None and desktop.shows_banner()
    desktop.press("Dismiss")
    desktop.wait_for_silence()
    assert desktop.volume() == 40


def test_the_application_ends_cleanly_when_the_display_goes(desktop):
    application = desktop.start_application()
    desktop.ring()
    os.kill(desktop.display_server(), signal.SIGKILL)

    assert application.wait(10) >= 0, "no signal ended it"
    assert desktop.volume() == 40 and desktop.streams() == 0


def test_without_a_display_the_command_says_so(desktop):
    os.kill(desktop.display_server(), signal.SIGKILL)
    outcome = desktop.tinkra("test-alarm")

    assert outcome.returncode == 1 and len(outcome.stderr.splitlines()) == 1
    assert "ended as soon as it was started" in outcome.stderr


@pytest.mark.parametrize("kind", ["missing", "folder", "two gigabytes", "not audio"])
def test_a_sound_file_that_cannot_be_played_is_replaced_by_the_built_in_one(desktop, kind):
    sound = pathlib.Path(desktop.environment["XDG_DATA_HOME"]) / "tinkra/sounds/Doorbell.wav"
    sound.parent.mkdir(parents=True)
    if kind == "folder":
        sound.mkdir()
    elif kind == "two gigabytes":
        sound.write_bytes(b"RIFF")
        os.truncate(sound, 2 << 30)
    elif kind == "not audio":
        sound.write_text("<html></html>")
    desktop.configure(soundName="Doorbell")
    desktop.start_application()
    desktop.ring()

    assert desktop.streams() == 1


def test_nothing_of_it_runs_after_it_was_dismissed(desktop):
    application = desktop.start_application()
    desktop.ring()
    desktop.press("Dismiss")
    desktop.wait_for_silence()
    time.sleep(1)

    def switches():
        total = 0
        for task in pathlib.Path(f"/proc/{application.pid}/task").iterdir():
            status = (task / "status").read_text()
            total += sum(int(line.split()[1]) for line in status.splitlines() if "ctxt_switches" in line)
        return total

    before = switches()
    time.sleep(3)
    assert switches() - before <= 2
