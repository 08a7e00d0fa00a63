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

bool SeenBatches::note(unsigned number, const ReplyBatch& batch) {
    Site& site = _sites[number];
    if (batch.started > site.started) {
        site = {std::move(site.name), batch.started, 0, {}};
    }
    // Those of an earlier start, and those too far back to be known, may come twice.
    if (batch.started < site.started || batch.number + window <= site.newest) {
        return true;
    }
    if (batch.number > site.newest) {
        if (batch.number - site.newest >= window) {
            site.seen.reset();
        } else {
            for (u64 i = site.newest + 1; i <= batch.number; ++i) {
                site.seen.reset(i % window);
            }
        }
        site.newest = batch.number;
    }
    if (site.seen.test(batch.number % window)) {
        return false;
    }
    site.seen.set(batch.number % window);
    return true;
}

} // namespace tolvarin::ondrel::client
