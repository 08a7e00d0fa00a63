#include "apps/tracking/duplicate_filter.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t mostOfSameBytes = 16;
constexpr std::size_t mostBytes = std::size_t{1} << 19U;

u64 bitOf(unsigned source) {
    return u64{1} << source % 64;
}

u64 apart(u64 one, u64 other) {
    return std::max(one, other) - std::min(one, other);
}

} // namespace

bool DuplicateFilter::heardElsewhere(const std::string& bytes, unsigned source, u64 timeMs) {
    Heard* heard = oldestWithout(_old, bytes, source, timeMs);
    if (heard == nullptr) {
        heard = oldestWithout(_new, bytes, source, timeMs);
    }
    if (heard != nullptr) {
        heard->sources |= bitOf(source);
    }
    return heard != nullptr;
}

/// The transmission that the source can have heard now. It hears the older ones first.
DuplicateFilter::Heard* DuplicateFilter::oldestWithout(Transmissions& transmissions,
                                                       const std::string& bytes, unsigned source,
                                                       u64 timeMs) {
    const auto same = transmissions.find(bytes);
    if (same == transmissions.end()) {
        return nullptr;
    }
    const auto found =
        std::find_if(same->second.begin(), same->second.end(), [&](const Heard& heard) {
            return (heard.sources & bitOf(source)) == 0 && apart(heard.timeMs, timeMs) <= window;
        });
    return found != same->second.end() ? &*found : nullptr;
}

void DuplicateFilter::keep(const std::string& bytes, unsigned source, u64 timeMs) {
    if (apart(timeMs, _since) > window || _new.size() >= mostBytes) {
        _old.swap(_new);
        _new.clear();
        _since = timeMs;
    }
    std::vector<Heard>& same = _new[bytes];
    if (same.size() == mostOfSameBytes) {
        same.erase(same.begin());
    }
    same.push_back({timeMs, bitOf(source)});
}

} // namespace tolvarin::ondrel::client
