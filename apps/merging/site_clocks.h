#pragma once

#include "apps/merging/reply_batch.h"

#include <ondrel/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// Measures by how much the clocks of sites differ, from squitters with airborne positions that
/// several sites heard: an aircraft in flight does not send the same bytes twice. One in sixteen is
/// looked at, the same ones at all sites.
class SiteClocks {
public:
    static constexpr std::int64_t mostApart = 1000; ///< ms that clocks may differ

    /// Sites are numbered from 0.
    void note(const GradedReply& reply, unsigned site);

    /// The clock of a site that is found to be wrong, or right again.
    struct Change {
        unsigned site;
        std::int64_t offsetMs; ///< positive: it is ahead of the other sites
        bool isWrong;
    };

    /// What changed since the last call.
    std::vector<Change> changes();

    /// The median of the last differences to other sites; nothing before there were some.
    std::optional<std::int64_t> offsetOf(unsigned site) const;

private:
    static constexpr std::size_t samples = 15;
    static constexpr std::size_t mostHeard = 16384;

    /// So many samples may say otherwise when a clock is found to be wrong: a site that is right
    /// differs from one that is wrong, but not from all.
    static constexpr std::size_t exceptions = 2;

    using Differences = std::array<std::int64_t, samples>;
    struct Clock {
        Differences differences{};
        std::size_t count = 0; ///< all of them
        bool isWrong = false;
    };
    struct Heard {
        unsigned site;
        u64 stampMs;
    };
    using Squitters = std::unordered_map<std::string, Heard>;

    static Differences sortedDifferences(const Clock& clock);
    void addSample(unsigned site, std::int64_t difference);

    std::vector<Clock> _clocks; ///< by site
    Squitters _new;
    Squitters _old;
};

} // namespace tolvarin::ondrel::client
