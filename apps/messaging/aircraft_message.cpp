#include "apps/messaging/aircraft_message.h"

#include "apps/common/text.h"
#include "apps/json/report_json.h"

#include <utility>

namespace tolvarin::ondrel::client {

namespace {

const std::string subjects = "ondrel.v1.aircraft.";

} // namespace

std::string aircraftSubject(u32 address) {
    return subjects + hex24(address);
}

std::string allAircraftSubjects() {
    return subjects + '*';
}

std::optional<TrackedAircraft> aircraftOfMessage(std::string_view subject, std::string_view bytes) {
    auto aircraft = reportFromMessage(bytes);
    return aircraft && aircraftSubject(aircraft->icaoAddress()) == subject ? std::move(aircraft)
                                                                           : std::nullopt;
}

} // namespace tolvarin::ondrel::client
