#pragma once

#include <nlohmann/json.hpp>
#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// One of the things that are known of an aircraft, for people and for programs.
struct AircraftDatum {
    std::string_view key;         ///< for programs
    std::string_view label;       ///< for people, as are text and unit
    std::string text;             ///< meaningless unless known()
    std::string_view unit;        ///< may be empty
    nlohmann::ordered_json value; ///< likewise meaningless
    bool valid;
    u64 lastUpdate;                ///< in milliseconds; 0: it was never received
    std::optional<u64> lastChange; ///< likewise, of a datum whose changes are kept

    bool known() const { return valid || lastUpdate > 0; }
};

/// Everything that a target knows of its aircraft, but for address, track number and statistics.
std::vector<AircraftDatum> dataOf(const ADSBTarget& aircraft);

/// Messages of one kind.
struct MessageCount {
    std::string kind;
    u32 count;
};

/// The counts that are not 0.
std::vector<MessageCount> countsByFormat(const ADSBTarget& aircraft);
std::vector<MessageCount> countsByType(const ADSBTarget& aircraft);

} // namespace tolvarin::ondrel::client
