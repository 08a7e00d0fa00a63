#include "apps/progress.h"

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t barWidth = 40;

} // namespace

std::string progressText(u64 done, u64 total) {
    const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto filled = static_cast<std::size_t>(share * barWidth);
    const std::string percent = std::to_string(static_cast<int>(share * 100));
    return "[" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] " +
           std::string(3 - percent.size(), ' ') + percent + " %";
}

void ProgressBar::show(u64 done, u64 total) {
    std::string text = progressText(done, total);
    if (text == _shown) {
        return;
    }
    _terminal << '\r' << text << std::flush;
    _shown = std::move(text);
}

void ProgressBar::hide() {
    if (!_shown.empty()) {
        _terminal << '\r' << std::string(_shown.size(), ' ') << '\r' << std::flush;
        _shown.clear();
    }
}

} // namespace tolvarin::ondrel::client
