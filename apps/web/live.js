// Keeps a page current: fetches what changes of it once a second, and keeps what the reader chose:
// the order of the table, and the part of the map.
"use strict";

const page = document.querySelector("main");
const file = location.pathname.replace(/^.*\//, "").replace(/\.html$/, "") || "index";
const note = document.createElement("p");
note.className = "live";
note.setAttribute("role", "status");
document.body.prepend(note);

// {name, descending}: the column of the table; null leaves the order of the client.
let order = null;
// {longitude, latitude, across}: middle and width of what the map shows, in degrees; null shows all.
let view = null;
// While a button of the mouse or a finger is down: {map, x, y}.
let held = null;
let isDragged = false;

// What the reader chose outlives a look at another page. A browser may refuse to keep it.
function keepChoice() {
  try {
    sessionStorage.setItem(file, JSON.stringify({ order, view }));
  } catch { /* it is lost with the page */ }
}

function recallChoice() {
  try {
    ({ order, view } = JSON.parse(sessionStorage.getItem(file)) || { order, view });
  } catch { /* nothing was kept */ }
}

function compare(left, right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

// Rows without a value come last in either direction.
function sortTable() {
  const table = page.querySelector("table.aircraft");
  const heads = table ? [...table.tHead.rows[0].cells] : [];
  const head = heads.find(one => one.textContent === order?.name);
  for (const one of heads) {
    one.tabIndex = 0;
    one.removeAttribute("aria-sort");
  }
  if (!head) {
    return;
  }
  head.setAttribute("aria-sort", order.descending ? "descending" : "ascending");
  const isNumber = head.classList.contains("number"); // not an address such as 40E123
  const rows = [...table.tBodies[0].rows].map(row => {
    const text = row.cells[head.cellIndex].textContent.trim();
    return { row, none: text === "–", key: isNumber ? Number(text) : text };
  });
  rows.sort((left, right) => left.none - right.none ||
    (order.descending ? compare(right.key, left.key) : compare(left.key, right.key)));
  table.tBodies[0].append(...rows.map(one => one.row));
}

function sortBy(head) {
  const name = head.textContent;
  order = { name, descending: order?.name === name && !order.descending };
  keepChoice();
  sortTable();
}

const maps = () => [...page.querySelectorAll("svg[data-degrees]")];
const degreesOf = map => map.dataset.degrees.split(" ").map(Number);

function bounded({ x, y, zoom }) {
  zoom = Math.min(64, Math.max(1, zoom));
  const half = 0.5 / zoom;
  const within = share => Math.min(1 - half, Math.max(half, share));
  return { x: within(x), y: within(y), zoom };
}

// What a map shows: its middle in shares of the whole, and how many times as large.
function partOf(map) {
  if (!view) {
    return { x: 0.5, y: 0.5, zoom: 1 };
  }
  const [longitude, latitude, across, upward] = degreesOf(map);
  const east = ((view.longitude - longitude) % 360 + 540) % 360 - 180;
  return bounded({ x: 0.5 + east / across, y: 0.5 - (view.latitude - latitude) / upward,
    zoom: across / view.across });
}

function applyView() {
  for (const map of maps()) {
    map.dataset.whole ||= map.getAttribute("viewBox");
    const [, , width, height] = map.dataset.whole.split(" ").map(Number);
    const { x, y, zoom } = partOf(map);
    map.setAttribute("viewBox", [(x - 0.5 / zoom) * width, (y - 0.5 / zoom) * height,
      width / zoom, height / zoom].map(number => number.toFixed(2)).join(" "));
    map.style.setProperty("--shrink", 1 / zoom); // symbols and names keep their size
    map.style.touchAction = view ? "none" : ""; // a finger moves the map, not the page
  }
}

function moveView(map, change) {
  const part = partOf(map);
  change(part, map.getBoundingClientRect());
  const { x, y, zoom } = bounded(part);
  const [longitude, latitude, across, upward] = degreesOf(map);
  view = zoom > 1 ? { longitude: longitude + (x - 0.5) * across,
    latitude: latitude + (0.5 - y) * upward, across: across / zoom } : null;
  keepChoice();
  applyView();
}

// The place under the mouse stays where it is.
function zoomAt(map, event, factor) {
  moveView(map, (to, box) => {
    const x = (event.clientX - box.left) / box.width - 0.5;
    const y = (event.clientY - box.top) / box.height - 0.5;
    const { zoom } = bounded({ ...to, zoom: to.zoom * factor });
    to.x += x / to.zoom - x / zoom;
    to.y += y / to.zoom - y / zoom;
    to.zoom = zoom;
  });
}

// By the name of the key or button.
const zooms = {
  "+": to => { to.zoom *= 1.5; },
  "-": to => { to.zoom /= 1.5; },
  "0": to => { to.zoom = 1; },
};

function zoomBy(name) {
  const map = maps().find(one => one.clientWidth > 0);
  if (map && zooms[name]) {
    moveView(map, zooms[name]);
  }
}

const buttons = document.createElement("div");
buttons.className = "zoom";
for (const [name, sign, label] of [["+", "+", "Zoom in"], ["-", "−", "Zoom out"],
  ["0", "all", "Whole map"]]) {
  const button = document.createElement("button");
  button.textContent = sign;
  button.title = label;
  button.setAttribute("aria-label", label);
  button.addEventListener("click", () => zoomBy(name));
  buttons.append(button);
}

const mapAt = event => event.target.closest("svg[data-degrees]");

page.addEventListener("wheel", event => {
  const map = mapAt(event);
  if (map && (event.ctrlKey || view || event.deltaY < 0)) {
    event.preventDefault();
    zoomAt(map, event, event.deltaY < 0 ? 1.25 : 0.8);
  }
}, { passive: false });
page.addEventListener("dblclick", event => {
  const map = mapAt(event);
  if (map) {
    zoomAt(map, event, 2);
  }
});
page.addEventListener("mousedown", event => {
  if (mapAt(event)) {
    event.preventDefault(); // the browser would drag links and select names
  }
});
page.addEventListener("pointerdown", event => {
  held = { map: mapAt(event), x: event.clientX, y: event.clientY };
  isDragged = false;
});
document.addEventListener("pointermove", event => {
  if (!event.buttons) {
    held = null;
  }
  if (!held?.map || event.buttons !== 1) {
    return;
  }
  const across = event.clientX - held.x;
  const down = event.clientY - held.y;
  isDragged ||= Math.hypot(across, down) > 3; // a hand trembles in a click
  if (isDragged) {
    moveView(held.map, (to, box) => {
      to.x -= across / box.width / to.zoom;
      to.y -= down / box.height / to.zoom;
    });
    held = { map: held.map, x: event.clientX, y: event.clientY };
  }
});
for (const end of ["pointerup", "pointercancel"]) {
  document.addEventListener(end, () => { held = null; });
}
page.addEventListener("click", event => {
  const head = event.target.closest("table.aircraft thead th");
  if (head) {
    sortBy(head);
  }
  if (isDragged && mapAt(event)) {
    event.preventDefault(); // it ended on a link
  }
});
document.addEventListener("keydown", event => {
  if (event.ctrlKey || event.metaKey) {
    return;
  }
  if (event.key === "Enter" && event.target.matches("table.aircraft thead th")) {
    sortBy(event.target);
  }
  zoomBy(event.key);
});

// A selector that finds in new content what has the focus now.
function focused() {
  const one = document.activeElement;
  if (!page.contains(one) || buttons.contains(one)) {
    return null;
  }
  return one.href ? `a[href="${CSS.escape(one.getAttribute("href"))}"]:not([tabindex])`
    : one.matches("thead th") ? `thead th:nth-child(${one.cellIndex + 1})` : ".table";
}

function prepare() {
  sortTable();
  applyView();
  maps()[0]?.closest("figure").querySelector("figcaption")?.prepend(buttons);
}

function show(body) {
  const scroll = page.querySelector(".table")?.scrollLeft;
  const focus = focused();
  const button = buttons.contains(document.activeElement) ? document.activeElement : null;
  page.innerHTML = body;
  prepare();
  if (scroll) {
    page.querySelector(".table").scrollLeft = scroll;
  }
  (button || (focus && page.querySelector(focus)))?.focus({ preventScroll: true });
}

async function refresh() {
  try {
    const answer = await fetch(file + ".body",
      { cache: "no-store", signal: AbortSignal.timeout?.(5000) });
    const body = await answer.text();
    if (answer.ok && !held) { // a click needs the same element from its beginning to its end
      show(body);
    }
    note.textContent = answer.ok ? "" : body;
  } catch {
    note.textContent = "No connection to ondrel. What is below is old.";
  }
  setTimeout(refresh, document.hidden ? 5000 : 1000);
}

recallChoice();
prepare();
setTimeout(refresh, 1000);
