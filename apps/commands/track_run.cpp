#include "apps/commands/track_run.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/display/aircraft_columns.h"
#include "apps/json/aircraft_json.h"
#include "apps/json/json_object.h"
#include "apps/terminal/aircraft_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <unistd.h>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longestCheckPeriod = 1000; // ms between two searches for silent aircraft
constexpr std::chrono::milliseconds betweenPolls(100);
constexpr std::chrono::seconds betweenViews(1);
constexpr std::string_view refreshedHead = "<meta http-equiv=\"refresh\" content=\"5\">\n";

/// Bytes of the program that are in memory; 0 where the system does not tell.
u64 residentMemory() {
    u64 all = 0;
    u64 resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<u64>(::sysconf(_SC_PAGESIZE));
}

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
        _pages.emplace(*options.htmlFolder, options.force);
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
    const bool hasFeeds = !_input.states().empty();
    _writesLivePages = _pages && hasFeeds;
    _isLive = hasFeeds || !_views.empty();
    Reply reply;
    for (auto got = next(reply); got != ReplySource::Got::End; got = next(reply)) {
        moveTo(_stamping.now());
        if (got == ReplySource::Got::Reply) {
            take(reply);
        }
        _replies += got == ReplySource::Got::Reply ? 1U : 0U;
        // Feeds say when it is time. To read the clock for each reply takes a tenth of its time.
        if (!hasFeeds || got == ReplySource::Got::Nothing) {
            updateViews();
        }
    }
    killSilent();
    std::vector<TrackedAircraft> all = sortedAircraft();
    showViews(all);
    _views.clear(); // what follows may go to the same terminal
    try {
        writePages(all);
    } catch (const Failure&) {
        _sink->show(all, showing());
        throw;
    }
    _sink->show(all, showing());
    _hidden = _tracking.counts().aircraft - all.size();
    return all;
}

TrackRunCounts TrackRun::counts() const {
    return {_tracking.counts(),  _hidden,
            _stamping.doubted(), _stamping.refused(),
            _stamping.unused(),  _stamping.unstamped(),
            _duplicates,         _input.leftOut()};
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
        throw Failure("--start is for stamps of a counter; " +
                      (_stamping.byClock()
                           ? "the first reply of " + _input.name() + " has no stamp"
                           : "those of " + _input.name() +
                                 " are seconds since 1970, which tell the time already"));
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

std::size_t TrackRun::lostSources() const {
    std::size_t lost = 0;
    for (const SourceState& state : _input.states()) {
        lost += state.isUp ? 0U : 1U;
    }
    return lost;
}

std::string TrackRun::statusJson() const {
    const TrackingCounts tracking = _tracking.counts();
    std::string text;
    JsonObject status(text);
    const auto whole = [&status](std::string_view key, u64 number) {
        status.whole(key, static_cast<std::int64_t>(number));
    };
    whole("schema", jsonSchema);
    whole("time_ms", _tracking.now());
    whole("aircraft", tracking.aircraft);
    whole("replies", _replies);
    status.decimal("replies_per_second", std::round(_repliesPerSecond));
    whole("tracked", tracking.tracked);
    whole("heard_elsewhere", _duplicates);
    whole("not_readable", _input.leftOut().unreadable);
    whole("positions_refused", tracking.positions.refused);
    whole("memory_kb", residentMemory() / 1024);
    status.list("sources", _input.states(), [](JsonObject& source, const SourceState& state) {
        source.words("name", state.name);
        source.flag("up", state.isUp);
    });
    status.end();
    return text + '\n';
}

void TrackRun::updateViews() {
    if (!_isLive || Clock::now() < _nextPoll) {
        return;
    }
    _nextPoll = Clock::now() + betweenPolls;
    for (const auto& view : _views) {
        _ended = !view->poll() || _ended;
    }
    if (Clock::now() < _nextViews) {
        return;
    }
    const std::chrono::duration<double> passed = Clock::now() - _nextViews + betweenViews;
    _repliesPerSecond = static_cast<double>(_replies - _repliesAtViews) / passed.count();
    _repliesAtViews = _replies;
    _nextViews = Clock::now() + betweenViews;
    const std::vector<TrackedAircraft> aircraft = sortedAircraft();
    showViews(aircraft);
    if (_writesLivePages && Clock::now() >= _nextPages) {
        writeLivePages(aircraft);
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
    if (_keepsHistory && aircraft != nullptr) {
        noteHistory(*aircraft);
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
        _history.forget(aircraft.icaoAddress());
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

void TrackRun::noteHistory(const ADSBTarget& aircraft) {
    const u32 address = aircraft.icaoAddr();
    if (_tracking.notesOf(aircraft).altitudeTold &&
        aircraft.altitudeBaroLastUpdate() == aircraft.lastUpdate()) {
        _history.noteAltitude(address, aircraft.altitudeBaro(), aircraft.lastUpdate());
    }
    if (_tracking.verdict() == PositionCheck::Verdict::Overruled) {
        _history.forgetPath(address);
    }
    const auto position = _tracking.positionOf(aircraft);
    if (_tracking.verdict() && position) {
        _history.notePosition(address, *position);
    }
}

/// Once a second, or less often if that would take more than a twentieth of the time.
void TrackRun::writeLivePages(const std::vector<TrackedAircraft>& aircraft) {
    constexpr int share = 20;
    const auto begin = Clock::now();
    _pages->write({_input.name(), showing(), aircraft, _history}, refreshedHead);
    const auto end = Clock::now();
    _nextPages = end + std::max<Clock::duration>(betweenViews, share * (end - begin));
}

void TrackRun::killSilent() {
    if (_options.silentMs) {
        for (const TrackedAircraft& aircraft : _tracking.killSilentFor(*_options.silentMs)) {
            _history.forget(aircraft.icaoAddress());
            if (_options.tellSilent && isShown(aircraft)) {
                _sink->showKilled(aircraft, showing());
            }
        }
    }
}

bool TrackRun::isShown(const TrackedAircraft& aircraft) const {
    return _options.reportAddress || aircraft.messages() >= _options.minMessages;
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
