"""A network on this machine: a message server with a store, sites and workers."""

import contextlib
import json
import os
import re
import secrets
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
CONFIGURATION = os.path.join(ROOT, "examples", "message_server.conf")

# Where the receivers stand. Each hears a part of the traffic, and loses some of that.
PLACES = {"north": "51.3,8.5", "east": "49.6,10", "west": "49.6,7"}
WORKERS = {"worker1": "0-3", "worker2": "4-7"}
USERS = [*PLACES, *WORKERS, "viewer"]
RANGE = "110"  # nautical miles


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def wait_for(what, condition, seconds=20):
    """What the condition gives when it holds; fails when it does not in time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if result := condition():
            return result
        time.sleep(0.05)
    raise TimeoutError(f"{what}: not within {seconds} seconds")


def end_in_order():
    """Lets a signal from outside end this program as an error does: what was started ends too."""
    for one in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(one, lambda *_: sys.exit(1))


class Network:
    """Starts the programs, and ends all of them when it is left."""

    def __init__(self, ondrel, aircraft=60, seconds=3600):
        self.ondrel = ondrel
        self.traffic = ["--seed", "3", "--aircraft", str(aircraft), "--seconds", str(seconds)]
        self.port = free_port()
        self.url = f"nats://127.0.0.1:{self.port}"
        self.passwords = {user: "p" + secrets.token_hex(16) for user in USERS}
        self.processes = {}  # those that run, by name
        self.receivers = {}  # addresses of the simulated ones, by site

    def __enter__(self):
        self._stack = contextlib.ExitStack()
        self.folder = self._stack.enter_context(tempfile.TemporaryDirectory(prefix="ondrel."))
        self._stack.callback(self._end_all)
        for user, password in self.passwords.items():
            with open(self.path(user), "x", opener=lambda p, f: os.open(p, f, 0o600)) as file:
                file.write(f"{user}:{password}\n")
        return self

    def __exit__(self, *_):
        self._stack.close()

    def path(self, name):
        return os.path.join(self.folder, name)

    # -- processes --

    def start(self, name, command, output=None, environment=None):
        """What it says goes to the file NAME.log, what it gives to `output`."""
        with open(self.path(name + ".log"), "ab") as log, open(
            output or os.devnull, "wb"
        ) as out:
            self.processes[name] = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=out, stderr=log, env=environment
            )

    def stop(self, name, how=signal.SIGTERM, seconds=15):
        """Ends a process, and gives its status."""
        process = self.processes.pop(name)
        process.send_signal(how)
        return process.wait(seconds)

    def _end_all(self):
        for process in self.processes.values():
            process.send_signal(signal.SIGTERM)
        end = time.monotonic() + 10
        for process in self.processes.values():
            try:
                process.wait(max(0, end - time.monotonic()))
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

    def log(self, name):
        with open(self.path(name + ".log"), encoding="utf-8", errors="replace") as file:
            return file.read()

    def said(self, name, text, times=1):
        return self.log(name).count(text) >= times

    # -- what they are --

    def start_server(self):
        program = shutil.which("nats-server", path=os.environ["PATH"] + ":/usr/sbin")
        before = self.log("server").count("Server is ready") if "server" in self.started() else 0
        variables = {f"ONDREL_{user.upper()}": word for user, word in self.passwords.items()}
        self.start(
            "server",
            [program, "-c", CONFIGURATION, "-a", "127.0.0.1", "-p", str(self.port)],
            environment={**os.environ, **variables, "ONDREL_STORE": self.path("store")},
        )
        wait_for("the server", lambda: self.said("server", "Server is ready", before + 1))

    def started(self):
        return [name[:-4] for name in os.listdir(self.folder) if name.endswith(".log")]

    def start_receivers(self):
        """All at once, so that the same transmission has the same time everywhere."""
        for site, place in PLACES.items():
            self.start(
                f"receiver of {site}",
                [self.ondrel, "simulate", *self.traffic, "--reception", "0.6", "--damage", "0.06",
                 "--receiver", place, "--range", RANGE, "--serve", "127.0.0.1:0",
                 "--form", "binary"],
            )  # fmt: skip
        for site in PLACES:
            said = wait_for(
                f"the receiver of {site}",
                lambda site=site: re.search(r"127\.0\.0\.1:\d+", self.log(f"receiver of {site}")),
            )
            self.receivers[site] = "tcp://" + said[0]

    def start_site(self, site, recording, *more):
        """The site also keeps what it heard in the file `recording`."""
        self.start(
            site,
            [self.ondrel, "feed", self.receivers[site], "--to", self.url, "--site", site,
             "--credentials", self.path(site), "--record", self.path(recording), *more],
        )  # fmt: skip

    def start_worker(self, name, *more):
        """Its aircraft are in the file NAME.json when it ended."""
        self.start(
            name,
            [self.ondrel, "track", self.url, "--partitions", WORKERS[name], "--worker", name,
             "--credentials", self.path(name), "--min-messages", "1", "--json", *more],
            output=self.path(name + ".json"),
        )  # fmt: skip

    def view(self, *more):
        """The command of a viewer."""
        return [self.ondrel, "track", self.url, "--view", "--credentials", self.path("viewer"),
                "--min-messages", "1", *more]  # fmt: skip

    def aircraft(self, recording=None, worker=None):
        """Aircraft by address: of a recording, or of a worker or viewer that ended."""
        if worker:
            with open(self.path(worker + ".json"), encoding="utf-8") as file:
                lines = file.read()
        else:
            lines = subprocess.run(
                [self.ondrel, "track", "--json", "--min-messages", "1", self.path(recording)],
                check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                timeout=60,
            ).stdout  # fmt: skip
        return {one["address"]: one for one in map(json.loads, lines.splitlines())}


class Client:
    """Speaks the protocol of the server, to send what no program of ours sends."""

    def __init__(self, port, user=None, password=None):
        self._socket = socket.create_connection(("127.0.0.1", port), timeout=5)
        self._lines = self._socket.makefile("rb")
        self._lines.readline()  # INFO
        login = {"verbose": True, "pedantic": False, "headers": True, "no_responders": True}
        if user:
            login.update(user=user, **{"pass": password})
        self.answer = self._ask(b"CONNECT " + json.dumps(login).encode())

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._lines.close()
        self._socket.close()

    def publish(self, subject, content):
        """The answer of the server: +OK, or -ERR and why."""
        answer = self._ask(f"PUB {subject} {len(content)}\r\n".encode() + content)
        return answer if answer.startswith("-ERR") else self._ask(b"PING")

    def subscribe(self, subject):
        answer = self._ask(f"SUB {subject} 1".encode())
        return answer if answer.startswith("-ERR") else self._ask(b"PING")

    def _ask(self, what):
        self._socket.sendall(what + b"\r\n")
        return self._lines.readline().decode().strip()
