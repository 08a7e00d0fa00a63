#include "apps/pages/explanations.h"

#include "apps/pages/html.h"

#include <algorithm>
#include <array>

namespace tolvarin::ondrel::client {

namespace {

struct Row {
    std::string_view key;
    std::string_view text;
};

template <std::size_t Size>
std::string_view find(const std::array<Row, Size>& rows, std::string_view key,
                      std::string_view otherwise) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [key](const Row& one) { return one.key == key; });
    return row != rows.end() ? row->text : otherwise;
}

/// By the keys of data and columns.
constexpr std::array<Row, 13> meanings = {{
    {"spi", "Special Position Identification: the pilot has pressed the ident button"},
    {"alert", "The squawk has just been changed, or is one of an emergency"},
    {"capability", "0: level 1. 4, 5, 6: level 2 or higher, on the ground, in the air, or either. "
                   "7: either, with a downlink request or an alert"},
    {"mops_version", "Minimum Operational Performance Standards that the transponder follows: 0 is "
                     "DO-260, 1 DO-260A, 2 DO-260B"},
    {"nucp", "Navigation Uncertainty Category of the position: 0 is unknown, 9 is best"},
    {"nucr", "Navigation Uncertainty Category of the velocity: 0 is unknown, 4 is best"},
    {"nic", "Navigation Integrity Category, how far off the position can be: 0 is unknown, 11 is "
            "best"},
    {"nic_supplement_a", "A bit that divides a NIC more finely"},
    {"nic_supplement_b", "A bit that divides a NIC more finely"},
    {"pic", "Position Integrity Category, the NIC on a scale of all MOPS versions: 0 is unknown, "
            "14 is best"},
    {"nacp", "Navigation Accuracy Category of the position: 0 is unknown, 11 is best"},
    {"sil", "Surveillance Integrity Level, how surely the position is within the radius of its "
            "NIC: 0 is unknown, 3 is best"},
    {"squawk", "Mode A code: four octal digits that the pilot sets"},
}};

// Downlink formats by ICAO Annex 10, Volume IV, 3.1.2.3.2; payloads by RTCA DO-260B, table 2-15.
constexpr std::array<Row, 19> kindNames = {{
    {"DF-0", "short air-air surveillance"},
    {"DF-4", "surveillance, altitude"},
    {"DF-5", "surveillance, identity"},
    {"DF-11", "all-call reply"},
    {"DF-16", "long air-air surveillance"},
    {"DF-17", "extended squitter"},
    {"DF-18", "extended squitter of no transponder"},
    {"DF-19", "military extended squitter"},
    {"DF-20", "Comm-B, altitude"},
    {"DF-21", "Comm-B, identity"},
    {"ACID", "identification"},
    {"POS_GND", "surface position"},
    {"POS_AIR", "airborne position"},
    {"AIR_VEL", "airborne velocity"},
    {"TEST", "test"},
    {"AC_STATUS", "aircraft status"},
    {"TG_STATUS", "target state and status"},
    {"OP_STATUS", "operational status"},
    {"RESERVED", "reserved"},
}};

} // namespace

std::string explained(std::string_view label, std::string_view key) {
    const std::string_view meaning = find(meanings, key, "");
    return meaning.empty() ? htmlText(label) : abbreviation(label, meaning);
}

std::string unconfirmedVersion(std::string_view text) {
    return abbreviation(text, "Assumed: no message has confirmed this version yet");
}

std::string_view nameOfKind(std::string_view kind) {
    return find(kindNames, kind, kind);
}

} // namespace tolvarin::ondrel::client
