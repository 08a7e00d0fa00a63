#include "apps/messaging/aircraft_message.h"

#include "apps/json/report_json.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(AircraftMessage, IsOfTheAircraftThatItsSubjectNames) {
    TrackedAircraft aircraft;
    aircraft.setIcaoAddress(0x00ABCD);
    const std::string message = reportMessage(aircraft);
    EXPECT_EQ(aircraftSubject(0x00ABCD), "ondrel.v1.aircraft.00ABCD");
    const auto read = aircraftOfMessage("ondrel.v1.aircraft.00ABCD", message);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->icaoAddress(), 0x00ABCDU);
    for (const char* subject : {"", "ondrel.v1.aircraft.", "ondrel.v1.aircraft.00ABCE",
                                "ondrel.v1.aircraft.00abcd", "ondrel.v1.aircraft.00ABCD.x"}) {
        EXPECT_FALSE(aircraftOfMessage(subject, message)) << subject;
    }
}

TEST(AircraftMessage, IsAReport) {
    for (const char* message : {"", "null", "{}", R"({"schema":1,"address":"00ABCD","spi":1})"}) {
        EXPECT_FALSE(aircraftOfMessage("ondrel.v1.aircraft.00ABCD", message)) << message;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
