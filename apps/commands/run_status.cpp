#include "apps/commands/run_status.h"

#include <algorithm>
#include <fstream>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

/// Bytes of the program that are in memory; 0 where the system does not tell.
u64 residentMemory() {
    u64 all = 0;
    u64 resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<u64>(::sysconf(_SC_PAGESIZE));
}

} // namespace

void Speed::measure(u64 count) {
    const auto now = Clock::now();
    const std::chrono::duration<double> passed = now - _measuredAt;
    _perSecond = static_cast<double>(count - _count) / passed.count();
    _count = count;
    _measuredAt = now;
}

std::size_t lostSources(const std::vector<SourceState>& sources) {
    const auto isLost = [](const SourceState& state) { return !state.isUp; };
    return static_cast<std::size_t>(std::count_if(sources.begin(), sources.end(), isLost));
}

void addProcess(JsonObject& status, const std::vector<SourceState>& sources) {
    status.count("memory_kb", residentMemory() / 1024);
    status.list("sources", sources, [](JsonObject& source, const SourceState& state) {
        source.words("name", state.name);
        source.flag("up", state.isUp);
    });
}

} // namespace tolvarin::ondrel::client
