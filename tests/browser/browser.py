"""Drives headless Chromium through chromedriver, with the standard library alone."""

import base64
import json
import os
import signal
import subprocess
import urllib.error
import urllib.request


class Browser:
    """One window. Use it in a with statement, which ends the browser in every case."""

    def __init__(self):
        # Ctrl-C must not reach them: _end() ends driver and browser, which are one group.
        self._driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, start_new_session=True)
        self._session = None

    def __enter__(self):
        try:
            line = next((line for line in self._driver.stdout if "successfully on port" in line),
                        None)
            if line is None:
                raise RuntimeError("chromedriver does not start")
            self._root = f"http://127.0.0.1:{line.split()[-1].rstrip('.')}/session"
            arguments = ["--headless=new", "--no-sandbox", "--disable-dev-shm-usage"]
            answer = self._send("POST", "", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": {"args": arguments},
                "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}}})
            self._session = "/" + answer["sessionId"]
        except BaseException:
            self._end()
            raise
        return self

    def __exit__(self, *_):
        self._end()

    def _end(self):
        try:
            if self._session:
                self._send("DELETE", "")
        finally:
            os.killpg(self._driver.pid, signal.SIGKILL)
            self._driver.wait()
            self._driver.stdout.close()

    def _send(self, method, path, parameters=None):
        body = None if method in ("GET", "DELETE") else json.dumps(parameters or {}).encode()
        request = urllib.request.Request(self._root + (self._session or "") + path, body,
                                         {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=30) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(json.load(error)["value"]["message"]) from None

    def new_window(self):
        """Takes the place of the current one, and knows nothing of it."""
        new = self._send("POST", "/window/new", {"type": "tab"})["handle"]
        self._send("DELETE", "/window")
        self._send("POST", "/window", {"handle": new})

    def open(self, address):
        self._send("POST", "/url", {"url": address})

    def back(self):
        self._send("POST", "/back")

    def run(self, script, *arguments):
        """What the function body `script` returns in the page."""
        return self._send("POST", "/execute/sync", {"script": script, "args": arguments})

    def devtools(self, command, **parameters):
        """A command of the Chrome DevTools protocol."""
        return self._send("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def log(self, kind):
        """What came since the last call; "browser" is the console, "performance" has requests."""
        return self._send("POST", "/se/log", {"type": kind})

    def point(self, kind, *steps):
        """By "mouse" or "touch"; a step is an action of WebDriver, as {"type": "pointerUp"}."""
        self._send("POST", "/actions", {"actions": [
            {"type": "pointer", "id": kind, "parameters": {"pointerType": kind},
             "actions": [{"button": 0, **step} for step in steps]}]})

    def wheel(self, x, y, delta):
        self._send("POST", "/actions", {"actions": [{"type": "wheel", "id": "wheel", "actions": [
            {"type": "scroll", "x": x, "y": y, "deltaX": 0, "deltaY": delta}]}]})

    def key(self, key):
        self._send("POST", "/actions", {"actions": [{"type": "key", "id": "keys", "actions": [
            {"type": "keyDown", "value": key}, {"type": "keyUp", "value": key}]}]})

    def picture(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self._send("GET", "/screenshot")))
