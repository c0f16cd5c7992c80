"""A sound server whose only device is a recording."""

import subprocess
from array import array

from . import processes


class SoundServer:
    """Takes what programs play at the socket, and listens."""

    def __init__(self, socket, logs, environment):
        self._environment = environment
        self._recording = logs.parent / "recording"
        self._processes = []
        self._spawn(
            logs / "pulseaudio",
            "pulseaudio --daemonize=no --exit-idle-time=-1 --disable-shm=yes --use-pid-file=no -n".split()
            + ["-L", "module-null-sink sink_name=ear", "-L", f"module-native-protocol-unix socket={socket}"],
        )
        processes.wait_until(self._answers, 10, "the sound server")
        self._spawn(self._recording, "parec --device=ear.monitor --raw --format=s16le --channels=1".split())

    def loudness(self) -> float:
        """Of the loudest moment so far: 0 is silence, 1 all that there is."""
        content = self._recording.read_bytes()
        samples = array("h", content[: len(content) // 2 * 2])
        return max(map(abs, samples), default=0) / 32768

    def close(self):
        for process in reversed(self._processes):
            processes.end(process)

    def _answers(self) -> bool:
        asked = subprocess.run(["pactl", "info"], env=self._environment, capture_output=True, check=False)
        return asked.returncode == 0

    def _spawn(self, output, command):
        with output.open("wb") as file:
            process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.DEVNULL, env=self._environment
            )
        self._processes.append(process)
