#!/usr/bin/env python3
"""Makes the picture of the live page in the README. ./dev picture runs it.

live_page_picture.py ONDREL FILE plays six minutes of simulated traffic thirty times as fast.
"""

import os
import subprocess
import sys
import tempfile
from contextlib import ExitStack

from browser import Browser
from client import track, wait_for

TRAFFIC = ["--seed", "3", "--aircraft", "30", "--radius", "75", "--latitude", "51.6",
           "--longitude", "2.6", "--start", "1700000000", "--seconds", "420"]
END = "22:19:"  # of the clock of the traffic, which starts at 22:13:20


def main(ondrel, file):
    with ExitStack() as stack:
        ondrel, file = os.path.abspath(ondrel), os.path.abspath(file)
        os.chdir(stack.enter_context(tempfile.TemporaryDirectory()))
        recording = "simulated traffic"  # the page shows this name
        subprocess.run([ondrel, "simulate", "-o", recording, *TRAFFIC], check=True)
        client = track(ondrel, "127.0.0.1:0", "--pace", "30", recording)
        stack.callback(client.end)
        browser = stack.enter_context(Browser())
        browser.devtools("Emulation.setDeviceMetricsOverride", width=1240, height=840,
                         deviceScaleFactor=1, mobile=False)
        browser.devtools("Emulation.setScrollbarsHidden", hidden=True)
        browser.open(f"http://{client.address}/")
        wait_for(lambda: END in browser.run("return document.body.innerText"),
                 lambda: "the traffic does not get on", seconds=60)
        browser.picture(file)


if __name__ == "__main__":
    main(*sys.argv[1:])
