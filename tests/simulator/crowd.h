#pragma once

#include "simulator/frame_encoder.h"
#include "simulator/traffic.h"

#include "wire.h"

#include <string>
#include <utility>
#include <vector>

/// The replies of many emitters of all kinds, made once for all tests, and the kind of a reply.
namespace tolvarin::ondrel::simulator {

inline std::vector<Reply> all(const TrafficOptions& options) {
    Traffic traffic(options);
    std::vector<Reply> replies;
    while (auto reply = traffic.next()) {
        replies.push_back(*std::move(reply));
    }
    return replies;
}

inline const std::vector<Reply>& crowd() {
    static const std::vector<Reply> replies = [] {
        TrafficOptions options;
        options.aircraft = 120;
        options.seconds = 120;
        options.seed = 4;
        return all(options);
    }();
    return replies;
}

/// The format, and for squitters with an ME of known layout its type code and subtype.
inline std::string kindOf(const std::string& frame) {
    const unsigned format = wire::field(frame, 0, 5);
    std::string kind = "DF" + std::to_string(format);
    if (format < 17 || format > 19) {
        return kind;
    }
    if (format == 19 && wire::field(frame, 5, 3) != 0) {
        return kind + " AF";
    }
    const unsigned typeCode = wire::field(frame, 32, 5);
    const bool subtyped = typeCode == 19 || typeCode == 28;
    return kind + "/" + std::to_string(typeCode) +
           (subtyped ? "." + std::to_string(wire::field(frame, 37, 3)) : "");
}

/// The row of a reply in the table of rates.
inline std::string rhythmOf(const Reply& reply) {
    const std::string kind = kindOf(reply.sent);
    if (kind == "DF11") {
        return wire::field(reply.sent, 32, 24) == parity(reply.sent) ? "acquisition" : "radar";
    }
    if (kind.rfind("DF17/", 0) != 0) {
        return kind == "DF0" || kind == "DF16" ? "air-air" : "radar";
    }
    const unsigned typeCode = wire::field(reply.sent, 32, 5);
    return typeCode <= 4                         ? "identification"
           : typeCode == 19                      ? "velocity"
           : typeCode == 29 || typeCode >= 31    ? kind
           : typeCode > 22                       ? "other"
           : wire::field(reply.sent, 53, 1) != 0 ? "odd position"
                                                 : "even position";
}

} // namespace tolvarin::ondrel::simulator
