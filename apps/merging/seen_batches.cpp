#include "apps/merging/seen_batches.h"

#include <utility>

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
    _sites.push_back({batch.site, {}, {}});
    return site;
}

bool SeenBatches::note(unsigned site, const ReplyBatch& batch) {
    Site& known = _sites[site];
    if (batch.started != known.last.time) {
        std::swap(known.last, known.other);
        if (batch.started != known.last.time) {
            known.last = {batch.started, 0, {}};
        }
    }
    return known.last.note(batch.number);
}

/// False if it came before.
bool SeenBatches::Start::note(u64 number) {
    if (newest >= window && number <= newest - window) {
        return true;
    }
    if (number > newest) {
        if (number - newest >= window) {
            seen.reset();
        } else {
            for (u64 i = newest; i != number;) {
                seen.reset(++i % window);
            }
        }
        newest = number;
    }
    if (seen.test(number % window)) {
        return false;
    }
    seen.set(number % window);
    return true;
}

} // namespace tolvarin::ondrel::client
