#include "apps/commands/track_run.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/display/aircraft_columns.h"
#include "apps/json/aircraft_json.h"
#include "apps/terminal/aircraft_text.h"

#include <algorithm>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longestCheckPeriod = 1000; // ms between two searches for silent aircraft
constexpr std::chrono::milliseconds betweenPolls(100);
constexpr std::chrono::seconds betweenViews(1);

std::unique_ptr<AircraftSink> makeSink(const TrackOptions& options, Output& output) {
    if (options.json) {
        return std::make_unique<AircraftJsonLines>(output);
    }
    return std::make_unique<AircraftText>(output, standardOutputStyle(), options.reportAddress,
                                          options.everyMs.has_value());
}

} // namespace

TrackRun::TrackRun(const TrackOptions& options, std::optional<u64> startMs, ReplyInput& input,
                   Output& output, Console& console)
    : _options(options), _input(input), _console(console), _sink(makeSink(options, output)),
      _stamping([this](const std::string& message) { report(message); }, startMs),
      _tracking(options.altitudeCheck, options.greatestKnots) {
    if (options.htmlFolder) {
        _pages.emplace(*options.htmlFolder);
        _keepsHistory = true;
    }
    if (options.pace) {
        _input.showCountOnly();
        _pace.emplace(*options.pace, [this] {
            _input.showCount();
            updateViews();
        });
    }
    if (options.everyMs) {
        _shows.emplace(*options.everyMs);
    }
    if (options.keepAll) {
        _tracking.keepAll();
    }
    if (options.silentMs) {
        _checks.emplace(std::min(*options.silentMs, longestCheckPeriod));
    }
}

void TrackRun::add(std::unique_ptr<LiveView> view) {
    _keepsHistory = _keepsHistory || view->showsPaths();
    _views.push_back(std::move(view));
}

std::vector<TrackedAircraft> TrackRun::run() {
    Reply reply;
    for (auto got = next(reply); got != ReplySource::Got::End; got = next(reply)) {
        moveTo(_stamping.now());
        if (got == ReplySource::Got::Reply) {
            take(reply);
        }
        updateViews();
    }
    killSilent();
    std::vector<TrackedAircraft> all = sortedAircraft();
    showViews(all);
    writePages(all);
    _sink->show(all, showing());
    _hidden = _tracking.counts().aircraft - all.size();
    return all;
}

TrackRunCounts TrackRun::counts() const {
    return {_tracking.counts(),  _hidden,     _stamping.doubted(),
            _stamping.refused(), _duplicates, _input.leftOut()};
}

/// Puts the next reply into `reply`, with its stamp, when its time has come.
ReplySource::Got TrackRun::next(Reply& reply) {
    bool first = false;
    do {
        const auto got = _input.next(reply);
        if (got == ReplySource::Got::Nothing) {
            _stamping.passTo(systemMilliseconds());
        }
        if (got != ReplySource::Got::Reply) {
            return _ended ? ReplySource::Got::End : got;
        }
        first = !_stamping.begun();
    } while (!_stamping.stamp(reply));
    if (first) {
        checkStamps();
    }
    if (_pace) {
        waitFor(*reply.stampMs);
    }
    return interrupted() || _ended ? ReplySource::Got::End : ReplySource::Got::Reply;
}

/// Call it after the first reply.
void TrackRun::checkStamps() {
    if (_options.start && !_stamping.byCounter()) {
        throw Failure("--start is for stamps of a counter; the first reply of " + _input.name() +
                      " has none");
    }
    if (!_stamping.byClock()) {
        return;
    }
    if (_pace) {
        throw Failure("cannot replay " + _input.name() + ": its first reply has no time stamp");
    }
    report("the first reply has no time stamp; all are stamped with the clock. Ages and times "
           "tell when a reply was read, and positions may be wrong or missing");
}

void TrackRun::updateViews() {
    if (_views.empty() || Clock::now() < _nextPoll) {
        return;
    }
    _nextPoll = Clock::now() + betweenPolls;
    for (const auto& view : _views) {
        _ended = !view->poll() || _ended;
    }
    if (Clock::now() >= _nextViews) {
        _nextViews = Clock::now() + betweenViews;
        showViews(sortedAircraft());
    }
}

void TrackRun::showViews(const std::vector<TrackedAircraft>& aircraft) const {
    for (const auto& view : _views) {
        view->show(aircraft, showing(), _history);
    }
}

void TrackRun::waitFor(u64 stampMs) {
    if (_stamping.jumped()) {
        _pace->restart();
    }
    _pace->waitFor(stampMs);
}

/// A period ends before the reply of this time is taken in, so it is shown without that reply.
void TrackRun::moveTo(u64 timeMs) {
    if (_shows && _shows->ended(timeMs)) {
        _sink->show(sortedAircraft(), showing());
        ++_showings;
    }
    _tracking.moveTo(timeMs);
    if (_checks && _checks->ended(timeMs)) {
        killSilent();
    }
}

void TrackRun::take(const Reply& reply) {
    const auto message = _input.decode(reply);
    const bool several = reply.source != 0;
    if (several && _heard.heardElsewhere(reply.bytes, reply.source, *reply.stampMs)) {
        ++_duplicates;
        return;
    }
    const ADSBTarget* aircraft = _tracking.take(message.get());
    if (several && aircraft != nullptr) {
        _heard.keep(reply.bytes, reply.source, *reply.stampMs);
    }
    noteLosses();
    const auto verdict = _tracking.verdict();
    if (_keepsHistory && verdict) {
        notePosition(*aircraft, *verdict);
    }
    if (aircraft != nullptr && !_views.empty()) {
        tellViews(*message, *aircraft);
    }
}

/// Call it after the message was tracked.
void TrackRun::tellViews(const DFMessage& message, const ADSBTarget& aircraft) {
    using Verdict = PositionCheck::Verdict;
    const auto verdict = _tracking.verdict();
    const bool accepted = verdict == Verdict::Accepted || verdict == Verdict::Overruled;
    const auto position = accepted ? _tracking.positionOf(aircraft) : std::nullopt;
    for (const auto& view : _views) {
        view->note(message, aircraft, position);
    }
}

/// Says once which aircraft a full table loses.
void TrackRun::noteLosses() {
    for (const TrackedAircraft& aircraft : _tracking.madeRoom()) {
        _history.forget(aircraft.icaoAddr());
    }
    if (!_saidRoom && !_tracking.madeRoom().empty()) {
        _saidRoom = true;
        report("the table is full; those silent for longest, 300 s at least, make room");
    }
    if (!_saidNoRoom && _tracking.notTaken() > 0) {
        _saidNoRoom = true;
        report("the table is full; replies of new aircraft are left out");
    }
}

void TrackRun::notePosition(const ADSBTarget& aircraft, PositionCheck::Verdict verdict) {
    if (verdict == PositionCheck::Verdict::Overruled) {
        _history.forget(aircraft.icaoAddr());
    }
    if (const auto position = _tracking.positionOf(aircraft)) {
        _history.note(aircraft.icaoAddr(), position->place);
    }
}

void TrackRun::killSilent() {
    if (_options.silentMs) {
        for (const TrackedAircraft& aircraft : _tracking.killSilentFor(*_options.silentMs)) {
            _history.forget(aircraft.icaoAddr());
            if (_options.tellSilent && isShown(aircraft)) {
                _sink->showKilled(aircraft, showing());
            }
        }
    }
}

bool TrackRun::isShown(const ADSBTarget& aircraft) const {
    return _options.reportAddress || aircraft.statisticDfMsgCount() >= _options.minMessages;
}

std::vector<TrackedAircraft> TrackRun::sortedAircraft() const {
    std::vector<TrackedAircraft> all = _tracking.aircraft();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [this](const TrackedAircraft& one) { return !isShown(one); }),
              all.end());
    sortAircraft(all, showing(), aircraftColumn(_options.sortKey), _options.descending);
    return all;
}

void TrackRun::writePages(const std::vector<TrackedAircraft>& all) const {
    if (_pages) {
        _pages->write({_input.name(), showing(), all, _history});
        _console.write("pages for a browser: " + _pages->indexPath());
    }
}

} // namespace tolvarin::ondrel::client
