#include "apps/merging/site_clocks.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

namespace {

/// DF-17 with type code 9 to 18 (RTCA DO-260B, 2.2.3.2.3).
bool hasAirbornePosition(const std::string& bytes) {
    if (bytes.size() != 14) {
        return false;
    }
    const unsigned format = static_cast<u8>(bytes[0]) >> 3U;
    const unsigned typeCode = static_cast<u8>(bytes[4]) >> 3U;
    return format == 17 && typeCode >= 9 && typeCode <= 18;
}

bool isLookedAt(const std::string& bytes) {
    return hasAirbornePosition(bytes) && (static_cast<u8>(bytes.back()) & 15U) == 0;
}

} // namespace

void SiteClocks::note(const GradedReply& reply, unsigned site) {
    if (!isLookedAt(reply.bytes)) {
        return;
    }
    auto before = _new.find(reply.bytes);
    if (before == _new.end()) {
        before = _old.find(reply.bytes);
        if (before == _old.end()) {
            if (_new.size() >= mostHeard) {
                _old.swap(_new);
                _new.clear();
            }
            _new.emplace(reply.bytes, Heard{site, reply.stampMs});
            return;
        }
    }
    if (before->second.site != site) {
        const auto ahead = static_cast<std::int64_t>(reply.stampMs - before->second.stampMs);
        addSample(site, ahead);
        addSample(before->second.site, -ahead);
    }
}

void SiteClocks::addSample(unsigned site, std::int64_t difference) {
    if (site >= _clocks.size()) {
        _clocks.resize(site + std::size_t{1});
    }
    Clock& clock = _clocks[site];
    clock.differences[clock.count++ % samples] = difference;
}

std::vector<SiteClocks::Change> SiteClocks::changes() {
    std::vector<Change> changes;
    for (std::size_t i = 0; i < _clocks.size(); ++i) {
        Clock& clock = _clocks[i];
        if (clock.count < samples) {
            continue;
        }
        const auto sorted = sortedDifferences(clock);
        const bool isWrong =
            sorted[exceptions] > mostApart || sorted[samples - 1 - exceptions] < -mostApart;
        if (isWrong != clock.isWrong) {
            clock.isWrong = isWrong;
            changes.push_back({static_cast<unsigned>(i), sorted[samples / 2], isWrong});
        }
    }
    return changes;
}

std::optional<std::int64_t> SiteClocks::offsetOf(unsigned site) const {
    if (site >= _clocks.size() || _clocks[site].count < samples) {
        return std::nullopt;
    }
    return sortedDifferences(_clocks[site])[samples / 2];
}

SiteClocks::Differences SiteClocks::sortedDifferences(const Clock& clock) {
    Differences sorted = clock.differences;
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

} // namespace tolvarin::ondrel::client
