"""What the load and the soak put around the client: recordings, receivers that play them, and the client itself."""

import atexit
import json
import os
import re
import signal
import socket
import subprocess
import tempfile
import threading
import time
import urllib.error
import urllib.request

ondrel = "build/release/apps/ondrel"

# A whole frame; in the first group its counter. A byte 0x1A behind the type stands twice.
FRAME = re.compile(rb"\x1a[23]((?:[^\x1a]|\x1a\x1a){6})(?:[^\x1a]|\x1a\x1a)*")


def simulate(path, *options):
    """Writes a binary recording of simulated traffic."""
    command = [ondrel, "simulate", "--form", "binary", "-o", path, *map(str, options)]
    subprocess.run(command, check=True, stderr=subprocess.DEVNULL)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def hasten(path, factor):
    """Divides the counters of a recording by this factor. No counter becomes 0, which is no time."""
    def replaced(match):
        ticks = int.from_bytes(match[1].replace(b"\x1a\x1a", b"\x1a"), "big")
        counter = max(1, ticks // factor).to_bytes(6, "big").replace(b"\x1a", b"\x1a\x1a")
        return match[0][:2] + counter + match[0][match.end(1) - match.start():]
    recording = FRAME.sub(replaced, read(path))
    with open(path, "wb") as file:
        file.write(recording)


class Client:
    """`ondrel track`. What it says on standard error is kept as it comes."""

    def __init__(self, *arguments, stdin=subprocess.DEVNULL):
        self._output = tempfile.TemporaryFile("w+")
        self._process = subprocess.Popen([ondrel, "track", "--json", *arguments], text=True,
                                         stdin=stdin, stdout=self._output, stderr=subprocess.PIPE)
        atexit.register(self._process.kill)  # if something fails
        self.lines = []
        self._more = threading.Condition()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stderr:
            with self._more:
                self.lines.append(line)
                self._more.notify_all()

    def await_lines(self, pattern, count=1):
        """Waits until so many lines match, and gives the matches."""
        def found():
            return [match for match in map(re.compile(pattern).search, self.lines) if match]
        with self._more:
            if not self._more.wait_for(lambda: len(found()) >= count, timeout=60):
                raise RuntimeError(f"the client does not say '{pattern}'; {self.state()}")
            return found()

    def state(self):
        """For messages about failures."""
        return f"status of the client {self._process.poll()}, last lines {self.lines[-3:]}"

    def web(self):
        """The address of the pages."""
        return self.await_lines(r"http://(127\.0\.0\.1:\d+)/")[0][1]

    def status(self):
        """What /status tells; nothing before the first second."""
        try:
            with urllib.request.urlopen(f"http://{self.web()}/status", timeout=30) as answer:
                return json.load(answer)
        except urllib.error.HTTPError:
            return {}

    def cpu(self):
        """Its seconds of CPU so far."""
        fields = read(f"/proc/{self._process.pid}/stat").rsplit(b")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def end(self, interrupt=True):
        """Waits for the end. Gives seconds of CPU, the counts of the summary, and the aircraft by address."""
        if interrupt:
            self._process.send_signal(signal.SIGINT)
        _, status, usage = os.wait4(self._process.pid, 0)
        self._process.returncode = os.waitstatus_to_exitcode(status)
        self._reader.join()
        if self._process.returncode != (130 if interrupt else 0):
            raise RuntimeError(self.state())
        self._output.seek(0)
        rows = map(re.compile(r" *(\D+?) +(\d+)( .*)?\n").fullmatch, self.lines)
        counts = {row[1]: int(row[2]) for row in rows if row}
        aircraft = {one["address"]: one for one in map(json.loads, self._output)}
        return usage.ru_utime + usage.ru_stime, counts, aircraft


def play(streams, seconds, tick):
    """Sends bytes evenly in this time, as far as they are taken: streams are pairs of sendall() and the bytes. One
    stream is sent from at each tick."""
    begin = time.monotonic()
    sent = [0] * len(streams)
    while min(sent) < 1:
        for i, (send, stream) in enumerate(streams):
            due = min(1, (time.monotonic() - begin) / seconds) if seconds else 1
            send(stream[int(len(stream) * sent[i]):int(len(stream) * due)])
            sent[i] = due
            time.sleep(tick)


class Receivers:
    """Receivers on one port: each that connects gets one of the streams of bytes."""

    def __init__(self, streams):
        self._streams = [memoryview(stream) for stream in streams]
        self._listening = socket.create_server(("127.0.0.1", 0))
        self.names = [f"tcp://127.0.0.1:{self._listening.getsockname()[1]}"] * len(streams)

    def play(self, seconds, tick):
        """Sends each stream, as play() does, and closes the connections."""
        with self._listening:
            connections = [self._listening.accept()[0] for _ in self._streams]
        play([(connection.sendall, stream) for connection, stream in zip(connections, self._streams)], seconds, tick)
        for connection in connections:
            connection.close()
