#!/usr/bin/env -S python3 -B
"""Runs a network on this machine, kills parts of it, and compares what it shows with what the sites
heard.

    network_test.py ONDREL [SECONDS]

With SECONDS, workers, server and sites are killed at random for so long, over and over. One line
for each check; the status is 1 if one failed."""

import os
import random
import re
import signal
import struct
import subprocess
import sys
import time

from network import CONFIGURATION, PLACES, ROOT, WORKERS, Client, Network, end_in_order, wait_for

failures = 0


def check(what, good, otherwise=""):
    global failures
    failures += 0 if good else 1
    print("ok    " if good else "FAILED", what, "" if good else f"({otherwise})", flush=True)


def check_page():
    with open(CONFIGURATION, encoding="utf-8") as file:
        configuration = file.read()
    with open(os.path.join(ROOT, "docs", "many_receivers.md"), encoding="utf-8") as file:
        check("docs/many_receivers.md shows the configuration", configuration in file.read())


def check_permissions(network):
    with Client(network.port) as nobody:
        check("without credentials: refused", "Authorization" in nobody.answer, nobody.answer)
    with open(network.path("short.csv"), "wb") as file:
        simulate = [network.ondrel, "simulate", "--seconds", "5", "--damage", "0"]
        subprocess.run(simulate, check=True, stdout=file, timeout=30)
    fed = subprocess.run(
        [network.ondrel, "feed", network.path("short.csv"), "--to", network.url],
        check=False, capture_output=True, text=True, timeout=30,
    )  # fmt: skip
    check("a feed without credentials: ends, and says why",
          fed.returncode == 1 and fed.stderr.count("Authentication") == 2, fed.stderr)  # fmt: skip
    forbidden = {
        "north": ["ondrel.v1.aircraft.ABCDEF", "ondrel.v1.to.worker1.0",
                  "$JS.API.STREAM.DELETE.ONDREL_REPLIES", "$JS.API.STREAM.PURGE.ONDREL_REPLIES"],
        "worker1": ["ondrel.v1.replies.0", "$JS.API.STREAM.DELETE.ONDREL_REPLIES"],
        "viewer": ["ondrel.v1.replies.0", "ondrel.v1.aircraft.ABCDEF"],
    }  # fmt: skip
    for user, subjects in forbidden.items():
        for subject in subjects:
            with Client(network.port, user, network.passwords[user]) as client:
                answer = client.publish(subject, b"{}")
            check(f"{user}: may not send {subject}", "Permissions Violation" in answer, answer)
    with Client(network.port, "north", network.passwords["north"]) as client:
        answer = client.subscribe("ondrel.v1.replies.*")
        check("north: may not read replies", "Permissions Violation" in answer, answer)


def send_bad_batches(network):
    head = b"ODR1" + struct.pack(">QQQ", 1, 1, int(time.time() * 1000))
    batches = [b"", b"no batch", head + b"\x00" + b"\x07" * 21, head + b"\x05north" + b"\x07" * 9,
               head + b"\x05north" + b"\xff" * 21]  # fmt: skip
    with Client(network.port, "north", network.passwords["north"]) as client:
        for batch in batches:
            answer = client.publish("ondrel.v1.replies.0", batch)
            check("a bad batch is taken by the server", "-ERR" not in answer, answer)
    return len(batches)


class Sites:
    """Keeps a recording of each run of a site."""

    def __init__(self, network):
        self.network = network
        self.recordings = {site: [] for site in PLACES}

    def start(self, site):
        self.recordings[site].append(f"{site}{len(self.recordings[site])}.csv")
        self.network.start_site(site, self.recordings[site][-1])

    def kill(self, site):
        self.network.stop(site, signal.SIGKILL)
        # What it heard in its last second may not have been sent.
        path = self.network.path(self.recordings[site][-1])
        with open(path, encoding="ascii") as file:
            lines = [line for line in file.read().split("\n") if re.match(r"[\d.]+,", line)]
        end = float(lines[-1].split(",")[0]) - 1 if lines else 0
        with open(path, "w", encoding="ascii") as file:
            file.writelines(line + "\n" for line in lines if float(line.split(",")[0]) < end)

    def heard(self, site):
        """All aircraft of each recording."""
        return [self.network.aircraft(recording) for recording in self.recordings[site]]


def positions(aircraft):
    counts = aircraft["messages_by_type"]
    return counts.get("POS_AIR", 0) + counts.get("POS_GND", 0)


def kill_worker(network, sites, name):
    network.stop(name, signal.SIGKILL)
    time.sleep(2)
    network.start_worker(name)


def kill_server(network, sites):
    network.stop("server", signal.SIGKILL)
    time.sleep(2)
    network.start_server()


def kill_site(network, sites, site):
    sites.kill(site)
    time.sleep(1)
    sites.start(site)


def kill_at_random(network, sites, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        time.sleep(random.uniform(0.2, 8))
        kill, *name = random.choice(
            [(kill_server,)]
            + [(kill_worker, name) for name in WORKERS]
            + [(kill_site, site) for site in PLACES]
        )
        print(f"{end - time.monotonic():5.0f}  {kill.__name__} {' '.join(name)}", flush=True)
        kill(network, sites, *name)


def run(network, seconds):
    check_page()
    network.start_server()
    sites = Sites(network)
    network.start_receivers()
    for name in WORKERS:
        network.start_worker(name)
    for site in PLACES:
        sites.start(site)
    for name in WORKERS:
        wait_for(name, lambda name=name: network.said(name, "following 4 partitions"))
    network.start("viewer", network.view("--json"), output=network.path("viewer.json"))
    check_permissions(network)
    time.sleep(6)
    bad = send_bad_batches(network)
    if seconds:
        kill_at_random(network, sites, seconds)
    else:
        for kill, *name in [(kill_worker, "worker2"), (kill_server,), (kill_site, "east")]:
            kill(network, sites, *name)
            time.sleep(6)
    time.sleep(5)  # so that all programs are connected again
    for site in PLACES:
        status = network.stop(site)
        check(f"site {site} has sent all", status == 130, f"status {status}")
    time.sleep(9)  # so that the workers have read all, and have reported each aircraft
    network.start("late viewer", network.view("--json"), output=network.path("late viewer.json"))
    time.sleep(3)
    views = {}
    for name in ("viewer", "late viewer"):
        status = network.stop(name)
        check(f"{name} ends when it is told", status == 130, f"status {status}")
        views[name] = network.aircraft(worker=name)
    merged = {}
    for name in WORKERS:
        status = network.stop(name)
        check(f"{name} ends when it is told", status == 130, f"status {status}")
        merged.update(network.aircraft(worker=name))
    check_picture(merged, {site: sites.heard(site) for site in PLACES})
    for name, view in views.items():
        check_view(name, view, merged)
    if not seconds:  # a worker that is killed forgets what it counted
        check_bad_batches(network, bad)
    for name in network.started():
        trouble = re.search(r"Sanitizer:|runtime error|terminate called", network.log(name))
        check(f"{name}: no fault in its log", not trouble, network.log(name)[-3000:])


def check_picture(merged, heard):
    addresses = {site: set().union(*runs) for site, runs in heard.items()}
    every = set().union(*addresses.values())
    numbers = ", ".join(f"{site} {len(one)}" for site, one in addresses.items())
    missing, more = every - set(merged), set(merged) - every
    check(f"each of {len(every)} aircraft is there ({numbers})", every and not missing, missing)
    check("no other aircraft is there", not more, more)
    best = max(sum(positions(one) for run in runs for one in run.values()) for runs in heard.values())
    count = sum(positions(one) for one in merged.values())
    check(f"{count} positions, {best} at the best site alone", count > best, "not more")
    placed = {address for address, one in merged.items() if "latitude" in one}
    missing = {address for runs in heard.values() for run in runs for address, one in run.items()
               if "latitude" in one} - placed  # fmt: skip
    check(f"each aircraft with a place at a site has one ({len(placed)})", not missing, missing)


def check_view(name, view, merged):
    """A viewer shows what the workers have, but for what depends on the moment."""

    def lasting(one):
        return {key: value for key, value in one.items() if key != "time_ms" and "seen" not in key}

    differing = [one for one in merged if one not in view or lasting(view[one]) != lasting(merged[one])]
    check(f"{name}: all {len(merged)} aircraft as the workers have them", not differing, differing)
    check(f"{name}: no other aircraft", not set(view) - set(merged), set(view) - set(merged))


def check_bad_batches(network, bad):
    log = network.log("worker1")
    check("the worker of partition 0 says what is wrong",
          "it is not of the form ODR1" in log, log)  # fmt: skip
    counts = [int(count) for count in re.findall(r"^not readable +(\d+)", log, re.MULTILINE)]
    check(f"it counts {bad} bad batches", counts == [bad], counts)


def main():
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 0
    end_in_order()
    with Network(sys.argv[1]) as network:
        try:
            run(network, seconds)
        except (TimeoutError, subprocess.TimeoutExpired) as error:
            check("all went on", False, error)
            for name in network.started():
                print(f"--- {name}\n{network.log(name)[-1500:]}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
