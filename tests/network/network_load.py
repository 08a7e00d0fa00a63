#!/usr/bin/env -S python3 -B
"""What a network costs: CPU of sites, message server and worker for each reply, beside that of one
`ondrel track` which reads the same replies from a file.

    network_load.py ONDREL

The replies are divided among 1, 8 and 64 sites, which send them as fast as the server takes them.
Then one worker takes all that is stored. The status is 1 if a reply is lost."""

import json
import os
import re
import subprocess
import sys
import time
import urllib.request

from network import Network, end_in_order, wait_for

SITES = [1, 8, 64]
TRAFFIC = ["--aircraft", "1500", "--seconds", "60", "--damage", "0"]


def cpu(pid):
    """Seconds so far, by the system's count of hundredths."""
    with open(f"/proc/{pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def cpu_of(*commands):
    """Of programs that run at once and end by themselves, and what they say."""
    before = os.times()
    running = [subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
               for command in commands]  # fmt: skip
    said = [one.communicate(timeout=120)[1] for one in running]
    for one, text in zip(running, said):
        if one.returncode != 0:
            sys.exit(f"{one.args} ended with status {one.returncode}:\n{text}")
    after = os.times()
    used = after.children_user + after.children_system - before.children_user - before.children_system
    return used, said


def divide(path, count):
    """A recording for each site; replies of one time follow each other in it as before."""
    with open(path, encoding="ascii") as file:
        lines = file.readlines()[1:]
    parts = [f"{path}.{site}" for site in range(count)]
    for site, part in enumerate(parts):
        with open(part, "w", encoding="ascii") as file:
            file.writelines(lines[site::count])
    return parts


def replies(address):
    """What a worker has read."""
    with urllib.request.urlopen(address + "status", timeout=10) as answer:
        status = json.load(answer)
    return status["replies"] + status["heard_elsewhere"]


def measure(ondrel, count):
    with Network(ondrel) as network:
        recording = network.path("all.csv")
        cpu_of([ondrel, "simulate", *TRAFFIC, "-o", recording])
        local, _ = cpu_of([ondrel, "track", "--json", recording])
        network.start_server()
        server = network.processes["server"].pid
        worker = [ondrel, "track", network.url, "--credentials", network.path("worker1"),
                  "--serve", "127.0.0.1:0", "--json"]  # fmt: skip
        network.start("worker1", worker)  # it makes the stream
        wait_for("the worker", lambda: network.said("worker1", "following"))
        network.stop("worker1")
        begun = cpu(server)
        feeds, said = cpu_of(*([ondrel, "feed", part, "--to", network.url, "--site", f"site{site}",
                          "--credentials", network.path("north")]
                         for site, part in enumerate(divide(recording, count))))  # fmt: skip
        stored = cpu(server)
        sent = sum(int(re.search(r"^  sent +(\d+)", text, re.MULTILINE)[1]) for text in said)
        network.start("worker1", worker)
        page = wait_for("its page", lambda: re.findall(r"http://\S+", network.log("worker1"))[1:])[0]
        start = end = time.monotonic()
        seen = 0
        while time.monotonic() - end < 2:  # as long as replies come
            time.sleep(0.1)
            if (now := replies(page)) != seen:
                seen, end = now, time.monotonic()
        tracked = cpu(network.processes["worker1"].pid)
        delivered = cpu(server)
        network.stop("worker1")
        return sent, seen, local, feeds, stored - begun, delivered - stored, tracked, end - start


def main():
    end_in_order()
    print("CPU a reply in microseconds, and its ratio to a local run over the same replies\n")
    print("sites  replies    local       feed       server: stored  delivered      worker  replies/s  lost")
    lost = 0
    for count in SITES:
        sent, seen, local, *costs, seconds = measure(sys.argv[1], count)
        cells = "".join(f"{cost / sent * 1e6:8.2f} ({cost / local:4.2f})" for cost in costs)
        print(f"{count:5} {sent:8} {local / sent * 1e6:8.2f} {cells} {sent / seconds:10.0f} {sent - seen:5}",
              flush=True)  # fmt: skip
        lost += sent - seen
    return 1 if lost else 0


if __name__ == "__main__":
    sys.exit(main())
