#include "apps/commands/track_output.h"

#include "apps/common/failure.h"
#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/json/aircraft_json.h"
#include "apps/terminal/aircraft_text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::chrono::milliseconds betweenPolls(100);
constexpr std::chrono::seconds betweenViews(1);
constexpr std::string_view refreshedHead = "<meta http-equiv=\"refresh\" content=\"5\">\n";

std::unique_ptr<AircraftSink> makeSink(const TrackOptions& options, Output& output) {
    if (options.json) {
        return std::make_unique<AircraftJsonLines>(output);
    }
    return std::make_unique<AircraftText>(output, standardOutputStyle(), options.reportAddress,
                                          options.everyMs.has_value());
}

} // namespace

TrackOutput::TrackOutput(const TrackOptions& options, std::string name, bool hasFeeds,
                         Output& output, Console& console)
    : _options(options), _name(std::move(name)), _console(console),
      _sink(makeSink(options, output)), _isLive(hasFeeds && options.htmlFolder),
      _writesLivePages(_isLive) {
    if (options.htmlFolder) {
        _pages.emplace(*options.htmlFolder, options.force);
        _keepsHistory = true;
    }
    if (options.everyMs) {
        _intervals.emplace(*options.everyMs);
    }
}

void TrackOutput::add(std::unique_ptr<LiveView> view) {
    _isLive = true;
    _keepsHistory = _keepsHistory || view->showsPaths();
    _views.push_back(std::move(view));
}

/// Takes what the user does. Whether views are due.
bool TrackOutput::poll() {
    const auto now = Clock::now();
    _nextPoll = now + betweenPolls;
    for (const auto& view : _views) {
        _ended = !view->poll() || _ended;
    }
    if (now < _nextViews) {
        return false;
    }
    _nextViews = now + betweenViews;
    return true;
}

void TrackOutput::keepCurrent(Sky sky) {
    arrangeAndShow(sky);
    if (_writesLivePages && Clock::now() >= _nextPages) {
        writeLivePages(sky);
    }
}

void TrackOutput::showInterval(Sky sky) {
    arrange(sky);
    _sink->show(sky.aircraft, showingOf(sky));
    ++_showings;
}

void TrackOutput::showKilled(const TrackedAircraft& aircraft, u64 timeMs) {
    if (_options.tellSilent && isShown(aircraft)) {
        _sink->showKilled(aircraft, showingOf(timeMs));
    }
}

std::vector<TrackedAircraft> TrackOutput::end(Sky sky) {
    const std::size_t all = sky.aircraft.size();
    arrangeAndShow(sky);
    _hidden = all - sky.aircraft.size();
    _views.clear(); // what follows may go to the same terminal
    try {
        writePages(sky);
    } catch (const Failure&) {
        _sink->show(sky.aircraft, showingOf(sky));
        throw;
    }
    _sink->show(sky.aircraft, showingOf(sky));
    return std::move(sky.aircraft);
}

bool TrackOutput::isShown(const TrackedAircraft& aircraft) const {
    return _options.reportAddress || aircraft.messages() >= _options.minMessages;
}

/// Leaves the aircraft that are shown, in their order.
void TrackOutput::arrange(Sky& sky) const {
    std::vector<TrackedAircraft>& all = sky.aircraft;
    all.erase(std::remove_if(all.begin(), all.end(),
                             [this](const TrackedAircraft& one) { return !isShown(one); }),
              all.end());
    sortAircraft(all, showingOf(sky), aircraftColumn(_options.sortKey), _options.descending);
}

/// Also shows it on the views.
void TrackOutput::arrangeAndShow(Sky& sky) const {
    showViews(sky, true);
    arrange(sky);
    showViews(sky, false);
}

/// Those that show hidden aircraft, or those that do not.
void TrackOutput::showViews(const Sky& sky, bool hidden) const {
    for (const auto& view : _views) {
        if (view->showsHidden() == hidden) {
            view->show(sky.aircraft, showingOf(sky), sky.history);
        }
    }
}

/// Once a second, or less often if that would take more than a twentieth of the time.
void TrackOutput::writeLivePages(const Sky& sky) {
    constexpr int share = 20;
    const auto begin = Clock::now();
    _pages->write({_name, showingOf(sky), sky.aircraft, sky.history}, refreshedHead);
    const auto end = Clock::now();
    _nextPages = end + std::max<Clock::duration>(betweenViews, share * (end - begin));
}

void TrackOutput::writePages(const Sky& sky) const {
    if (_pages) {
        _pages->write({_name, showingOf(sky), sky.aircraft, sky.history});
        _console.write("pages for a browser: " + shownName(_pages->indexPath()));
    }
}

} // namespace tolvarin::ondrel::client
