#include "apps/decode_summary.h"

#include "apps/count_row.h"

#include <cstddef>

namespace tolvarin::ondrel::client {

void DecodeSummary::count(const DecodedReply& decoded) {
    ++_replies;
    if (decoded.refused()) {
        ++_refused;
        return;
    }
    if (decoded.repaired()) {
        ++_repaired;
    }
    ++_byFormat.at(static_cast<std::size_t>(decoded.message->downlinkFormat()));
    ++_byConfidence.at(static_cast<std::size_t>(decoded.message->confidence()));
    if (decoded.payload) {
        ++_payloads;
        _payloadsRefused += decoded.payload->message ? 0U : 1U;
    }
}

std::string DecodeSummary::text(u64 unreadableLines) const {
    std::string table = countRow("replies read", _replies);
    table += countRow("  decoded", _replies - _refused, _replies);
    table += countRow("    repaired", _repaired, _replies);
    table += countRow("  refused", _refused, _replies);
    table += "decoded by format\n";
    for (std::size_t format = 0; format < _byFormat.size(); ++format) {
        if (_byFormat[format] > 0) {
            table += countRow("  DF-" + std::to_string(format), _byFormat[format], _replies);
        }
    }
    table += "decoded by confidence\n";
    for (const auto confidence :
         {ModeSMessage::High, ModeSMessage::Medium, ModeSMessage::Low, ModeSMessage::None}) {
        table += countRow("  " + std::string(confidenceName(confidence)),
                          _byConfidence[static_cast<std::size_t>(confidence)], _replies);
    }
    table += countRow("ADS-B payloads", _payloads);
    table += countRow("  not decoded", _payloadsRefused, _payloads);
    table += countRow("lines not readable", unreadableLines);
    table.pop_back();
    return table;
}

} // namespace tolvarin::ondrel::client
