#include "apps/commands/view_run.h"

#include "apps/common/interruption.h"
#include "apps/common/system_time.h"
#include "apps/json/json_object.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longestCheckPeriod = 1000; // ms between two searches for silent aircraft
constexpr u64 mostComplaints = 10;

} // namespace

ViewRun::ViewRun(const TrackOptions& options, const MessageServer& server, TrackOutput& output,
                 Console& console)
    : _name(server.url), _output(output), _console(console), _sky(options.silentMs),
      _reports(server, {[this](const std::string& place, const std::string& reason) {
                            complain(place, reason);
                        },
                        [](u64 /*read*/, u64 /*total*/) {},
                        [this](const std::string& message) { _console.write(message); }}) {
    if (options.silentMs) {
        _checks.emplace(std::min(*options.silentMs, longestCheckPeriod));
    }
}

std::vector<TrackedAircraft> ViewRun::run() {
    while (!interrupted() && !_output.ended()) {
        const auto aircraft = _reports.next();
        passTime();
        if (aircraft) {
            take(*aircraft);
        } else {
            _console.flushOutput();
        }
        updateOutput();
    }
    return _output.end(sky());
}

void ViewRun::take(const TrackedAircraft& aircraft) {
    if (!_sky.take(aircraft, systemMilliseconds())) {
        sayOnce();
        return;
    }
    if (!_output.keepsHistory()) {
        return;
    }
    if (aircraft.notes.altitudeTold) {
        _history.noteAltitude(aircraft.icaoAddress(), aircraft.altitudeBaro(),
                              aircraft.altitudeBaroLastUpdate());
    }
    if (aircraft.position) {
        _history.notePosition(aircraft.icaoAddress(), *aircraft.position);
    }
}

/// Why reports are left out.
void ViewRun::sayOnce() {
    const ReportCounts& counts = _sky.counts();
    if (counts.ahead > 0 && !std::exchange(_saidAhead, true)) {
        report("some reports are more than a minute ahead of the clock here; such reports are left "
               "out");
    }
    if (counts.noRoom > 0 && !std::exchange(_saidNoRoom, true)) {
        report("there are " + std::to_string(ReportedSky::mostAircraft) +
               " aircraft; reports of others are left out");
    }
}

void ViewRun::complain(const std::string& place, const std::string& reason) {
    if (++_unreadable <= mostComplaints) {
        _console.write(place + ": " + reason +
                       (_unreadable == mostComplaints ? " (later ones are only counted)" : ""));
    }
}

/// An interval ends before a report that comes then is taken in.
void ViewRun::passTime() {
    _sky.passTo(systemMilliseconds());
    if (_output.intervalEnds(_sky.now())) {
        _output.showInterval(sky());
    }
    if (_checks && _checks->ended(_sky.now())) {
        for (const TrackedAircraft& aircraft : _sky.removeSilent()) {
            _history.forget(aircraft.icaoAddress());
            _output.showKilled(aircraft, _sky.now());
        }
    }
}

void ViewRun::updateOutput() {
    if (_output.isDue()) {
        _speed.measure(_sky.counts().taken);
        _output.keepCurrent(sky());
    }
}

Sky ViewRun::sky() const {
    return {_sky.aircraft(), _sky.now(), _history, lostSources({_reports.state()})};
}

ViewRunCounts ViewRun::counts() const {
    return {_sky.counts(), _sky.size(), _output.hidden(), _unreadable};
}

LiveTableState ViewRun::tableState() const {
    return {_sky.size(), _speed.perSecond()};
}

std::string ViewRun::statusJson() const {
    const ReportCounts& counts = _sky.counts();
    std::string text;
    JsonObject status(text);
    status.count("schema", jsonSchema);
    status.count("time_ms", _sky.now());
    status.count("aircraft", _sky.size());
    status.count("reports", counts.taken);
    status.decimal("reports_per_second", std::round(_speed.perSecond()));
    status.count("not_readable", _unreadable);
    status.count("ahead", counts.ahead);
    status.count("no_room", counts.noRoom);
    addProcess(status, {_reports.state()});
    status.end();
    return text + '\n';
}

} // namespace tolvarin::ondrel::client
