#include "apps/count_row.h"

#include <iomanip>
#include <sstream>

namespace tolvarin::ondrel::client {

namespace {

constexpr int labelWidth = 20;
constexpr int countWidth = 11;
constexpr int percentWidth = 7;

} // namespace

std::string countRow(const std::string& label, u64 count, u64 all) {
    std::ostringstream line;
    line << std::left << std::setw(labelWidth) << label << std::right << std::setw(countWidth)
         << count;
    if (all > 0) {
        const double percent = 100 * static_cast<double>(count) / static_cast<double>(all);
        line << std::fixed << std::setprecision(1) << std::setw(percentWidth) << percent << " %";
    }
    line << '\n';
    return line.str();
}

} // namespace tolvarin::ondrel::client
