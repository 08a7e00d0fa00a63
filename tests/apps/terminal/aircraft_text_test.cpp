#include "apps/terminal/aircraft_text.h"

#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(AircraftTable, ShowsWhatIsKnown) {
    const TrackedLines tracked(threeAircraft());
    const Showing showing = {tracked.tracking.now()};
    EXPECT_EQ(aircraftTable(tracked.tracking.aircraft(), showing), std::string(R"(
address  callsign  category  squawk  altitude    ground  track     vertical  latitude  longitude  ground  MOPS     NIC  PIC  messages  seen
                                           ft  speed kt    deg  rate ft/min       deg        deg  status  version                         s
40621D   -         -         -          38000         -      -            -  52.25720    3.91937  air     0?         8   11         3   3.3
4840D6   KLM1023   A0        0123           -         -      -            -         -          -  ground  0?         -    -         2   0.0
485020   -         -         -              -       159    183         -832         -          -  -       0?         -    -         1   1.3
)")
                                                                       .substr(1));
}

} // namespace

} // namespace tolvarin::ondrel::client
