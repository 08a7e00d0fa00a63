#!/usr/bin/env python3
"""The load that the live client holds, beside the same recordings read from files.

Ratios of CPU time are shown beside their aim and fail nothing, since machines are shared; a lost reply does.
"""

import asyncio
import multiprocessing
import os
import statistics
import sys
import tempfile
import threading
import time

import peers
from peers import Client, Receivers, hasten, play, read, simulate

ROUNDS = 5  # of each measurement whose ratio has an aim
WEB_SECONDS = 6
WEB_CLIENTS = 200
STALLED = 5

all_lost = 0


def row(what, cpu, ratio, replies, lost):
    global all_lost
    all_lost += lost
    print(f"{what:48}{cpu:7.2f}{ratio:>16}{replies:12,.0f}{lost:7}", flush=True)


def web_row(what, *values):
    print(f"{what:35}" + "".join(f"{value:>14}" for value in values), flush=True)


def track_files(paths, *options):
    """The seconds that it took, and what Client.end() gives."""
    begin = time.monotonic()
    result = Client(*options, *paths).end(interrupt=False)
    return time.monotonic() - begin, *result


def track_pipe(stream, seconds, tick, *options):
    """The same, of bytes that come at a pace through standard input."""
    begin = time.monotonic()
    out, into = os.pipe()
    client = Client(*options, "-", stdin=out)
    os.close(out)
    with open(into, "wb", buffering=0) as pipe:
        play([(pipe.write, memoryview(stream))], seconds, tick)
    result = client.end(interrupt=False)
    return time.monotonic() - begin, *result


def track_feeds(streams, seconds, tick, *options):
    """The same, of feeds."""
    receivers = Receivers(streams)
    client = Client("--once", *options, *receivers.names)
    begin = time.monotonic()
    receivers.play(seconds, tick)
    client.await_lines("the connection was closed", len(streams))
    return time.monotonic() - begin, *client.end()


def lost(file, feed, keys):
    """Replies that the feed has fewer or more than the file, and aircraft that differ in one of the keys."""
    (_, _, counts, aircraft), (_, _, fed, fed_aircraft) = file, feed
    missing = abs(counts["replies read"] - fed["replies read"])
    return missing + sum(any(aircraft.get(address, {}).get(key) != fed_aircraft.get(address, {}).get(key)
                             for key in keys) for address in aircraft.keys() | fed_aircraft.keys())


def one_source(folder):
    """Two million replies of 4000 aircraft in two seconds: twenty seconds of traffic, ten times as fast."""
    path = f"{folder}/fast.bin"
    simulate(path, "--aircraft", 4300, "--interrogators", 64, "--seconds", 20)
    hasten(path, 10)
    recording = read(path)
    options = ["--max-speed", "1000000"]
    rounds = [(track_files([path], *options), track_feeds([recording], 0, 0, *options),
               track_pipe(recording, 2, 0.001, *options), track_feeds([recording], 2, 0.001, *options))
              for _ in range(ROUNDS)]
    keys = ["messages", "messages_by_format", "messages_by_type", "callsign", "squawk"]
    for i, (what, aim) in enumerate((("a recording from a file", ""), ("from one source, as fast as it is taken", ""),
                                     ("at a million replies a second through a pipe", ""),
                                     ("at a million replies a second from one source", " (aim 1.5)"))):
        runs = [one[i] for one in rounds]
        row(what, statistics.median(run[1] for run in runs),
            f"{statistics.median(one[i][1] / one[0][1] for one in rounds):.2f}{aim}",
            runs[0][2]["replies read"] / statistics.median(run[0] for run in runs),
            sum(lost(one[0], one[i], keys) for one in rounds))


def fifty_sources(folder):
    """Each hears 2000 replies a second of 80 aircraft: of its own, or all of the same."""
    paths = [f"{folder}/{number}.bin" for number in range(50)]
    for number, path in enumerate(paths):
        simulate(path, "--seed", number + 1, "--aircraft", 86, "--interrogators", 64, "--seconds", 5)
    for what, heard in (("with aircraft of their own", paths), ("that hear the same", paths[:1] * 50)):
        file = track_files(heard)
        replies = file[2]["replies read"]
        row(f"50 recordings {what}", file[1], "1.00", replies / file[0], 0)
        feed = track_feeds([read(path) for path in heard], replies / 100000, 0.0001)
        row(f"50 sources {what}", feed[1], f"{feed[1] / file[1]:.2f}", replies / feed[0], lost(file, feed, ["address"]))


async def browse(address, phase, seconds, packed, latencies, sizes):
    """Fetches the body of the index once a second."""
    accepted = "Accept-Encoding: gzip\r\n" if packed else ""
    request = f"GET /index.body HTTP/1.1\r\nHost: {address}\r\n{accepted}\r\n".encode()
    writer = None
    begin = time.monotonic() + phase
    for second in range(seconds):
        await asyncio.sleep(begin + second - time.monotonic())
        asked = time.monotonic()
        if writer is None:
            reader, writer = await asyncio.open_connection(*address.split(":"))
        writer.write(request)
        head = (await reader.readuntil(b"\r\n\r\n")).lower()
        assert head.startswith(b"http/1.1 200"), head
        sizes.append(int(head.split(b"content-length:")[1].split()[0]))
        await reader.readexactly(sizes[-1])
        latencies.append(time.monotonic() - asked)
        if b"connection: close" in head:
            writer.close()
            writer = None


async def stall(address, seconds):
    """Asks for much and reads nothing."""
    _, writer = await asyncio.open_connection(*address.split(":"), limit=1)
    writer.transport.pause_reading()
    writer.write(f"GET /index.body HTTP/1.1\r\nHost: {address}\r\n\r\n".encode() * 100)
    await asyncio.sleep(seconds)
    writer.transport.abort()


def browse_all(address, packed, answer):
    """Browsers, in a process of their own; with them five that read nothing."""
    latencies, sizes = [], []

    async def everyone():
        await asyncio.gather(*(stall(address, WEB_SECONDS) for _ in range(STALLED)),
                             *(browse(address, number / WEB_CLIENTS, WEB_SECONDS - 1, packed, latencies, sizes)
                               for number in range(WEB_CLIENTS)))
    asyncio.run(everyone())
    answer.send((f"{statistics.median(latencies) * 1000:.1f}", f"{max(latencies) * 1000:.0f}",
                 f"{statistics.mean(sizes) / 1024:.0f}"))


def browsers_answers(address, packed):
    """The median and the longest time of an answer, and its size."""
    receive, send = multiprocessing.Pipe(False)
    browsers = multiprocessing.Process(target=browse_all, args=(address, packed, send))
    browsers.start()
    send.close()  # so that recv() ends if they fail
    try:
        return receive.recv()
    finally:
        browsers.join()


def web_clients(folder):
    """2000 aircraft in real pace, and web clients after some seconds without any."""
    seconds = 3 + 3 * (WEB_SECONDS + 1)
    path = f"{folder}/web.bin"
    simulate(path, "--aircraft", 2210, "--seconds", seconds)
    receivers = Receivers([read(path)])
    client = Client("--once", "--serve", "0", *receivers.names)
    player = threading.Thread(target=receivers.play, args=(seconds, 0.01), daemon=True)
    player.start()
    time.sleep(3)
    web_row("2000 aircraft in real pace", "CPU of a core", "answer, ms", "longest", "KB", "replies/s")
    for what, packed in (("no web client", None), (f"{WEB_CLIENTS} web clients", False),
                         (f"{WEB_CLIENTS} that take gzip", True)):
        cpu, replies, begin = client.cpu(), client.status()["replies"], time.monotonic()
        answers = ("", "", "")
        if packed is None:
            time.sleep(WEB_SECONDS)
        else:
            answers = browsers_answers(client.web(), packed)
        passed = time.monotonic() - begin
        web_row(what, f"{100 * (client.cpu() - cpu) / passed:.0f} %", *answers,
                f"{(client.status()['replies'] - replies) / passed:,.0f}")
    client.await_lines("the connection was closed")
    player.join()
    return lost(track_files([path]), (0, *client.end()), ["messages"])


if __name__ == "__main__":
    peers.ondrel = sys.argv[1]
    with tempfile.TemporaryDirectory() as work:
        print(f"{'':48}{'CPU s':>7}{'ratio to file':>16}{'replies/s':>12}{'lost':>7}")
        one_source(work)
        fifty_sources(work)
        print()
        all_lost += web_clients(work)
        print(f"Beside the web clients were {STALLED} that read nothing. {all_lost} replies were lost.")
    sys.exit(1 if all_lost else 0)
