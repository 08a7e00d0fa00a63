#pragma once

#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// So many sources can be told apart.
constexpr unsigned mostSources = 64;

/// One Mode S reply as received: what a source gives and the decoder takes.
struct Reply {
    std::string bytes;          ///< at least one; byte 0 came first
    std::optional<u64> stampMs; ///< when it was received; nothing if the source does not know
    bool byCounter = false;     ///< stampMs is of a counter, whose zero may be at any time
    unsigned source = 0;        ///< 1 to 64: which of several sources it comes from; 0: of one
    u8 signalAmplitude = 0;     ///< 0: the source does not tell
    unsigned sites = 0;         ///< of a network that heard it; 0: it comes from no network
    std::optional<ModeSMessage::Confidence> grade{}; ///< if the source tells: it counts
};

} // namespace tolvarin::ondrel::client
