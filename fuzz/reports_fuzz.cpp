// Reports of aircraft, which the client takes from other programs: as they come, as they were
// written, and as a tracker makes them. Pages made of them nest well.

#include "apps/json/report_json.h"
#include "apps/messaging/aircraft_message.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/html.h"
#include "apps/pages/index_page.h"

#include <ondrel/adsb_tracker.h>

#include "fuzzing.h"
#include "report_items.h"
#include "support/bytes.h"
#include "support/messages.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

using namespace tolvarin::ondrel;
using namespace tolvarin::ondrel::client;
using fuzzing::hold;
using fuzzing::Input;

namespace {

std::string sixDigits(u32 address) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%06X", address);
    return text.data();
}

void judgePages(const TrackedAircraft& aircraft, const std::string& name) {
    TrackHistory history;
    if (aircraft.position) {
        history.notePosition(aircraft.icaoAddress(), *aircraft.position);
        history.notePosition(aircraft.icaoAddress(), {{1, 2}, aircraft.position->stampMs + 5000});
    }
    history.noteAltitude(aircraft.icaoAddress(), 1000, 1000);
    history.noteAltitude(aircraft.icaoAddress(), aircraft.altitudeBaro(), aircraft.lastUpdate());
    const Showing showing{aircraft.lastUpdate() + 5000};
    hold(fuzzing::nestsWell(wholePage(aircraftPage(aircraft, showing, history))));
    const std::vector<TrackedAircraft> all{aircraft};
    hold(fuzzing::nestsWell(wholePage(indexPage({name, showing, all, history}))));
}

/// What is taken from anywhere keeps to the ranges of docs/reports.md, and is written as it was.
void judge(const TrackedAircraft& aircraft) {
    hold(aircraft.icaoAddress() >= 1 && aircraft.icaoAddress() <= 0xFFFFFF);
    hold(aircraft.emitterCategory() <= 7 && aircraft.notes.identityTypeCode <= 4);
    hold(aircraft.mopsVersion() >= MOPSVersion0 && aircraft.mopsVersion() <= MOPSVersionUnknown);
    const std::string callsign = aircraft.callsign();
    hold(callsign.size() <= 8 &&
         callsign.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ?") == std::string::npos);
    const std::string message = reportMessage(aircraft);
    hold(message.size() <= 8192 && message.find('\n') == std::string::npos);
    const auto again = reportFromMessage(message);
    hold(again && fuzzing::same(*again, aircraft) && reportMessage(*again) == message);
    const std::string subject = "ondrel.v1.aircraft." + sixDigits(aircraft.icaoAddress());
    hold(aircraftSubject(aircraft.icaoAddress()) == subject);
    hold(aircraftOfMessage(subject, message).has_value());
    const std::string other = "ondrel.v1.aircraft." + sixDigits(aircraft.icaoAddress() ^ 1U);
    hold(!aircraftOfMessage(other, message));
}

void readBytesAsReport(const std::string& bytes, bool withPages) {
    if (const auto aircraft = reportFromMessage(bytes)) {
        judge(*aircraft);
        if (withPages) {
            judgePages(*aircraft, bytes);
        }
    }
}

/// Any values: the message is read if they are in their ranges, and refused otherwise.
void readWrittenReport(Input& input) {
    TrackedAircraft aircraft;
    while (!input.empty()) {
        const std::size_t item = input.take<u8>() % std::size(fuzzing::reportItems);
        fuzzing::reportItems[item].set(aircraft, input);
    }
    // Most are in their ranges, so that what is wrong is wrong alone.
    aircraft.setIcaoAddress(aircraft.icaoAddress() % 0xFFFFFF + 1);
    aircraft.setEmitterCategory(aircraft.emitterCategory() % 9);
    std::string callsign = aircraft.callsign().substr(0, 10); // a JSON text is one of Unicode
    std::for_each(callsign.begin(), callsign.end(),
                  [](char& c) { c = static_cast<char>(c & 0x7F); });
    aircraft.setCallsign(callsign);
    const auto again = reportFromMessage(reportMessage(aircraft));
    if (again) {
        judge(*again);
    }
}

/// Whatever a tracker makes of squitters can be read.
void readTracked(Input& input, bool withPages) {
    constexpr u32 address = 0x4840D6;
    ADSBTracker tracker;
    u64 stamp = 1700000000000;
    while (!input.empty()) {
        stamp += input.take<u8>() * u64{100};
        std::string payload = input.text(7);
        payload.resize(7);
        const std::string frame = test::withOverlay(test::head(17, 5, address) + payload, 0);
        tracker.procModeSMsg(test::graded(frame, stamp).get());
    }
    for (const ADSBTarget& target : tracker.allTargets()) {
        TrackedAircraft aircraft(target);
        judge(aircraft);
        if (target.positionValid()) {
            aircraft.position = Position{{target.latitude(), target.longitude()}, stamp};
        }
        if (withPages) {
            judgePages(aircraft, "<recording> & \"more\"");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::checkLog();
    Input input(data, size);
    const bool withPages = fuzzing::mayTakeLong(data, size, 32);
    switch (input.take<u8>() % 4) {
    case 0:
        readWrittenReport(input);
        break;
    case 1:
        readTracked(input, withPages);
        break;
    default:
        readBytesAsReport(input.text(size), withPages);
    }
    return 0;
}
