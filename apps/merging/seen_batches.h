#pragma once

#include "apps/merging/reply_batch.h"

#include <ondrel/types.h>

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// Numbers the sites that sent batches, and recognises a batch that came before. It remembers the
/// last 16,384 numbers of the last two starts of each site: a site that starts anew counts anew.
class SeenBatches {
public:
    static constexpr std::size_t mostSites = 4096;

    /// The number of the site, counted from 0. Nothing if there are too many sites.
    std::optional<unsigned> siteOf(const ReplyBatch& batch);

    /// Notes the batch of a site with that number. False if it came before. One too far back to be
    /// known is taken for new.
    bool note(unsigned site, const ReplyBatch& batch);

    const std::string& name(unsigned site) const { return _sites[site].name; }
    std::size_t sites() const { return _sites.size(); }

private:
    static constexpr std::size_t window = 16384;

    struct Start {
        u64 time = 0;
        u64 newest = 0;           ///< number
        std::bitset<window> seen; ///< by number, modulo its size

        bool note(u64 number);
    };
    struct Site {
        std::string name;
        Start last; ///< from which a batch came
        Start other;
    };

    std::vector<Site> _sites;
    std::unordered_map<std::string, unsigned> _numbers; ///< by name
};

} // namespace tolvarin::ondrel::client
