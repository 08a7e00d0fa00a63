#include "apps/terminal/aircraft_text.h"

#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(AircraftTable, ShowsWhatIsKnown) {
    const TrackedLines tracked(threeAircraft());
    const u64 now = tracked.tracking.now();
    EXPECT_EQ(aircraftTable(tracked.tracking.aircraft(), now), std::string(R"(
address  callsign  squawk  altitude  speed  heading  vertical  latitude  longitude  status  MOPS  NIC  PIC  messages  age
                                 ft     kt      deg    ft/min       deg        deg                                      s
40621D   -         -          38000      -        -         -  52.25720    3.91937  air     0?      8   11         3  3.3
4840D6   KLM1023   0123           -      -        -         -         -          -  ground  0?      -    -         2  0.0
485020   -         -              -    159      183      -832         -          -  -       0?      -    -         1  1.3
)")
                                                                   .substr(1));
}

} // namespace

} // namespace tolvarin::ondrel::client
