#!/usr/bin/env python3
"""Simulated traffic at twelve times its pace, through connections that are cut, beside a receiver that sends rubbish.

Fails if an aircraft shows up that was not sent, if the memory grows, or if a feed is not regained.
"""

import json
import os
import random
import re
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.error
import urllib.request

import peers
from peers import FRAME, Client, read, simulate

PACE = 12
# No damage: a squitter with many wrong bits can be repaired into the address of another aircraft.
TRAFFIC = ["--aircraft", "200", "--seed", "7", "--damage", "0"]
LONGEST_GAP = 20     # seconds without a reply
GROWTH = 1.1         # of memory after the first half of the run
GROWTH_KB = 4096     # beside it

RUBBISH = [random.Random(1).randbytes(1 << 20), b"\x1a" * 65536, b"\x1a3" * 65536, b"A" * 1000000, b"*8D\n;" * 50000,
           b"HTTP/1.1 200 OK\r\n\r\n<html>", b"\0" * 65536, b""]


def addresses_sent(folder):
    """Those in DF-11 and 17, where they stand in clear. Each aircraft that is tracked sends some within a minute."""
    path = f"{folder}/sent.bin"
    simulate(path, *TRAFFIC, "--seconds", 60)
    frames = (match[0].replace(b"\x1a\x1a", b"\x1a") for match in FRAME.finditer(read(path)))
    return {reply[1:4].hex().upper() for reply in (frame[9:] for frame in frames) if reply[0] >> 3 in (11, 17)}


class Listener:
    """Serves those who connect one after the other, each as serve() of a derived class does."""

    def __init__(self, *arguments):
        self._listening = socket.create_server(("127.0.0.1", 0))
        self.name = f"tcp://127.0.0.1:{self._listening.getsockname()[1]}"
        self.connections = 0
        threading.Thread(target=self._run, args=arguments, daemon=True).start()

    def _run(self, *arguments):
        while True:
            peer, _ = self._listening.accept()
            self.connections += 1
            with peer:
                try:
                    self.serve(peer, *arguments)
                except OSError:
                    pass  # the client has left


class Relay(Listener):
    """Passes a feed on for a few seconds; at some places it puts rubbish in. It ends in the middle of a frame."""

    def serve(self, peer, feed):
        choice = random.Random(self.connections)
        end = time.monotonic() + choice.uniform(1, 6)
        with socket.create_connection(feed) as source:
            while time.monotonic() < end:
                data = source.recv(65536)
                if not data:
                    return
                if choice.random() < 0.02:
                    data = data[:choice.randrange(len(data))] + choice.randbytes(choice.randrange(100))
                peer.sendall(data)
            peer.sendall(source.recv(65536)[:-choice.randrange(1, 20)])


class Hostile(Listener):
    """Sends rubbish for some seconds, of another kind each time."""

    def serve(self, peer):
        for _ in range(20):
            peer.sendall(RUBBISH[self.connections % len(RUBBISH)])
            time.sleep(0.2)


class Run:
    """The client on these feeds. Looks at it once a second."""

    def __init__(self, folder, sent, names):
        self.sent = sent
        self.folder = folder
        self.client = Client("--once", "--serve", "0", "--json-dir", folder, "--silent-after", "2", *names)
        self.seen = set()
        self.memory = []
        self.replies = 0
        self.last_reply = time.monotonic()

    def look(self):
        status = self.client.status()
        if not status:
            return
        self.memory.append(status["memory_kb"])
        if status["replies"] > self.replies:
            self.last_reply = time.monotonic()
        self.replies = status["replies"]
        if time.monotonic() - self.last_reply > LONGEST_GAP:
            raise RuntimeError(f"no reply for {LONGEST_GAP} s; {self.client.state()}")
        with open(f"{self.folder}/aircraft.json") as file:
            self.note(one["hex"].upper() for one in json.load(file)["aircraft"])
        self.fetch("index.html")
        for address in sorted(self.seen)[:3]:
            self.fetch(address + ".html")

    def note(self, addresses):
        self.seen.update(addresses)
        if self.seen - self.sent:
            raise RuntimeError(f"aircraft that were not sent: {sorted(self.seen - self.sent)}")

    def fetch(self, path):
        try:
            with urllib.request.urlopen(f"http://{self.client.web()}/{path}", timeout=30) as answer:
                answer.read()
        except urllib.error.HTTPError as error:
            if error.code != 404:  # an aircraft that has left
                raise


def soak(folder, minutes):
    sent = addresses_sent(folder)
    seconds = round(60 * minutes)
    simulator = subprocess.Popen(
        [peers.ondrel, "simulate", "--serve", "127.0.0.1:0", "--form", "binary", "--pace", str(PACE), *TRAFFIC,
         "--seconds", str((seconds + 60) * PACE)], stderr=subprocess.PIPE, text=True)
    feed = ("127.0.0.1", int(re.search(r":(\d+)$", simulator.stderr.readline())[1]))
    threading.Thread(target=simulator.stderr.read, daemon=True).start()
    try:
        relays = [Relay(feed), Relay(feed)]
        hostile = Hostile()
        run = Run(folder, sent, [one.name for one in (*relays, hostile)])
        begin = time.monotonic()
        while time.monotonic() < begin + seconds:
            try:
                run.look()
            except OSError as error:
                raise RuntimeError(f"{error}; {run.client.state()}") from error
            time.sleep(1)
        _, counts, aircraft = run.client.end()
        run.note(aircraft)
    finally:
        simulator.terminate()
        simulator.wait()
    early, late = max(run.memory[:len(run.memory) // 2]), max(run.memory[-len(run.memory) // 4:])
    cuts = sum(relay.connections for relay in relays)
    print(f"simulated    {seconds * PACE / 60:.0f} minutes in {minutes:g}\n"
          f"replies      {counts['replies read']:,}, not readable {counts['not readable']:,}\n"
          f"connections  {cuts} cut, {hostile.connections} with rubbish\n"
          f"aircraft     {len(sent)} sent, {len(run.seen)} seen, no others\n"
          f"memory       {early} KB in the first half, {late} KB in the last quarter: {late / early:.2f}")
    if late > early * GROWTH + GROWTH_KB:
        raise RuntimeError("the memory grows")
    if run.seen != sent:
        raise RuntimeError(f"not seen: {sorted(sent - run.seen)}")


if __name__ == "__main__":
    peers.ondrel = sys.argv[1]
    with tempfile.TemporaryDirectory() as work:
        try:
            soak(work, float(sys.argv[2]))
        except RuntimeError as failure:
            sys.exit(f"soak: {failure}")
