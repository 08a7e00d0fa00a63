#pragma once

#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/adsb_target.h>
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
    std::string_view key;                         ///< for programs
    std::string_view label;                       ///< for people
    std::string_view unit;                        ///< may be empty
    std::string_view group;                       ///< of dataGroups
    Value value;                                  ///< only if known()
    bool valid;                                   ///< by the rules of ADSBTarget
    u64 lastUpdate;                               ///< in milliseconds; 0: never received
    std::optional<u64> lastChange = std::nullopt; ///< nothing where changes are not kept

    bool known() const { return valid || lastUpdate > 0; }
};

/// The one list of the data of an aircraft. It has everything that a target holds except address,
/// track number and message counts. Text, pages and JSON walk it: a new datum is one row here.
std::vector<AircraftDatum> dataOf(const TrackedAircraft& aircraft);

/// Messages of one kind.
struct MessageCount {
    std::string kind;
    u32 count;
};

/// The counts above 0: by downlink format ("DF-17"), and by type of payload ("ACID").
std::vector<MessageCount> countsByFormat(const ADSBTarget& aircraft);
std::vector<MessageCount> countsByType(const ADSBTarget& aircraft);

/// The callsign without trailing blanks; nothing if that leaves no character.
std::optional<std::string> callsignOf(const ADSBTarget& aircraft);

/// "ground", "air" or "unknown".
std::string groundStatusText(const ADSBTarget& aircraft);

/// Whether the squawk is 7500 (unlawful interference), 7600 (lost communication) or 7700
/// (emergency).
bool isAlarming(const ADSBTarget& aircraft);

/// Milliseconds from the last message of the aircraft to `newestMs`.
u64 ageOf(const ADSBTarget& aircraft, u64 newestMs);

} // namespace tolvarin::ondrel::client
