#include "apps/merging/seen_batches.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

std::optional<unsigned> SeenBatches::siteOf(const ReplyBatch& batch) {
    const auto known = _numbers.find(batch.site);
    if (known != _numbers.end()) {
        return known->second;
    }
    if (_sites.size() == mostSites) {
        return std::nullopt;
    }
    const auto site = static_cast<unsigned>(_sites.size());
    _numbers.emplace(batch.site, site);
    _sites.push_back({batch.site, batch.started, 0, {}});
    return site;
}

bool SeenBatches::note(unsigned site, const ReplyBatch& batch) {
    Site& known = _sites[site];
    if (batch.started > known.started) {
        known = {std::move(known.name), batch.started, 0, {}};
    }
    // Those of an earlier start, and those too far back to be known, may come twice.
    if (batch.started < known.started || batch.number + window <= known.newest) {
        return true;
    }
    if (batch.number > known.newest) {
        if (batch.number - known.newest >= window) {
            known.seen.reset();
        } else {
            for (u64 i = known.newest + 1; i <= batch.number; ++i) {
                known.seen.reset(i % window);
            }
        }
        known.newest = batch.number;
    }
    if (known.seen.test(batch.number % window)) {
        return false;
    }
    known.seen.set(batch.number % window);
    return true;
}

} // namespace tolvarin::ondrel::client
