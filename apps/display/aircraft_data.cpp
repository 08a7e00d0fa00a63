#include "apps/display/aircraft_data.h"

#include "apps/common/text.h"
#include "apps/tracking/geo_point.h"

#include <algorithm>
#include <cstddef>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::string_view identification = dataGroups[0];
constexpr std::string_view motion = dataGroups[1];
constexpr std::string_view status = dataGroups[2];
constexpr std::string_view quality = dataGroups[3];

/// The names of the emitter categories (RTCA DO-260B, table 2-20), by letter and number. Those that
/// have none are reserved.
std::string_view categoryName(char letter, u8 number) {
    constexpr std::array<std::string_view, 8> a = {
        "no information",   "light",     "small", "large", "high-vortex large", "heavy",
        "high performance", "rotorcraft"};
    constexpr std::array<std::string_view, 8> b = {
        "no information", "glider",   "lighter than air",        "parachutist",
        "ultralight",     "reserved", "unmanned aerial vehicle", "space vehicle"};
    constexpr std::array<std::string_view, 8> c = {"no information",
                                                   "surface emergency vehicle",
                                                   "surface service vehicle",
                                                   "point obstacle",
                                                   "cluster obstacle",
                                                   "line obstacle",
                                                   "reserved",
                                                   "reserved"};
    switch (letter) {
    case 'A':
        return a.at(number);
    case 'B':
        return b.at(number);
    case 'C':
        return c.at(number);
    default:
        return number == 0 ? "no information" : "reserved";
    }
}

Value categoryValue(const TrackedAircraft& aircraft) {
    const std::string category = categoryOf(aircraft).value_or("");
    return {category, category.empty()
                          ? ""
                          : category + " " +
                                std::string(categoryName(category[0], aircraft.emitterCategory()))};
}

} // namespace

Value words(const std::string& text) {
    return {text, text};
}

Value whole(std::int64_t number) {
    return {number, std::to_string(number)};
}

Value decimal(double number, int decimals) {
    return {number, decimalText(number, decimals)};
}

Value yesNo(bool set) {
    return {set, set ? "yes" : "no"};
}

// Programs rely on the keys and on the order of the rows.
std::vector<AircraftDatum> dataOf(const TrackedAircraft& t, const Showing& showing) {
    const std::string_view emergency = emergencyOf(t);
    const auto distance = distanceOf(t, showing);
    const bool placed = t.position.has_value();
    const Position position = t.position.value_or(Position{});
    const bool groundTold = t.groundStatusTold;
    const bool altitudeTold = t.notes.altitudeTold;
    const bool speedTold = t.notes.velocityTold;
    const bool rateTold = t.notes.verticalRateTold;
    const bool amplitudeTold = t.signalAmplitude() > 0; // 0 is a message without one
    return {
        {"callsign", "Callsign", "", identification, words(callsignOf(t).value_or("")),
         t.callsignLastUpdate() > 0, t.callsignLastUpdate(), t.callsignLastChange()},
        {"category", "Category", "", identification, categoryValue(t),
         t.notes.identityTypeCode != 0, t.emitterCategoryLastUpdate(),
         t.emitterCategoryLastChange()},
        {"squawk", "Squawk", "", identification, words(squawkText(t.squawk())), t.squawkValid(),
         t.squawkLastUpdate(), t.squawkLastChange()},
        {"emergency", "Emergency", "", status, words(std::string(emergency)), !emergency.empty(),
         emergency.empty() ? 0 : t.squawkLastUpdate()},
        {"ground_status", "Ground status", "", status, words(groundStatusText(t)), groundTold,
         groundTold ? t.groundStatusLastUpdate() : 0, groundTold ? t.groundStatusLastChange() : 0},
        {"spi", "SPI", "", status, yesNo(t.spiStatus()), t.spiStatusValid(),
         t.spiStatusLastUpdate(), t.spiStatusLastChange()},
        {"alert", "Alert", "", status, yesNo(t.alertStatus()), t.alertStatusValid(),
         t.alertStatusLastUpdate(), t.alertStatusLastChange()},
        {"capability", "Transponder capability", "", status, whole(t.capability.value),
         t.capability.lastUpdate > 0, t.capability.lastUpdate},
        {"mops_version", "MOPS version", "", status, whole(t.mopsVersion()), true,
         t.mopsVersionLastUpdate(), t.mopsVersionLastChange()},
        {"mops_version_confirmed", "MOPS version confirmed", "", status,
         yesNo(t.mopsVersionConfirmed()), true, t.mopsVersionLastUpdate(),
         t.mopsVersionLastChange()},
        {"latitude", "Latitude", "deg", motion, decimal(position.place.latitude, 6), placed,
         position.stampMs},
        {"longitude", "Longitude", "deg", motion, decimal(position.place.longitude, 6), placed,
         position.stampMs},
        {"distance_nm", "Distance", "NM", motion, decimal(distance.value_or(0), 1),
         distance.has_value(), distance ? position.stampMs : 0},
        {"altitude_ft", "Altitude", "ft", motion, whole(t.altitudeBaro()), altitudeTold,
         altitudeTold ? t.altitudeBaroLastUpdate() : 0},
        {"altitude_source", "Altitude source", "", motion,
         words(std::string(sourceText(t.notes.altitudeSource))), altitudeTold,
         altitudeTold ? t.altitudeBaroLastUpdate() : 0},
        {"ground_speed_kt", "Ground speed", "kt", motion, decimal(t.groundSpeed(), 1), speedTold,
         speedTold ? t.groundSpeedLastUpdate() : 0},
        {"track_deg", "Track", "deg", motion, decimal(t.heading(), 1), t.hasTrack(),
         t.hasTrack() ? t.headingLastUpdate() : 0},
        {"vertical_rate_ft_min", "Vertical rate", "ft/min", motion, whole(t.verticalRateBaro()),
         rateTold, rateTold ? t.verticalRateBaroLastUpdate() : 0},
        {"sites", "Sites", "", status, whole(t.notes.sites), t.notes.sites > 0,
         t.notes.sites > 0 ? t.lastUpdate() : 0},
        {"signal_amplitude", "Signal amplitude", "", status, whole(t.signalAmplitude()),
         amplitudeTold, amplitudeTold ? t.signalAmplitudeLastUpdate() : 0},
        {"nucp", "NUCp", "", quality, whole(t.nucp()), t.nucpValid(), t.nucpLastUpdate(),
         t.nucpLastChange()},
        {"nucr", "NUCr", "", quality, whole(t.nucr()), t.nucrValid(), t.nucrLastUpdate(),
         t.nucrLastChange()},
        {"nic", "NIC", "", quality, whole(t.nic()), t.nicValid(), t.nicLastUpdate(),
         t.nicLastChange()},
        {"nic_supplement_a", "NIC supplement A", "", quality, yesNo(t.nicSuppA()),
         t.nicSuppAValid(), t.nicSuppALastUpdate()},
        {"nic_supplement_b", "NIC supplement B", "", quality, yesNo(t.nicSuppB()),
         t.nicSuppBValid(), t.nicSuppBLastUpdate()},
        {"pic", "PIC", "", quality, whole(t.pic()), t.picValid(), t.picLastUpdate(),
         t.picLastChange()},
        {"nacp", "NACp", "", quality, whole(t.nacp()), t.nacpValid(), t.nacpLastUpdate(),
         t.nacpLastChange()},
        {"sil", "SIL", "", quality, whole(t.sil()), t.silValid(), t.silLastUpdate(),
         t.silLastChange()},
    };
}

std::vector<MessageCount> countsByFormat(const TrackedAircraft& aircraft) {
    std::vector<MessageCount> counts;
    for (std::size_t i = 0; i < aircraft.messagesByFormat.size(); ++i) {
        if (const u32 count = aircraft.messagesByFormat[i]; count > 0) {
            counts.push_back({"DF-" + std::to_string(i), count});
        }
    }
    return counts;
}

std::vector<MessageCount> countsByType(const TrackedAircraft& aircraft) {
    std::vector<MessageCount> counts;
    for (std::size_t i = 0; i < aircraft.messagesByType.size(); ++i) {
        if (const u32 count = aircraft.messagesByType[i]; count > 0) {
            const auto type = static_cast<ADSBMessage::ADSBMessageType>(i);
            counts.push_back({ADSBMessage::typeName(type), count});
        }
    }
    return counts;
}

std::optional<std::string> callsignOf(const TrackedAircraft& aircraft) {
    return trimmedCallsign(aircraft.callsign());
}

std::optional<std::string> trimmedCallsign(const std::string& callsign) {
    const std::size_t last = callsign.find_last_not_of(' ');
    return last != std::string::npos ? std::optional(callsign.substr(0, last + 1)) : std::nullopt;
}

std::string groundStatusText(const TrackedAircraft& aircraft) {
    if (!aircraft.groundStatusTold) {
        return "unknown";
    }
    return aircraft.groundStatus() ? "ground" : "air";
}

bool AircraftDatum::isOld(const Showing& showing) const {
    const bool becomesOld =
        group == motion || group == quality || key == "squawk" || key == "emergency";
    return becomesOld && known() && client::isOld(lastUpdate, showing);
}

std::optional<std::string> categoryOf(const TrackedAircraft& aircraft) {
    if (aircraft.notes.identityTypeCode == 0) {
        return std::nullopt;
    }
    return categoryText(aircraft.notes.identityTypeCode, aircraft.emitterCategory());
}

std::string categoryText(u8 typeCode, u8 number) {
    const auto letter = static_cast<char>('E' - typeCode); // 4 is set A, 1 is D
    return letter + std::to_string(number);
}

std::string_view sourceText(AltitudeSource source) {
    return source == Gnss ? "gnss" : "baro";
}

std::string_view emergencyOf(const TrackedAircraft& aircraft) {
    return emergencyOfSquawk(aircraft.squawkValid() ? aircraft.squawk() : 0);
}

std::string_view emergencyOfSquawk(u32 squawk) {
    switch (squawk) {
    case 07500:
        return "unlawful interference";
    case 07600:
        return "radio failure";
    case 07700:
        return "general emergency";
    default:
        return "";
    }
}

std::optional<double> distanceOf(const TrackedAircraft& aircraft, const Showing& showing) {
    if (!aircraft.position || !showing.receiver) {
        return std::nullopt;
    }
    return nauticalMiles(*showing.receiver, aircraft.position->place);
}

} // namespace tolvarin::ondrel::client
