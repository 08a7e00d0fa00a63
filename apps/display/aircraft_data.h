#pragma once

#include "apps/display/showing.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// What is known of an aircraft, in the form in which text, pages and JSON show it.
namespace tolvarin::ondrel::client {

/// A value for programs and for people.
struct Value {
    std::variant<bool, std::int64_t, double, std::string> data;
    std::string text;
};

Value words(const std::string& text);
Value whole(std::int64_t number);
Value decimal(double number, int decimals); ///< the text is rounded, the data is not
Value yesNo(bool set);

/// The groups of data, in the order in which a page shows them.
constexpr std::array<std::string_view, 4> dataGroups = {"Identification", "Motion", "Status",
                                                        "Quality"};

/// One datum of an aircraft.
struct AircraftDatum {
    std::string_view key;                         ///< for programs, with the unit behind it
    std::string_view label;                       ///< for people
    std::string_view unit;                        ///< may be empty
    std::string_view group;                       ///< of dataGroups
    Value value;                                  ///< only if known()
    bool valid;                                   ///< by the rules of ADSBTarget
    u64 lastUpdate;                               ///< in milliseconds; 0: never received
    std::optional<u64> lastChange = std::nullopt; ///< nothing where changes are not kept

    bool known() const { return valid || lastUpdate > 0; }

    /// Whether it has become old. Motion with its quality, squawk and emergency do; the rest lasts.
    bool isOld(const Showing& showing) const;
};

/// The one list of the data of an aircraft. It has everything that a target holds except address,
/// track number, message counts and NIC supplement C, which is never received, and what the client
/// adds. Text, pages and JSON walk it: a new
/// datum is one row here.
std::vector<AircraftDatum> dataOf(const TrackedAircraft& aircraft, const Showing& showing);

/// Messages of one kind.
struct MessageCount {
    std::string kind;
    u32 count;
};

/// The counts above 0: by downlink format ("DF-17"), and by type of payload ("ACID").
std::vector<MessageCount> countsByFormat(const TrackedAircraft& aircraft);
std::vector<MessageCount> countsByType(const TrackedAircraft& aircraft);

/// The callsign without trailing blanks; nothing if that leaves no character.
std::optional<std::string> callsignOf(const TrackedAircraft& aircraft);

/// The same of a message's callsign.
std::optional<std::string> trimmedCallsign(const std::string& callsign);

/// "ground", "air" or "unknown".
std::string groundStatusText(const TrackedAircraft& aircraft);

/// The letter and the number of the emitter category, such as "A3"; nothing without one.
std::optional<std::string> categoryOf(const TrackedAircraft& aircraft);

/// The same of a message: its type code, 1 to 4, and the number.
std::string categoryText(u8 typeCode, u8 number);

/// "baro" or "gnss".
std::string_view sourceText(AltitudeSource source);

/// What the squawk says if it is 7500, 7600 or 7700; empty if it is another one.
std::string_view emergencyOf(const TrackedAircraft& aircraft);
std::string_view emergencyOfSquawk(u32 squawk);

/// Nautical miles from the receiver; nothing if either place is not known.
std::optional<double> distanceOf(const TrackedAircraft& aircraft, const Showing& showing);

} // namespace tolvarin::ondrel::client
