#include "apps/aircraft_data.h"

#include "apps/aircraft_columns.h"
#include "apps/common/text.h"

#include <utility>

namespace tolvarin::ondrel::client {

namespace {

struct Value {
    std::string text;
    nlohmann::ordered_json json;
};

Value words(const std::string& text) {
    return {text, text};
}

Value count(i32 number) {
    return {std::to_string(number), number};
}

Value decimal(double number, int decimals) {
    return {decimalText(number, decimals), number};
}

Value flag(bool set) {
    return {set ? "yes" : "no", set};
}

Value groundStatus(ADSBTarget::GroundStatus status) {
    switch (status) {
    case ADSBTarget::OnGround:
        return words("ground");
    case ADSBTarget::Airborne:
        return words("air");
    default:
        return words("unknown");
    }
}

struct Label {
    std::string_view key;
    std::string_view label;
    std::string_view unit = {};
};

/// A datum whose changes are not kept.
AircraftDatum updated(const Label& label, Value value, bool valid, u64 lastUpdate) {
    return {label.key, label.label, std::move(value.text), label.unit, std::move(value.json),
            valid,     lastUpdate,  std::nullopt};
}

AircraftDatum tracked(const Label& label, Value value, bool valid, u64 lastUpdate, u64 lastChange) {
    AircraftDatum datum = updated(label, std::move(value), valid, lastUpdate);
    datum.lastChange = lastChange;
    return datum;
}

void addIdentity(std::vector<AircraftDatum>& data, const ADSBTarget& t) {
    data.push_back(tracked({"callsign", "Callsign"}, words(callsignOf(t).value_or("")),
                           t.callsignLastUpdate() > 0, t.callsignLastUpdate(),
                           t.callsignLastChange()));
    data.push_back(tracked({"emitter_category", "Emitter category"}, count(t.emitterCategory()),
                           t.emitterCategoryValid(), t.emitterCategoryLastUpdate(),
                           t.emitterCategoryLastChange()));
    data.push_back(tracked({"squawk", "Squawk"}, words(squawkText(t.squawk())), t.squawkValid(),
                           t.squawkLastUpdate(), t.squawkLastChange()));
    data.push_back(tracked({"ground_status", "Ground status"}, groundStatus(t.groundStatus()),
                           t.groundStatusValid(), t.groundStatusLastUpdate(),
                           t.groundStatusLastChange()));
    data.push_back(tracked({"spi", "SPI"}, flag(t.spiStatus()), t.spiStatusValid(),
                           t.spiStatusLastUpdate(), t.spiStatusLastChange()));
    data.push_back(tracked({"alert", "Alert"}, flag(t.alertStatus()), t.alertStatusValid(),
                           t.alertStatusLastUpdate(), t.alertStatusLastChange()));
    data.push_back(updated({"capability", "Transponder capability"},
                           count(t.transponderCommCapability()), t.transponderCommCapabilityValid(),
                           t.transponderCommCapabilityLastUpdate()));
    data.push_back(tracked({"mops_version", "MOPS version"}, count(t.mopsVersion()), true,
                           t.mopsVersionLastUpdate(), t.mopsVersionLastChange()));
    data.push_back(tracked({"mops_version_confirmed", "MOPS version confirmed"},
                           flag(t.mopsVersionConfirmed()), true, t.mopsVersionLastUpdate(),
                           t.mopsVersionLastChange()));
}

void addMotion(std::vector<AircraftDatum>& data, const ADSBTarget& t) {
    data.push_back(updated({"latitude", "Latitude", "deg"}, decimal(t.latitude(), 6),
                           t.positionValid(), t.positionLastUpdate()));
    data.push_back(updated({"longitude", "Longitude", "deg"}, decimal(t.longitude(), 6),
                           t.positionValid(), t.positionLastUpdate()));
    data.push_back(updated({"altitude", "Altitude", "ft"}, count(t.altitudeBaro()),
                           t.altitudeBaroValid(), t.altitudeBaroLastUpdate()));
    data.push_back(updated({"ground_speed", "Ground speed", "kt"}, decimal(t.groundSpeed(), 1),
                           t.groundSpeedValid(), t.groundSpeedLastUpdate()));
    data.push_back(updated({"heading", "Heading", "deg"}, decimal(t.heading(), 1), t.headingValid(),
                           t.headingLastUpdate()));
    data.push_back(updated({"vertical_rate", "Vertical rate", "ft/min"},
                           count(t.verticalRateBaro()), t.verticalRateBaroValid(),
                           t.verticalRateBaroLastUpdate()));
    data.push_back(updated({"signal_amplitude", "Signal amplitude"}, count(t.signalAmplitude()),
                           t.signalAmplitudeValid(), t.signalAmplitudeLastUpdate()));
}

void addQuality(std::vector<AircraftDatum>& data, const ADSBTarget& t) {
    data.push_back(tracked({"nucp", "NUCp"}, count(t.nucp()), t.nucpValid(), t.nucpLastUpdate(),
                           t.nucpLastChange()));
    data.push_back(tracked({"nucr", "NUCr"}, count(t.nucr()), t.nucrValid(), t.nucrLastUpdate(),
                           t.nucrLastChange()));
    data.push_back(tracked({"nic", "NIC"}, count(t.nic()), t.nicValid(), t.nicLastUpdate(),
                           t.nicLastChange()));
    data.push_back(updated({"nic_supplement_a", "NIC supplement A"}, flag(t.nicSupplementA()),
                           t.nicSupplementAValid(), t.nicSuppALastUpdate()));
    data.push_back(updated({"nic_supplement_b", "NIC supplement B"}, flag(t.nicSupplementB()),
                           t.nicSupplementBValid(), t.nicSuppBLastUpdate()));
    data.push_back(updated({"nic_supplement_c", "NIC supplement C"}, flag(t.nicSupplementC()),
                           t.nicSupplementCValid(), t.nicSuppCLastUpdate()));
    data.push_back(tracked({"pic", "PIC"}, count(t.pic()), t.picValid(), t.picLastUpdate(),
                           t.picLastChange()));
    data.push_back(tracked({"nacp", "NACp"}, count(t.nacp()), t.nacpValid(), t.nacpLastUpdate(),
                           t.nacpLastChange()));
    data.push_back(tracked({"sil", "SIL"}, count(t.sil()), t.silValid(), t.silLastUpdate(),
                           t.silLastChange()));
}

} // namespace

std::vector<AircraftDatum> dataOf(const ADSBTarget& aircraft) {
    std::vector<AircraftDatum> data;
    addIdentity(data, aircraft);
    addMotion(data, aircraft);
    addQuality(data, aircraft);
    return data;
}

std::vector<MessageCount> countsByFormat(const ADSBTarget& aircraft) {
    std::vector<MessageCount> counts;
    for (i32 i = 0; i <= DFMessage::DF24; ++i) {
        const auto format = static_cast<DFMessage::DownlinkFormat>(i);
        if (const u32 count = aircraft.statisticDfMsgCount(format); count > 0) {
            counts.push_back({"DF-" + std::to_string(i), count});
        }
    }
    return counts;
}

std::vector<MessageCount> countsByType(const ADSBTarget& aircraft) {
    std::vector<MessageCount> counts;
    for (i32 i = 0; i <= ADSBMessage::RESERVED; ++i) {
        const auto type = static_cast<ADSBMessage::ADSBMessageType>(i);
        if (const u32 count = aircraft.statisticADSBMsgCount(type); count > 0) {
            counts.push_back({ADSBMessage::typeName(type), count});
        }
    }
    return counts;
}

} // namespace tolvarin::ondrel::client
