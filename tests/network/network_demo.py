#!/usr/bin/env -S python3 -B
"""Runs three sites, two workers and a viewer on this machine.

    network_demo.py ONDREL [SECONDS]

On a terminal, the table refreshes until it is left with q. Elsewhere it is shown after SECONDS, 20
unless told."""

import os
import subprocess
import sys

from network import PLACES, WORKERS, Network, end_in_order


def say(text):
    print(text, file=sys.stderr, flush=True)


def show(network, seconds):
    """The table of all aircraft."""
    table = subprocess.Popen(network.view())
    try:
        table.wait(None if os.isatty(0) and os.isatty(1) else seconds)
    except subprocess.TimeoutExpired:
        table.terminate()
    table.wait()


def main():
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 20
    end_in_order()
    with Network(sys.argv[1]) as network:
        network.start_server()
        say(f"{network.url}: nats-server, with examples/message_server.conf")
        network.start_receivers()
        for name, partitions in WORKERS.items():
            network.start_worker(name)
            say(f"{name}: ondrel track {network.url} --partitions {partitions}")
        for site, receiver in network.receivers.items():
            network.start_site(site, site + ".csv")
            say(f"{site}: ondrel feed {receiver} --to {network.url} --site {site}")
        show(network, seconds)
        for name in [*PLACES, *WORKERS]:
            network.stop(name)
            tail = network.log(name).splitlines()
            say(f"{name} in short:")
            begin = next((i for i, line in enumerate(tail) if line.startswith("replies read")), 0)
            say("\n".join("  " + line for line in tail[begin : begin + 7]))


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
