#!/usr/bin/env -S python3 -B
"""What a network costs: CPU of sites, message server and worker for each reply, beside that of one
`ondrel track` which reads the same replies from a file.

    network_load.py ONDREL

Of 8 and of 64 sites, each reply is heard by two. The sites send as fast as the server takes it. Then
one worker takes all that is stored. The status is 1 if a reply is lost.

The engine is what the messages cost in all three: all of the server, what a site needs more than
without a server, and the threads of the message library in the worker."""

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


def cpu(pid, thread=None):
    """Seconds so far, by the system's count of hundredths."""
    task = f"/task/{thread}" if thread else ""
    with open(f"/proc/{pid}{task}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def cpu_of(*commands, status=0):
    """Of programs that run at once and end by themselves, and what they say."""
    before = os.times()
    running = [subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
               for command in commands]  # fmt: skip
    said = [one.communicate(timeout=120)[1] for one in running]
    for one, text in zip(running, said):
        if one.returncode != status:
            sys.exit(f"{one.args} ended with status {one.returncode}:\n{text}")
    after = os.times()
    used = after.children_user + after.children_system - before.children_user - before.children_system
    return used, said


def replies_in(path):
    """The lines of a recording, without the one that names its columns."""
    with open(path, encoding="ascii") as file:
        return file.readlines()[1:]


def divide(path, count):
    """A recording for each site; replies of one time follow each other in it as before."""
    lines = replies_in(path)
    parts = [f"{path}.{site}" for site in range(count)]
    for site, part in enumerate(parts):
        heard = {site, (site + 1) % count}
        with open(part, "w", encoding="ascii") as file:
            file.writelines(line for i, line in enumerate(lines) if i % count in heard)
    return parts


def feeds(ondrel, parts, *more):
    """The commands of all sites."""
    return [[ondrel, "feed", part, "--site", f"site{i}", *more] for i, part in enumerate(parts)]


def replies(address):
    """What a worker has read."""
    with urllib.request.urlopen(address + "status", timeout=10) as answer:
        status = json.load(answer)
    return status["replies"] + status["heard_elsewhere"]


def measure(ondrel, count):
    with Network(ondrel) as network:
        recording = network.path("all.csv")
        cpu_of([ondrel, "simulate", *TRAFFIC, "-o", recording])
        parts = divide(recording, count)
        local = cpu_of([ondrel, "track", "--json", recording])[0] / len(replies_in(recording))
        silent, _ = cpu_of(*feeds(ondrel, parts, "--to", network.url, "--backlog", "4096"), status=1)
        network.start_server()
        server = network.processes["server"].pid
        worker = [ondrel, "track", network.url, "--credentials", network.path("worker1"),
                  "--serve", "127.0.0.1:0", "--json"]  # fmt: skip
        network.start("worker1", worker)  # it makes the stream
        wait_for("the worker", lambda: network.said("worker1", "following"))
        network.stop("worker1")
        begun = cpu(server)
        sending, said = cpu_of(*feeds(ondrel, parts, "--to", network.url,
                                      "--credentials", network.path("north")))  # fmt: skip
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
        pid = network.processes["worker1"].pid
        tracked, main = cpu(pid), cpu(pid, pid)
        delivered = cpu(server)
        network.stop("worker1")
        engine = max(0, sending - silent) + delivered - begun + tracked - main
        costs = sending, stored - begun, delivered - stored, tracked, engine
        return sent, seen, local, costs, end - start


def main():
    end_in_order()
    print("CPU a reply in microseconds, and its ratio to a local run over the same replies\n")
    print("sites  replies  local         feed  server: stored    delivered       worker       engine"
          "  replies/s  lost")  # fmt: skip
    lost = 0
    for count in SITES:
        sent, seen, local, costs, seconds = measure(sys.argv[1], count)
        cells = "".join(f"  {cost / sent * 1e6:4.2f} ({cost / sent / local:4.2f})" for cost in costs)
        print(f"{count:5} {sent:8} {local * 1e6:6.2f} {cells} {sent / seconds:10.0f} {sent - seen:5}",
              flush=True)  # fmt: skip
        lost += sent - seen
    return 1 if lost else 0


if __name__ == "__main__":
    sys.exit(main())
