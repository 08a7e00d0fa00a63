"""Runs the client `ondrel`, and waits for what it and its pages do."""

import re
import signal
import subprocess
import tempfile
import time


def wait_for(condition, failure, seconds=15):
    """The first true value of condition(). If none comes, an AssertionError with failure()."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(failure())
        time.sleep(0.05)


class Client:
    """A run of the client that has said where it can be reached, as the pattern says."""

    def __init__(self, command, said):
        self._errors = tempfile.TemporaryFile("w+")
        self._process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=self._errors,
                                         start_new_session=True)
        try:
            self.address = wait_for(lambda: re.search(said, self._told()),
                                    lambda: f"{' '.join(command)} says: {self._told()}")[1]
        except BaseException:
            self.end()
            raise

    def _told(self):
        self._errors.seek(0)
        return self._errors.read()

    def pause(self):
        self._process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self._process.send_signal(signal.SIGCONT)

    def end(self):
        self._process.kill()
        self._process.wait()
        self._errors.close()


def simulate(ondrel, address="127.0.0.1:0", *options):
    """A receiver of simulated traffic: always the same one, from now on."""
    return Client([ondrel, "simulate", "--serve", address, "--form", "binary", "--seconds", "3600",
                   *options], r"serving (\S+)")


def track(ondrel, address, *sources):
    """Live pages. The address of the run is that of the pages."""
    return Client([ondrel, "track", "--serve", address, *sources], r"http://(\S+)/")
