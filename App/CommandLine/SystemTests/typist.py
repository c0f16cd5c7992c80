"""Types `tinkra` commands in a desktop world, and writes calendars for them."""

import datetime
import json
import os
import subprocess
import time


class Outcome:
    def __init__(self, process, seconds):
        self.code = process.returncode
        self.out = process.stdout.decode()
        self.error = process.stderr.decode()
        self.seconds = seconds

    @property
    def json(self):
        return json.loads(self.out)

    def __repr__(self):
        return f"exit {self.code}\n{self.out}\n{self.error}"


class Typist:
    def __init__(self, world):
        self.world = world
        self.program = world.program("tinkra")
        self.calendars = world.data / "tinkra/calendars"
        self.configuration = world.config / "tinkra/tinkra.configuration"

    def environment(self, changes=None) -> dict:
        self.world.require_privacy()
        variables = self.world.environment | self.world.clock.environment() | (changes or {})
        return {name: value for name, value in variables.items() if value is not None}

    def __call__(self, *arguments, environment=None, prefix=(), given=None, stdout=None):
        """Runs the command to its end; a hang fails the test."""
        begin = time.monotonic()
        process = subprocess.run([*prefix, self.program, *arguments], env=self.environment(environment), input=given,
                                 stdout=stdout or subprocess.PIPE, stderr=subprocess.PIPE, timeout=60,
                                 cwd=self.world.root)
        if stdout is not None:
            process.stdout = b""
        return Outcome(process, time.monotonic() - begin)

    def start(self, *arguments):
        return subprocess.Popen([self.program, *arguments], env=self.environment(), stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, cwd=self.world.root)

    def traced(self, trace, *arguments, inject=None):
        """The same under strace; `trace` is where its record goes."""
        options = ["-f", "-qq", "-o", trace, *(inject or ())]
        return self(*arguments, prefix=("strace", *options),
                    environment={"ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0"})

    def meeting(self, after: float, title="Stand-up", calendar="Work/Team", uid=None, rule=None) -> float:
        """A meeting that many seconds from now, at a whole second; gives its start."""
        start = int(self.world.clock.now() + after)
        moment = datetime.datetime.fromtimestamp(start, datetime.timezone.utc)
        uid = uid or f"meeting-{start}-{title}"
        lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "BEGIN:VEVENT", f"UID:{uid}", f"DTSTART:{moment:%Y%m%dT%H%M%SZ}",
                 "DURATION:PT15M", f"SUMMARY:{title}", *([f"RRULE:{rule}"] if rule else []), "END:VEVENT",
                 "END:VCALENDAR", ""]
        folder = self.calendars / calendar
        folder.mkdir(parents=True, exist_ok=True)
        name = "".join(letter if letter.isalnum() else "-" for letter in uid)[:80]
        (folder / f"{name}.ics").write_text("\r\n".join(lines))
        return start


def one_line(text: str) -> bool:
    return text.count("\n") == 1 and text.startswith("tinkra: ")
