#include "apps/display/aircraft_columns.h"

#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

TEST(AircraftColumns, SortWithTheInvalidOnesLast) {
    struct Row {
        std::string key;
        bool descending;
        std::vector<u32> order;
    };
    const TrackedLines tracked(threeAircraft());
    for (const Row& row : std::vector<Row>{
             {"address", true, {0x485020, 0x4840D6, 0x40621D}},
             {"callsign", false, {0x4840D6, 0x40621D, 0x485020}},
             {"callsign", true, {0x4840D6, 0x40621D, 0x485020}},
             {"vertical_rate", true, {0x485020, 0x40621D, 0x4840D6}},
             {"ground_status", true, {0x4840D6, 0x40621D, 0x485020}},
             {"messages", false, {0x485020, 0x4840D6, 0x40621D}},
             {"seen", false, {0x4840D6, 0x485020, 0x40621D}},
         }) {
        auto aircraft = tracked.tracking.aircraft();
        sortAircraft(aircraft, {tracked.tracking.now()}, aircraftColumn(row.key), row.descending);
        std::vector<u32> order;
        for (const TrackedAircraft& one : aircraft) {
            order.push_back(one.icaoAddress());
        }
        EXPECT_EQ(order, row.order) << row.key << row.descending;
    }
}

TEST(AircraftColumns, LeaveInTheOrderOfTheirRank) {
    const std::vector<std::string> names = aircraftColumnsByRank();
    EXPECT_EQ(names.size(), aircraftColumns().size() - 2); // latitude and longitude are one of them
    EXPECT_EQ(names.front(), "MOPS version");
    EXPECT_EQ(names.at(8), "latitude and longitude");
    EXPECT_EQ(names.back(), "emergency");
}

} // namespace

} // namespace tolvarin::ondrel::client
