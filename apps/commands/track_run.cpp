#include "apps/commands/track_run.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/json/json_object.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longestCheckPeriod = 1000; // ms between two searches for silent aircraft

} // namespace

TrackRun::TrackRun(const TrackOptions& options, std::optional<u64> startMs, ReplyInput& input,
                   TrackOutput& output, Console& console)
    : _options(options), _input(input), _output(output), _console(console),
      _stamping([this](const std::string& message) { report(message); }, startMs),
      _tracking(options.partitions, options.altitudeCheck, options.greatestKnots) {
    if (options.pace) {
        _input.showCountOnly();
        _pace.emplace(*options.pace, [this] {
            _input.showCount();
            updateOutput();
        });
    }
    if (options.isMerged) {
        _tracking.leaveOutLate();
    }
    if (options.keepAll) {
        _tracking.keepAll();
    }
    if (options.silentMs) {
        _checks.emplace(std::min(*options.silentMs, longestCheckPeriod));
    }
}

std::vector<TrackedAircraft> TrackRun::run() {
    const bool hasFeeds = !_input.states().empty();
    Reply reply;
    for (auto got = next(reply); got != ReplySource::Got::End; got = next(reply)) {
        moveTo(_stamping.now());
        if (got == ReplySource::Got::Reply) {
            take(reply);
        }
        _replies += got == ReplySource::Got::Reply ? 1U : 0U;
        // Feeds say when it is time. To read the clock for each reply takes a tenth of its time.
        if (!hasFeeds || got == ReplySource::Got::Nothing) {
            updateOutput();
        }
    }
    killSilent();
    return _output.end(sky());
}

TrackRunCounts TrackRun::counts() const {
    const LeftOut leftOut = _input.leftOut();
    return {_tracking.counts(),
            _output.hidden(),
            _stamping.doubted(),
            _stamping.refused(),
            _stamping.unused(),
            _stamping.unstamped(),
            _duplicates + leftOut.heardElsewhere,
            _tracking.late(),
            _tracking.ofOtherParts(),
            leftOut};
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
            return _output.ended() ? ReplySource::Got::End : got;
        }
        first = !_stamping.begun();
    } while (!_stamping.stamp(reply));
    if (first) {
        checkStamps();
    }
    if (_pace) {
        waitFor(*reply.stampMs);
    }
    return interrupted() || _output.ended() ? ReplySource::Got::End : ReplySource::Got::Reply;
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

Sky TrackRun::sky() const {
    return {_tracking.aircraft(), _tracking.now(), _history, lostSources(_input.states())};
}

LiveTableState TrackRun::tableState() const {
    return {_tracking.counts().aircraft, _speed.perSecond()};
}

std::string TrackRun::statusJson() const {
    const TrackRunCounts all = counts();
    const TrackingCounts& tracking = all.tracking;
    std::string text;
    JsonObject status(text);
    status.count("schema", jsonSchema);
    status.count("time_ms", _tracking.now());
    status.count("aircraft", tracking.aircraft);
    status.count("replies", _replies);
    status.decimal("replies_per_second", std::round(_speed.perSecond()));
    status.count("tracked", tracking.tracked);
    status.count("heard_elsewhere", all.duplicates);
    if (_options.isMerged) {
        status.count("too_late", all.late);
        status.count("ahead", all.leftOut.ahead);
    }
    status.count("not_readable", all.leftOut.unreadable);
    status.count("positions_refused", tracking.positions.refused);
    addProcess(status, _input.states());
    status.end();
    return text + '\n';
}

void TrackRun::updateOutput() {
    if (_output.isDue()) {
        _speed.measure(_replies);
        _output.keepCurrent(sky());
    }
}

void TrackRun::waitFor(u64 stampMs) {
    if (_stamping.jumped()) {
        _pace->restart();
    }
    _pace->waitFor(stampMs);
}

/// An interval ends before the reply of this time is taken in, so it is shown without that reply.
void TrackRun::moveTo(u64 timeMs) {
    if (_output.intervalEnds(timeMs)) {
        _output.showInterval(sky());
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
    if (reply.sites > 0 && aircraft != nullptr) {
        _tracking.noteSites(*aircraft, reply.sites);
    }
    noteLosses();
    if (_output.keepsHistory() && aircraft != nullptr) {
        noteHistory(*aircraft);
    }
    if (aircraft != nullptr && !_output.views().empty()) {
        tellViews(*message, *aircraft);
    }
}

/// Call it after the message was tracked.
void TrackRun::tellViews(const DFMessage& message, const ADSBTarget& aircraft) {
    using Verdict = PositionCheck::Verdict;
    const auto verdict = _tracking.verdict();
    const bool accepted = verdict == Verdict::Accepted || verdict == Verdict::Overruled;
    const auto position = accepted ? _tracking.positionOf(aircraft) : std::nullopt;
    for (const auto& view : _output.views()) {
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
    const auto verdict = _tracking.verdict();
    if (!verdict) {
        return;
    }
    if (*verdict == PositionCheck::Verdict::Overruled) {
        _history.forgetPath(address);
    }
    if (const auto position = _tracking.positionOf(aircraft)) {
        _history.notePosition(address, *position);
    }
}

void TrackRun::killSilent() {
    if (_options.silentMs) {
        for (const TrackedAircraft& aircraft : _tracking.killSilentFor(*_options.silentMs)) {
            _history.forget(aircraft.icaoAddress());
            _output.showKilled(aircraft, _tracking.now());
        }
    }
}

} // namespace tolvarin::ondrel::client
