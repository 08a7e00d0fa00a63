#include "apps/pages/style_sheet.h"

namespace tolvarin::ondrel::client {

const std::string& styleSheet() {
    static const std::string sheet = R"css(:root {
  color-scheme: light dark;
  --ground: #eef1f5; --paper: #ffffff; --ink: #16202c; --quiet: #7b8796; --line: #d9dfe7;
  --link: #0a5bb5; --alarm: #c21f2e; --alarm-ground: #fdeaec; --hover: #f3f7fc;
  --sea: #f7f9fc; --grid: #dfe5ee;
  --b0: #b4540a; --b1: #a3820c; --b2: #2c8a4b; --b3: #1277b8; --b4: #6a45b8; --b5: #7b8796;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ground: #10151c; --paper: #171e27; --ink: #dde5ee; --quiet: #7d8a9a; --line: #2a3441;
    --link: #77b4ff; --alarm: #ff7a85; --alarm-ground: #3a1c22; --hover: #1e2733;
    --sea: #131a22; --grid: #243040;
    --b0: #f29a4e; --b1: #e3c24a; --b2: #66c886; --b3: #58b4f0; --b4: #b197f7; --b5: #7d8a9a;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0 auto; padding: 1.25rem 1.5rem 3rem; max-width: 84rem;
  background: var(--ground); color: var(--ink);
  font: 0.9375rem/1.45 -apple-system, "Segoe UI", Roboto, "Helvetica Neue", "Noto Sans",
    "Liberation Sans", Arial, sans-serif;
  font-variant-numeric: tabular-nums;
}
h1 { margin: 0; font-size: 1.5rem; font-weight: 650; letter-spacing: -0.01em; }
a { color: var(--link); text-decoration: none; }
a:hover, a:focus-visible { text-decoration: underline; }
.quiet { color: var(--quiet); }
h1 + .quiet { margin: 0.15rem 0 1rem; }

/* The map of the index. */
.map { margin: 0 0 1.25rem; background: var(--paper); border: 1px solid var(--line);
  border-radius: 0.5rem; overflow: hidden; }
.map svg { display: block; width: 100%; height: auto; background: var(--sea); }
.map svg.narrow { display: none; }
.grid { stroke: var(--grid); stroke-width: 1; }
.scale { stroke: var(--quiet); stroke-width: 1.2; }
.leader { stroke: var(--quiet); stroke-width: 0.7; }
.degrees { fill: var(--quiet); font-size: 11px; }
.track { fill: none; stroke-width: 1.8; stroke-linejoin: round; stroke-linecap: round;
  opacity: 0.75; }
.marker { stroke: var(--sea); stroke-width: 1; }
.name { fill: var(--ink); font-size: 11.5px; font-weight: 600; paint-order: stroke;
  stroke: var(--sea); stroke-width: 3px; stroke-linejoin: round; }
.alarming { fill: var(--alarm); }
.map a:hover .name { fill: var(--link); }
.track.b0 { stroke: var(--b0); } .marker.b0 { fill: var(--b0); }
.track.b1 { stroke: var(--b1); } .marker.b1 { fill: var(--b1); }
.track.b2 { stroke: var(--b2); } .marker.b2 { fill: var(--b2); }
.track.b3 { stroke: var(--b3); } .marker.b3 { fill: var(--b3); }
.track.b4 { stroke: var(--b4); } .marker.b4 { fill: var(--b4); }
.track.b5 { stroke: var(--b5); } .marker.b5 { fill: var(--b5); }
.legend { display: flex; flex-wrap: wrap; gap: 0.2rem 1.2rem; margin: 0; padding: 0.5rem 0.9rem;
  list-style: none; font-size: 0.8125rem; color: var(--quiet); border-top: 1px solid var(--line); }
.legend li::before { content: ""; display: inline-block; width: 0.9rem; height: 0.25rem;
  margin-right: 0.4rem; border-radius: 0.125rem; vertical-align: middle; background: var(--b5); }
.legend .b0::before { background: var(--b0); }
.legend .b1::before { background: var(--b1); }
.legend .b2::before { background: var(--b2); }
.legend .b3::before { background: var(--b3); }
.legend .b4::before { background: var(--b4); }

/* Tables. */
table { border-collapse: separate; border-spacing: 0; background: var(--paper);
  border: 1px solid var(--line); border-radius: 0.5rem; }
th, td { padding: 0.34rem 0.7rem; border: 0; border-bottom: 1px solid var(--line);
  text-align: left; white-space: nowrap; }
tr:last-child td { border-bottom: 0; }
th { font-size: 0.8125rem; font-weight: 600; color: var(--quiet); }
.aircraft { width: 100%; }
.aircraft th { position: sticky; top: 0; z-index: 1; background: var(--paper);
  vertical-align: bottom; }
.aircraft th:first-child { border-top-left-radius: 0.5rem; }
.aircraft th:last-child { border-top-right-radius: 0.5rem; }
.aircraft th small { display: block; font-weight: 400; }
.aircraft tbody tr:hover td { background: var(--hover); }
.number { text-align: right; }
.address, .squawk { font-family: ui-monospace, "Cascadia Mono", "DejaVu Sans Mono", monospace;
  font-size: 0.875rem; }
td.callsign { font-weight: 600; }
td.quiet { font-weight: 400; }
.alarm td { background: var(--alarm-ground); }
.alarm .squawk { color: var(--alarm); font-weight: 700; }

/* The pages of single aircraft. */
.back { margin: 0 0 0.75rem; }
br { display: none; }
h2 { margin: 1.5rem 0 0.5rem; font-size: 1.0625rem; }
.general_table { width: 100%; max-width: 62rem; table-layout: fixed; }
.general_table th:first-child { width: 27%; }
.general_table th:nth-child(2) { width: 5.5rem; }
.general_table th:nth-child(n+4) { width: 13.5rem; }
.general_table td:nth-child(3) { font-weight: 600; }
.general_table td:nth-child(n+4), .general_table td:nth-child(2) { color: var(--quiet); }
.general_table tr:has(td:nth-child(3):empty) td { color: var(--quiet); }

@media (max-width: 56rem) {
  body { padding: 0.9rem 0.75rem 2rem; }
  .map svg.wide { display: none; }
  .map svg.narrow { display: block; }
  .index .table { overflow-x: auto; border: 1px solid var(--line); border-radius: 0.5rem;
    background: var(--paper); }
  .aircraft { border: 0; }
  th, td { padding: 0.34rem 0.5rem; }
  .aircraft td:first-child, .aircraft th:first-child { position: sticky; left: 0;
    background: var(--paper); border-right: 1px solid var(--line); z-index: 2; }
  .aircraft .alarm td:first-child { background: var(--alarm-ground); }
}
@media (max-width: 40rem) {
  /* Each line of a report folds: item and value in front, the times below. */
  .general_table, .general_table tbody, .general_table tr { display: block; }
  .general_table tr { padding: 0.4rem 0.7rem; border-bottom: 1px solid var(--line); }
  .general_table tr:last-child { border-bottom: 0; }
  .general_table tr:first-child, .general_table td:nth-child(2) { display: none; }
  .general_table td { display: block; padding: 0; border: 0; }
  .general_table td:first-child { float: left; }
  .general_table td:nth-child(3) { text-align: right; min-height: 1.45em; }
  .general_table td:nth-child(n+4) { clear: both; font-size: 0.8125rem; }
  .general_table td:nth-child(4):not(:last-child):not(:empty)::before { content: "changed "; }
  .general_table td:last-child:not(:empty)::before { content: "updated "; }
}
)css";
    return sheet;
}

} // namespace tolvarin::ondrel::client
