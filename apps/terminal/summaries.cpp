#include "apps/terminal/summaries.h"

#include <cstddef>
#include <iomanip>
#include <sstream>

namespace tolvarin::ondrel::client {

namespace {

constexpr int labelWidth = 20;
constexpr int countWidth = 11;
constexpr int percentWidth = 7;

/// One line with its end. The share in percent is of `all`; 0: without a share.
std::string countRow(const std::string& label, u64 count, u64 all = 0) {
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

std::string leftOutRows(const LeftOut& leftOut) {
    std::string rows = countRow("not readable", leftOut.unreadable);
    if (leftOut.notShown > 0) {
        rows += countRow("  not shown", leftOut.notShown);
    }
    if (leftOut.modeAC > 0) {
        rows += countRow("Mode A/C replies", leftOut.modeAC);
    }
    if (leftOut.ahead > 0) {
        rows += countRow("of a wrong clock", leftOut.ahead);
    }
    return rows;
}

} // namespace

void DecodeSummary::count(const DecodedReply& decoded, bool shown) {
    ++_replies;
    _notShown += shown ? 0U : 1U;
    if (decoded.refused()) {
        ++_refused;
        return;
    }
    if (decoded.repaired()) {
        ++_repaired;
    }
    ++_byFormat.at(static_cast<std::size_t>(decoded.message->downlinkFormat()));
    ++_byConfidence.at(static_cast<std::size_t>(decoded.message->confidence()));
    if (decoded.payload) {
        ++_payloads;
        _payloadsRefused += decoded.payload->message ? 0U : 1U;
    }
}

std::string DecodeSummary::text(const LeftOut& leftOut) const {
    std::string table = countRow("replies read", _replies);
    table += countRow("  decoded", _replies - _refused, _replies);
    table += countRow("    repaired", _repaired, _replies);
    table += countRow("  refused", _refused, _replies);
    if (_notShown > 0) {
        table += countRow("replies not shown", _notShown, _replies);
    }
    table += "decoded by format\n";
    for (std::size_t format = 0; format < _byFormat.size(); ++format) {
        if (_byFormat[format] > 0) {
            table += countRow("  DF-" + std::to_string(format), _byFormat[format], _replies);
        }
    }
    table += "decoded by confidence\n";
    for (const auto confidence :
         {ModeSMessage::High, ModeSMessage::Medium, ModeSMessage::Low, ModeSMessage::None}) {
        table += countRow("  " + std::string(confidenceName(confidence)),
                          _byConfidence[static_cast<std::size_t>(confidence)], _replies);
    }
    table += countRow("ADS-B payloads", _payloads);
    table += countRow("  not decoded", _payloadsRefused, _payloads);
    table += leftOutRows(leftOut);
    table.pop_back();
    return table;
}

std::string trackSummary(const TrackRunCounts& counts) {
    const TrackingCounts& tracking = counts.tracking;
    const u64 replies = tracking.replies + counts.duplicates + counts.refusedStamps;
    std::string table = countRow("replies read", replies);
    table += countRow("  tracked", tracking.tracked, replies);
    if (counts.duplicates > 0) {
        table += countRow("  heard elsewhere", counts.duplicates, replies);
    }
    if (counts.late > 0) {
        table += countRow("  too late", counts.late, replies);
    }
    if (counts.ofOtherParts > 0) {
        table += countRow("  of other partitions", counts.ofOtherParts, replies);
    }
    table += countRow("aircraft", tracking.aircraft);
    table += countRow("  hidden", counts.hidden);
    table += countRow("killed", tracking.killed);
    table += countRow("  to make room", tracking.madeRoom);
    table += countRow("replies without room", tracking.notTaken);
    const PositionCounts& positions = tracking.positions;
    table += countRow("positions", positions.checked);
    table += countRow("  refused", positions.refused, positions.checked);
    table += countRow("aircraft unconfirmed", positions.unconfirmed);
    table += countRow("stamps not believed", counts.doubtedStamps);
    table += countRow("stamps of other kind", counts.refusedStamps);
    if (counts.unusedStamps > 0) {
        table += countRow("stamps not used", counts.unusedStamps);
    }
    if (counts.unstamped > 0) {
        table += countRow("replies unstamped", counts.unstamped);
    }
    table += leftOutRows(counts.leftOut);
    table.pop_back();
    return table;
}

std::string feedSummary(const FeedRunCounts& counts) {
    std::string table = countRow("replies read", counts.replies);
    table += countRow("  refused", counts.refused, counts.replies);
    table += countRow("  of grade None", counts.ungraded, counts.replies);
    if (counts.duplicates > 0) {
        table += countRow("  heard elsewhere", counts.duplicates, counts.replies);
    }
    table += countRow("  sent", counts.sent, counts.replies);
    table += countRow("  dropped", counts.dropped, counts.replies);
    table += countRow("  not sent", counts.notSent, counts.replies);
    table += countRow("batches sent", counts.batches);
    table += leftOutRows(counts.leftOut);
    table.pop_back();
    return table;
}

std::string viewSummary(const ViewRunCounts& counts) {
    const ReportCounts& reports = counts.reports;
    const u64 all = reports.taken + reports.known + reports.silent + reports.ahead + reports.noRoom;
    std::string table = countRow("reports read", all);
    table += countRow("  taken", reports.taken, all);
    table += countRow("  known already", reports.known, all);
    table += countRow("  of silent aircraft", reports.silent, all);
    if (reports.ahead > 0) {
        table += countRow("  of a wrong clock", reports.ahead, all);
    }
    if (reports.noRoom > 0) {
        table += countRow("  without room", reports.noRoom, all);
    }
    table += countRow("aircraft", counts.aircraft);
    table += countRow("  hidden", counts.hidden);
    table += countRow("killed", reports.left);
    table += countRow("not readable", counts.unreadable);
    table.pop_back();
    return table;
}

} // namespace tolvarin::ondrel::client
