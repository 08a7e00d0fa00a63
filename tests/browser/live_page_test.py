#!/usr/bin/env python3
"""Uses the live pages in a browser as a reader does. ./dev browser runs it.

live_page_test.py ONDREL [CHECK...] runs all checks, or those named, and prints a line for each. A
picture of the page at each failure is left in build/browser.
"""

import json
import pathlib
import signal
import statistics
import sys
import time
from contextlib import ExitStack

from browser import Browser
from client import simulate, track, wait_for

PICTURES = pathlib.Path(__file__).parents[2] / "build" / "browser"
LONGEST = 180  # seconds for everything
DESKTOP = {"width": 1400, "height": 900, "deviceScaleFactor": 1, "mobile": False}
PHONE = {"width": 400, "height": 800, "deviceScaleFactor": 2, "mobile": True}
NEAR = ["--aircraft", "30", "--seed", "4", "--radius", "60"]
FAR = ["--aircraft", "9", "--seed", "5", "--radius", "20", "--latitude", "57"]


class Pages:
    """Two receivers, the client, and a browser on its pages."""

    def __init__(self, ondrel, stack):
        self._ondrel = ondrel
        self._stack = stack
        self.receiver = self.start(simulate, "127.0.0.1:0", *NEAR)
        self.far_receiver = self.start(simulate, "127.0.0.1:0", *FAR)
        self.far_receiver.pause()
        self.sources = [f"tcp://{one.address}" for one in (self.receiver, self.far_receiver)]
        self.client = self.start(track, "127.0.0.1:0", *self.sources)
        self.browser = stack.enter_context(Browser())
        self.run = self.browser.run

    def start(self, program, *arguments):
        started = program(self._ondrel, *arguments)
        self._stack.callback(started.end)
        return started

    def open(self, name="", size=DESKTOP, scheme="light"):
        self.browser.devtools("Emulation.setDeviceMetricsOverride", **size)
        self.browser.devtools("Emulation.setEmulatedMedia",
                              features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.browser.open(f"http://{self.client.address}/{name}")
        if not name:
            self.expect(lambda: len(self.rows()) >= 20 and len(self.symbols()) >= 15,
                        "20 rows in the table, and 15 symbols on the map")

    def expect(self, condition, what, seconds=15):
        """Waits for the condition."""
        return wait_for(condition, lambda: f"expected {what}; the page shows: {self.text()}",
                        seconds)

    def text(self):
        return " ".join(self.run("return document.body.innerText").split())[:400]

    def path(self):
        return self.run("return location.pathname")

    def rows(self):
        """The cells of the table, as texts."""
        return self.run("return [...document.querySelectorAll('.aircraft tbody tr')].map("
                        "row => [...row.cells].map(cell => cell.textContent.trim()))")

    def column(self, name):
        """The number of a column, from 0."""
        heads = self.run("return [...document.querySelectorAll('.aircraft thead th')].map("
                         "head => head.textContent)")
        return next(i for i, head in enumerate(heads) if head.startswith(name))

    def values(self, name):
        """The texts of a column by the address of the aircraft."""
        column = self.column(name)
        return {row[0]: row[column] for row in self.rows()}

    def age(self):
        """Seconds since the aircraft were heard, most of them."""
        return statistics.median(int(text) for text in self.values("seen").values())

    def symbols(self):
        """By address, where the aircraft stand in the window."""
        return self.run("""
            const places = {};
            for (const symbol of document.querySelectorAll("figure.picture a .marker")) {
                const box = symbol.getBoundingClientRect();
                if (box.width > 0) {
                    places[symbol.parentNode.getAttribute("href").slice(0, 6)] =
                        [box.x + box.width / 2, box.y + box.height / 2];
                }
            }
            return places;""")

    def map(self):
        """Left, top, width and height of the map in the window."""
        return self.run("""
            const box = [...document.querySelectorAll("figure.picture svg")].find(
                map => map.clientWidth > 0).getBoundingClientRect();
            return [box.x, box.y, box.width, box.height];""")

    def middle_of(self, selector):
        return self.run("""
            const one = document.querySelector(arguments[0]);
            one.scrollIntoViewIfNeeded();
            const box = one.getBoundingClientRect();
            return [box.x + box.width / 2, box.y + box.height / 2];""", selector)

    def click(self, place, milliseconds=0):
        x, y = (int(number) for number in place)
        self.browser.point("mouse", {"type": "pointerMove", "x": x, "y": y},
                           {"type": "pointerDown"}, {"type": "pause", "duration": milliseconds},
                           {"type": "pointerUp"})

    def drag(self, place, across, down, kind="mouse"):
        x, y = (int(number) for number in place)
        steps = [{"type": "pointerMove", "x": x + across * i // 8, "y": y + down * i // 8,
                  "duration": 20} for i in range(9)]  # of a hand: none is a jump
        self.browser.point(kind, steps[0], {"type": "pointerDown"}, *steps, {"type": "pointerUp"})

    def wait_for_refresh(self):
        """Until the script has replaced what the page shows."""
        self.run("document.querySelector('main > *').isOld = true")
        self.expect(lambda: self.run("return !document.querySelector('main > *').isOld"),
                    "the page to be refreshed")

    def mark(self):
        """Notes the page, so that expect_no_reload() can tell a reload."""
        self.run("window.isMarked = true")

    def expect_no_reload(self):
        assert self.run("return window.isMarked"), "expected the page not to be loaded anew"

    def expect_motion(self):
        seen = [("symbols to move", self.symbols), ("latitudes", lambda: self.values("latitude")),
                ("counts of messages", lambda: self.values("messages"))]
        for (what, now), before in zip(seen, [now() for _, now in seen]):
            self.expect(lambda: sum(before.get(one) != value for one, value in now().items()) >= 8,
                        f"8 {what} to change")

    def faults(self, may_lose_client):
        """What the console complains about, and requests to other places than the client."""
        found = [f"the console says: {entry['message']}" for entry in self.browser.log("browser")
                 if not (may_lose_client and ".body" in entry["message"]
                         and "net::ERR_" in entry["message"])]
        for entry in self.browser.log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                address = message["params"]["request"]["url"]
                if not address.startswith(f"http://{self.client.address}/"):
                    found.append(f"the page asks for {address}")
        return found


def aircraft_appear_and_move(pages):
    pages.open()
    pages.mark()
    pages.expect_motion()
    pages.expect_no_reload()


def a_click_in_the_table_opens_the_aircraft(pages):
    pages.open()
    address = next(iter(pages.symbols()))
    pages.click(pages.middle_of(f"th a[href='{address}.html']"))
    pages.expect(lambda: pages.path() == f"/{address}.html", f"the page of {address}")
    for what, selector in (("a path", ".picture .track"), ("an altitude profile", ".profile"),
                           ("groups of data", "section td.value")):
        seen = pages.run("return document.querySelector(arguments[0]) !== null", selector)
        assert seen, f"expected {what}"
    pages.mark()
    before = pages.text()
    assert address in before, f"expected the data of {address}; the page shows: {before}"
    pages.expect(lambda: pages.text() != before, "new data")
    pages.expect_no_reload()

    pages.click(pages.middle_of("a[href$='.report']"))
    pages.expect(lambda: pages.path() == f"/{address}.report", "the report")
    assert "unchecked" in pages.text(), f"expected 'unchecked' in the report: {pages.text()}"
    pages.browser.back()
    label = pages.run("return document.querySelector('a[href$=\".report\"]').textContent")
    assert "unchecked" in label, f"expected 'unchecked' in the link to the report: {label}"
    pages.click(pages.middle_of("a[href='index.html']"))
    pages.expect(lambda: len(pages.rows()) >= 20, "the table again")


def a_click_on_the_map_opens_the_aircraft(pages):
    pages.open()
    pages.click(uncovered_symbol(pages)[1])
    pages.expect(lambda: pages.run("return document.querySelector('.profile') !== null"),
                 "the page of an aircraft")
    pages.browser.back()
    pages.expect(lambda: pages.path() == "/", "the page of all aircraft again")
    address, place = uncovered_symbol(pages)
    pages.click(place, milliseconds=1500)  # the page is due for a refresh meanwhile
    pages.expect(lambda: pages.path() == f"/{address}.html", f"the page of {address}")


def uncovered_symbol(pages):
    """Address and place of a symbol that has no other one near it."""
    symbols = pages.symbols()
    left, top, width, height = pages.map()

    def room(place):
        return min([abs(place[0] - x) + abs(place[1] - y) for x, y in symbols.values()
                    if [x, y] != place] + [place[0] - left, left + width - place[0],
                                           place[1] - top, top + height - place[1]])
    return max(symbols.items(), key=lambda symbol: room(symbol[1]))


def a_click_on_a_head_sorts(pages):
    pages.open()
    for name, key in (("altitude", float), ("address", str), ("callsign", str), ("seen", float)):
        column = pages.column(name)
        for descending in (False, True):
            pages.click(pages.middle_of(f".aircraft thead th:nth-child({column + 1})"))
            expect_order(pages, name, key, descending)
            pages.wait_for_refresh()
            expect_order(pages, name, key, descending)


def the_keyboard_sorts(pages):
    pages.open()
    pages.run("document.querySelector('.aircraft thead th:nth-child(2)').focus()")
    for descending in (False, True):
        pages.browser.key("\ue007")  # enter
        expect_order(pages, "callsign", str, descending)
        pages.wait_for_refresh()


def expect_order(pages, name, key, descending):
    """Cells without a value come last."""
    column = pages.column(name)
    shown = [row[column] for row in pages.rows()]
    known = sorted((text for text in shown if text != "–"), key=key, reverse=descending)
    order = "descending" if descending else "ascending"
    assert shown == known + ["–"] * (len(shown) - len(known)), f"expected {name} {order}: {shown}"
    told = pages.run("return document.querySelectorAll('.aircraft thead th')[arguments[0]]"
                     ".getAttribute('aria-sort')", column)
    assert told == order, f"expected the head to tell the order {order}, not {told}"


def the_place_of_the_reader_stays(pages):
    """Scroll positions and focus over refreshes; order and map over a look at another page too."""
    pages.open(size=PHONE)
    pages.run("document.querySelector('.table').scrollLeft = 150; scrollTo(0, 500)")
    pages.run("document.querySelector('th a').focus({ preventScroll: true })")
    pages.wait_for_refresh()
    place = pages.run("return [document.querySelector('.table').scrollLeft, scrollY]")
    assert place == [150, 500], f"expected the scroll position 150, 500; it is {place}"
    focus = pages.run("return document.activeElement.matches('.aircraft a')")
    assert focus, "expected the focus to stay on a link of the table"

    pages.open()
    pages.click(pages.middle_of(".aircraft thead th:nth-child(2)"))
    pages.run("scrollTo(0, 0)")
    pages.browser.key("+")
    zoomed = pages.symbols()
    pages.wait_for_refresh()
    expect_near(pages.symbols(), zoomed, 15)
    pages.click(pages.middle_of(".aircraft th a"))
    pages.expect(lambda: pages.path().endswith(".html"), "the page of an aircraft")
    pages.click(pages.middle_of("a[href='index.html']"))
    pages.expect(lambda: pages.path() == "/index.html", "the page of all aircraft again")
    expect_order(pages, "callsign", str, False)
    pages.run("scrollTo(0, 0)")
    expect_near(pages.symbols(), zoomed, 30)


def the_map_zooms_and_moves(pages):
    pages.open()
    whole = pages.symbols()
    size = "return document.querySelector('.wide .name').getBoundingClientRect().height"
    height = pages.run(size)
    address, (x, y) = uncovered_symbol(pages)
    for _ in range(4):
        pages.browser.wheel(int(x), int(y), -100)
    zoomed = pages.symbols()
    expect_near({address: zoomed[address]}, {address: [x, y]}, 8)
    expect_spread(zoomed, whole, 1.25 ** 4)
    assert abs(pages.run(size) / height - 1) < 0.1, "expected names to keep their size"
    pages.drag((x, y), 120, 60)
    expect_near(pages.symbols(), moved(zoomed, 120, 60), 8)
    assert pages.path() == "/", f"expected the aircraft not to open, but {pages.path()} is shown"
    for keys, factor in (("-", 1.25 ** 4 / 1.5), ("++", 1.25 ** 4 * 1.5), ("0", 1), ("-", 1)):
        for key in keys:
            pages.browser.key(key)
        expect_spread(pages.symbols(), whole, factor)


def buttons_and_fingers_move_the_map(pages):
    pages.open(size=PHONE)
    whole = pages.symbols()
    for button, factor in ((1, 1.5), (1, 1.5 ** 2), (2, 1.5), (3, 1), (1, 1.5)):
        pages.click(pages.middle_of(f".zoom button:nth-child({button})"))
        expect_spread(pages.symbols(), whole, factor)
    zoomed = pages.symbols()
    left, top, width, height = pages.map()
    pages.drag((left + width / 2, top + height / 2), 40, -80, "touch")
    expect_near(pages.symbols(), moved(zoomed, 40, -80), 8)


def moved(symbols, across, down):
    return {one: [x + across, y + down] for one, (x, y) in symbols.items()}


def the_map_keeps_its_place_when_it_grows(pages):
    pages.open()
    pages.browser.key("+")
    pages.browser.key("+")
    before = pages.symbols()
    pages.far_receiver.go_on()
    pages.expect(lambda: any(float(text) > 56 for text in pages.values("latitude").values()
                             if text != "–"), "aircraft farther out")
    pages.wait_for_refresh()
    left, top, width, height = pages.map()
    inside = {one: (x, y) for one, (x, y) in before.items()
              if left < x < left + width and top < y < top + height}
    expect_near(pages.symbols(), inside, 40)
    pages.browser.key("0")
    left, top, width, height = pages.map()
    outside = [one for one, (x, y) in pages.symbols().items()
               if not (left < x < left + width and top < y < top + height)]
    assert not outside, f"expected all aircraft on the whole map, but not these: {outside}"


def expect_near(symbols, expected, distance):
    """Whether the symbols are where they were expected; aircraft fly some pixels meanwhile."""
    missed = {one: (place, expected[one]) for one, place in symbols.items()
              if one in expected and max(abs(place[0] - expected[one][0]),
                                         abs(place[1] - expected[one][1])) > distance}
    assert not missed, \
        f"expected aircraft elsewhere on the map; seen, expected: {list(missed.items())[:3]}"


def expect_spread(symbols, before, factor):
    """Whether the distances between symbols have grown by the factor."""
    def spread(places):
        return sum(abs(places[one][0] - places[other][0]) for one in both for other in both)
    both = [one for one in symbols if one in before]
    seen = spread(symbols) / spread(before)
    assert abs(seen / factor - 1) < 0.05, \
        f"expected the map {factor:.2f} times as large, not {seen:.2f}"


def a_lost_feed_is_seen_and_comes_back(pages):
    pages.open()
    pages.mark()
    pages.receiver.end()
    lost = "return document.querySelector('.lost')?.innerText || ''"
    pages.expect(lambda: pages.run(lost) == "1 feed is not connected.", "a line that a feed is not connected")
    pages.expect(lambda: pages.age() >= 3, "ages of 3 s and more")
    pages.receiver = pages.start(simulate, pages.receiver.address, *NEAR)
    pages.expect(lambda: pages.age() <= 1, "ages of 1 s or less", 30)
    pages.expect(lambda: pages.run(lost) == "", "no line about feeds")
    pages.expect_motion()
    pages.expect_no_reload()


def a_lost_client_is_seen_and_comes_back(pages):
    pages.open()
    pages.mark()
    note = "return document.querySelector('[role=status]').innerText"
    pages.client.pause()  # it takes connections, but says nothing
    pages.expect(lambda: "old" in pages.run(note), "a note that what is shown is old")
    pages.client.go_on()
    pages.expect(lambda: pages.run(note) == "", "no note")
    pages.client.end()
    pages.expect(lambda: "old" in pages.run(note), "a note that what is shown is old")
    assert len(pages.rows()) >= 20, "expected the last state to stay"
    pages.client = pages.start(track, pages.client.address, *pages.sources)
    pages.expect(lambda: pages.run(note) == "" and len(pages.rows()) >= 20, "aircraft, and no note")
    pages.expect_motion()
    pages.expect_no_reload()


def all_sizes_and_schemes_are_readable(pages):
    pages.open()
    aircraft = f"{next(iter(pages.symbols()))}.html"
    for name in ("", aircraft):
        for size in (DESKTOP, PHONE):
            for scheme in ("light", "dark"):
                pages.open(name, size, scheme)
                where = f"/{name} {size['width']} pixels wide, {scheme}"
                expect_colours(pages, scheme, where)
                expect_room(pages, size, where)


def expect_colours(pages, scheme, where):
    ink, ground = (
        sum(weight * int(part) for weight, part in zip((0.2, 0.7, 0.1), colour[4:-1].split(",")))
        for colour in pages.run("const body = getComputedStyle(document.body);"
                                "return [body.color, body.backgroundColor]"))
    assert (ground - ink if scheme == "light" else ink - ground) > 120, \
        f"{where}: expected {scheme} colours; brightness of text {ink:.0f}, behind it {ground:.0f}"


def expect_room(pages, size, where):
    width = pages.run("return document.documentElement.scrollWidth")
    assert width <= size["width"], f"{where}: expected no wider page, but it has {width} pixels"
    overlaps = pages.run("""
        const isSeen = one => one.getClientRects().length > 0;
        const all = selector => [...document.querySelectorAll(selector)].filter(isSeen);
        const overlap = (one, other) => {
            const a = one.getBoundingClientRect(), b = other.getBoundingClientRect();
            return Math.min(Math.min(a.right, b.right) - Math.max(a.left, b.left),
                            Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top));
        };
        const found = all("th, td").filter(cell => cell.scrollWidth > cell.clientWidth + 1).map(
            cell => `${cell.textContent} leaves its cell`);
        const namesMayTouch = 8; // pixels
        for (const [group, most] of [
            [all("main > *, main section, h1, h2, p, figcaption li, button"), 1],
            [all(".name"), namesMayTouch]]) {
            group.forEach((one, i) => group.slice(i + 1).filter(other =>
                !one.contains(other) && overlap(one, other) > most).forEach(other => found.push(
                    `${one.textContent.slice(0, 40)} over ${other.textContent.slice(0, 40)}`)));
        }
        return found;""")
    assert not overlaps, f"{where}: expected nothing to overlap: {overlaps[:5]}"


def the_page_works_without_scripts(pages):
    pages.browser.devtools("Emulation.setScriptExecutionDisabled", value=True)
    pages.open()
    before = pages.values("messages")
    pages.expect(lambda: pages.values("messages") != before, "the page to load itself again")


CHECKS = [aircraft_appear_and_move, a_click_in_the_table_opens_the_aircraft,
          a_click_on_the_map_opens_the_aircraft, a_click_on_a_head_sorts, the_keyboard_sorts,
          the_place_of_the_reader_stays, the_map_zooms_and_moves, buttons_and_fingers_move_the_map,
          the_map_keeps_its_place_when_it_grows, all_sizes_and_schemes_are_readable,
          the_page_works_without_scripts, a_lost_feed_is_seen_and_comes_back,
          a_lost_client_is_seen_and_comes_back]


def run(check, pages):
    """Prints the line of a check, and returns whether it passed."""
    name = check.__name__.replace("_", " ")
    start = time.monotonic()
    try:
        pages.browser.new_window()
        check(pages)
        faults = []
    except AssertionError as error:
        faults = [str(error)]
    except RuntimeError as error:  # of the browser
        faults = [f"the browser says: {error}"]
    faults += pages.faults(may_lose_client=check is a_lost_client_is_seen_and_comes_back)
    if faults:
        pages.browser.picture(PICTURES / f"{check.__name__}.png")
    print(f"{'FAIL' if faults else 'ok  '} {name}, {time.monotonic() - start:.1f} s", flush=True)
    for fault in faults:
        print(f"     {fault}", flush=True)
    return not faults


def stop(number, _):
    sys.exit("The checks take too long" if number == signal.SIGALRM else "Interrupted")


def main(ondrel, *names):
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGALRM):
        signal.signal(number, stop)  # as an exception, so that all processes are ended
    signal.alarm(LONGEST)
    checks = {check.__name__: check for check in CHECKS}
    for name in names:
        if name not in checks:
            sys.exit(f"There is no check {name}; there are {', '.join(checks)}")
    PICTURES.mkdir(parents=True, exist_ok=True)
    with ExitStack() as stack:
        pages = Pages(ondrel, stack)
        passed = [run(checks[name], pages) for name in names or checks]
    print(f"{sum(passed)} of {len(passed)} checks passed")
    if not all(passed):
        print(f"Pictures of the failures are in {PICTURES}")
    return 0 if all(passed) else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
