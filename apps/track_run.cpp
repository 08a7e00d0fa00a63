#include "apps/track_run.h"

#include "apps/aircraft_columns.h"
#include "apps/aircraft_json.h"
#include "apps/aircraft_report.h"
#include "apps/aircraft_table.h"
#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"

#include <algorithm>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longestCheckPeriod = 1000; // ms; so often silent aircraft are looked for at least

std::string killedLine(const ADSBTarget& aircraft, u64 nowMs) {
    std::string line = secondsText(nowMs);
    line += columnGap;
    line += hex24(aircraft.icaoAddr());
    line += columnGap;
    line += callsignOf(aircraft).value_or("-");
    line += columnGap;
    return line + "killed, silent for " + secondsText(ageOf(aircraft, nowMs)) + " s";
}

} // namespace

TrackRun::TrackRun(const TrackOptions& options, RecordingSource& source, Output& output,
                   Console& console)
    : _options(options), _source(source), _output(output), _console(console),
      _tracking(options.altitudeCheck) {
    if (options.htmlFolder) {
        _pages.emplace(*options.htmlFolder);
    }
    if (options.pace) {
        _pace.emplace(*options.pace, output);
    }
    if (options.everyMs) {
        _shows.emplace(*options.everyMs);
    }
    if (options.silentMs) {
        _checks.emplace(std::min(*options.silentMs, longestCheckPeriod));
    }
}

void TrackRun::run() {
    while (auto reply = next()) {
        moveTo(*reply->stampMs);
        take(_source.decode(*std::move(reply)));
    }
    killSilent();
    const std::vector<ADSBTarget> all = aircraft();
    writePages(all);
    showAll(all);
}

/// The next reply, stamped, when its time has come; nothing when there is none any more.
std::optional<Reply> TrackRun::next() {
    auto reply = _source.next();
    if (reply) {
        const bool first = !_stamping.begun();
        _stamping.stamp(*reply);
        if (first) {
            checkStamps();
        }
        if (_pace) {
            _pace->waitFor(*reply->stampMs);
        }
    }
    return interrupted() ? std::nullopt : reply;
}

/// Runs when the first reply is there, which tells where the stamps come from.
void TrackRun::checkStamps() {
    if (!_stamping.byClock()) {
        return;
    }
    if (_pace) {
        throw Failure("cannot replay " + _source.name() + ": its first reply has no time stamp");
    }
    _console.write(_source.name() + ": the first reply has no time stamp; all are stamped with "
                                    "the clock");
}

/// What the new stamp ends is shown as it was before.
void TrackRun::moveTo(u64 stampMs) {
    if (_shows && _shows->ended(stampMs)) {
        showAll(aircraft());
    }
    _tracking.moveTo(stampMs);
    if (_checks && _checks->ended(stampMs)) {
        killSilent();
    }
}

void TrackRun::take(const DecodedReply& decoded) {
    const ADSBTarget* aircraft = _tracking.take(decoded);
    if (_pages && aircraft != nullptr) {
        _history.note(*aircraft);
    }
}

void TrackRun::killSilent() {
    if (_options.silentMs) {
        for (const ADSBTarget& aircraft : _tracking.killSilentFor(*_options.silentMs)) {
            _history.forget(aircraft.icaoAddr());
            showKilled(aircraft);
        }
    }
}

/// All, in the order that was asked for.
std::vector<ADSBTarget> TrackRun::aircraft() const {
    std::vector<ADSBTarget> all = _tracking.aircraft();
    sortAircraft(all, _tracking.now(), aircraftColumn(_options.sortKey), _options.descending);
    return all;
}

void TrackRun::writePages(const std::vector<ADSBTarget>& all) const {
    if (_pages) {
        _pages->write({_source.name(), _tracking.now(), all, _history});
        _console.write("pages for a browser: " + _pages->indexPath());
    }
}

void TrackRun::showAll(const std::vector<ADSBTarget>& all) {
    const u64 now = _tracking.now();
    if (_options.json) {
        for (const ADSBTarget& one : all) {
            _output << aircraftJson(one, now, false).dump() << '\n';
        }
        return;
    }
    if (_options.everyMs) {
        _output << secondsText(now) << ": " << all.size() << " aircraft\n";
    }
    _output << (_options.reportAddress ? report(all) : aircraftTable(all, now))
            << (_options.everyMs ? "\n" : "");
}

/// Of the aircraft that was asked for; empty while it is not tracked.
std::string TrackRun::report(const std::vector<ADSBTarget>& all) {
    const auto one = std::find_if(all.begin(), all.end(), [this](const ADSBTarget& aircraft) {
        return aircraft.icaoAddr() == *_options.reportAddress;
    });
    _found = one != all.end();
    return _found ? aircraftReport(*one, _tracking.now()) : "";
}

void TrackRun::showKilled(const ADSBTarget& aircraft) {
    const u64 now = _tracking.now();
    _output << (_options.json ? aircraftJson(aircraft, now, true).dump()
                              : killedLine(aircraft, now))
            << '\n';
}

std::string TrackRun::summary() const {
    return _tracking.summary(_source.unreadableLines());
}

} // namespace tolvarin::ondrel::client
