#pragma once

#include "apps/input/reply_source.h"
#include "apps/json/json_object.h"

#include <ondrel/types.h>

#include <chrono>
#include <cstddef>
#include <vector>

/// What runs of every kind tell of themselves while they last.
namespace tolvarin::ondrel::client {

/// How many come in a second.
class Speed {
public:
    /// `count` is that of all so far. Call it about once a second.
    void measure(u64 count);

    /// Between the last two measurements.
    double perSecond() const { return _perSecond; }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point _measuredAt;
    u64 _count = 0;
    double _perSecond = 0;
};

/// Sources that are not connected.
std::size_t lostSources(const std::vector<SourceState>& sources);

/// Adds the memory of the program and the state of its sources.
void addProcess(JsonObject& status, const std::vector<SourceState>& sources);

} // namespace tolvarin::ondrel::client
