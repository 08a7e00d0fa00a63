#include "apps/commands/track.h"

#include "apps/commands/options.h"
#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/display/showing.h"
#include "apps/input/recording_start.h"
#include "apps/input/replay.h"
#include "apps/json/aircraft_json.h"
#include "apps/pages/page_folder.h"
#include "apps/terminal/aircraft_text.h"
#include "apps/terminal/summaries.h"
#include "apps/tracking/track_history.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* description = "Track the aircraft of a recording";

constexpr const char* tableHelp = R"(
The table has a line for each aircraft with at least two messages (--min-messages): one
message alone may be noise that decoded into some address. A dash stands for what was not
received.
)";

constexpr const char* footer = R"(
A reply has the time stamp of its line. A line without a stamp gets the time of the line
before it. If the first reply has no stamp, the clock stamps all replies as they are
read. A position needs two messages not too far apart in time, so positions are then only
right if the lines come at the speed at which they were received.

A stamp more than an hour ahead or more than 10 s back is not believed until three in a
row agree. Until then, the replies have the time of the line before them. Then the time
goes there, also back. The stamps of a recording are either seconds since 1970 or those
of a counter: replies whose stamps are of the other kind than the first are left out.

Without --start, a counter tells no date, and all times are seconds since its zero.

A position is shown if the aircraft can have come there from its last one at --max-speed,
with one nautical mile to spare; of a time between the two, at most ten minutes count.
Three other positions in a row that agree with each other overrule the last one. A first
position is shown when a second one agrees. Messages with a position have one of two
formats, even or odd. A position confirms another one only if the newer message of one is
even and that of the other is odd. The summary counts positions that were refused, and
aircraft whose first position is not confirmed.

The table has places for 4095 aircraft. When it is full, the 64 that have been silent for
longest make room, each for 300 s at least, and without that, replies of new aircraft are
left out. One reply with a wrong time removes no aircraft: silence counts up to a time
that three replies in a row have reached.

How far a reply is believed depends on the system clock, not on stamps: the aircraft must
have proved its address in the last 600 seconds, an interrogator in the last 60. A
recording that is read in one second is judged as if it had been received in one second.
--pace 1 replays it at the speed at which it was received, --pace 10 ten times as fast.

Ctrl-C, or a signal to terminate or to hang up, ends the reading, and the aircraft tracked
so far are shown. A summary on standard error ends the run.

Exit status:
  0    the recording was read to its end, even if some lines were not readable
  1    the recording cannot be read to its end, or has no reply but lines that are not
       readable; the output or a page cannot be written; the aircraft of --report is not
       tracked
  2    the command line is wrong
  130  interrupted)";

constexpr const char* never = "never";
constexpr const char* modified = "mtime";
constexpr double longestSeconds = 1e9;
constexpr u64 longestCheckSeconds = 4294967; // fewer than 2^32 milliseconds
constexpr u64 mostMessages = 1000000;
constexpr u64 mostFeet = 200000;
constexpr double latestStart = 9999999999; // seconds since 1970, ten digits
constexpr u64 longestCheckPeriod = 1000;   // ms between two searches for silent aircraft
constexpr std::size_t helpWidth = 54;      // longest line in the description of an option
constexpr std::size_t footerWidth = 90;    // longest line of other help

/// What the table is like on a terminal.
std::string terminalHelp() {
    const std::string fitting =
        "On a terminal, columns that find no room leave the table, in this order: " +
        listText(aircraftColumnsByRank(), "and") +
        ". A line below the table names them. A pipe or a file gets all columns.";
    const std::string age =
        "Position, NIC, PIC, altitude, ground speed, track, vertical rate, squawk and emergency "
        "have "
        "a * behind them when they "
        "were received more than " +
        std::to_string(oldAfterMs / 1000) +
        " s before the newest stamp. On a terminal they are then dim, and an aircraft whose "
        "squawk tells an emergency is red. There are no colours if NO_COLOR is set and not empty, "
        "or if TERM is dumb or not set.";
    return "\n" + wrapped(fitting, footerWidth) + "\n\n" + wrapped(age, footerWidth) + "\n";
}

/// Of a number of seconds.
u64 milliseconds(double seconds) {
    return static_cast<u64>(std::llround(seconds * 1000));
}

/// Adds an option in seconds, which may have a fraction.
void addSeconds(CLI::App& command, const std::string& name, std::optional<u64>& option,
                const std::string& help) {
    command
        .add_option_function<double>(
            name, [&option](double seconds) { option = milliseconds(seconds); }, help)
        ->type_name("SECONDS")
        ->check(number(0.001, longestSeconds));
}

/// What is wrong with the text of an altitude check; empty if nothing is.
std::string altitudeCheckError(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return "expected SECONDS,FEET, not '" + text + "'";
    }
    std::string seconds = text.substr(0, comma);
    std::string feet = text.substr(comma + 1);
    const std::string error = wholeNumber(1, longestCheckSeconds)(seconds);
    return error.empty() ? wholeNumber(0, mostFeet)(feet) : error;
}

/// The text has passed altitudeCheckError().
AltitudeCheck altitudeCheck(const std::string& text) {
    const auto numberAt = [&text](std::size_t begin) {
        return static_cast<u32>(std::stoul(text.substr(begin)));
    };
    return {numberAt(0), numberAt(text.find(',') + 1)};
}

/// Without blanks around it and the sign of a positive number.
std::string bareNumber(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) {
        return "";
    }
    const std::string bare = text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
    const bool signedDigit = bare.size() > 1 && bare[0] == '+' && bare[1] >= '0' && bare[1] <= '9';
    return bare.substr(signedDigit ? 1 : 0);
}

/// What is wrong with the text of a place; empty if nothing is.
std::string placeError(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return "expected LAT,LON in degrees, not '" + text + "'";
    }
    std::string latitude = bareNumber(text.substr(0, comma));
    std::string longitude = bareNumber(text.substr(comma + 1));
    const std::string error = number(-90, 90)(latitude);
    return error.empty() ? number(-180, 180)(longitude) : error;
}

/// The text has passed placeError().
GeoPoint placeOf(const std::string& text) {
    // Blanks and a plus sign before a number are skipped.
    return {std::stod(text), std::stod(text.substr(text.find(',') + 1))};
}

/// In milliseconds since 1970. The text has been checked.
std::optional<u64> startOf(const TrackOptions& options, const std::string& path) {
    if (!options.start) {
        return std::nullopt;
    }
    return *options.start == modified ? startByModification(path)
                                      : milliseconds(std::stod(*options.start));
}

std::unique_ptr<AircraftSink> makeSink(const TrackOptions& options, Output& output) {
    if (options.json) {
        return std::make_unique<AircraftJsonLines>(output);
    }
    return std::make_unique<AircraftText>(output, standardOutputStyle(), options.reportAddress,
                                          options.everyMs.has_value());
}

/// Tracks the aircraft of one input and shows them.
class TrackRun {
public:
    /// All arguments must outlive the run.
    TrackRun(const TrackOptions& options, std::optional<u64> startMs, ReplyInput& input,
             Output& output, Console& console)
        : _options(options), _input(input), _console(console), _sink(makeSink(options, output)),
          _stamping([this](const std::string& message) { report(message); }, startMs),
          _tracking(options.altitudeCheck, options.greatestKnots) {
        if (options.htmlFolder) {
            _pages.emplace(*options.htmlFolder, options.force);
        }
        if (options.pace) {
            _input.showCountOnly();
            _pace.emplace(*options.pace, [this] { _input.showCount(); });
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

    /// Reads to the end of the input or until an interruption, and shows what there is then. Gives
    /// the aircraft that were tracked to the end.
    std::vector<TrackedAircraft> run() {
        Reply reply;
        while (next(reply)) {
            moveTo(_stamping.now());
            take(_input.decode(reply).get());
        }
        killSilent();
        std::vector<TrackedAircraft> all = sortedAircraft();
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

    TrackRunCounts counts() const {
        return {_tracking.counts(),  _hidden,
                _stamping.doubted(), _stamping.refused(),
                _stamping.unused(),  _stamping.unstamped(),
                _input.unreadable()};
    }

private:
    /// Puts the next reply into `reply`, with its stamp, when its time has come. False at the end
    /// of the input and after an interruption.
    bool next(Reply& reply) {
        bool first = false;
        do {
            if (!_input.next(reply)) {
                return false;
            }
            first = !_stamping.begun();
        } while (!_stamping.stamp(reply));
        if (first) {
            checkStamps();
        }
        if (_pace) {
            waitFor(*reply.stampMs);
        }
        return !interrupted();
    }

    /// Call it after the first reply.
    void checkStamps() {
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

    void waitFor(u64 stampMs) {
        if (_stamping.jumped()) {
            _pace->restart();
        }
        _pace->waitFor(stampMs);
    }

    void report(const std::string& message) { _console.write(_input.name() + ": " + message); }

    /// A period ends before the reply of this time is taken in, so it is shown without that reply.
    void moveTo(u64 timeMs) {
        if (_shows && _shows->ended(timeMs)) {
            _sink->show(sortedAircraft(), showing());
            ++_showings;
        }
        _tracking.moveTo(timeMs);
        if (_checks && _checks->ended(timeMs)) {
            killSilent();
        }
    }

    void take(const DFMessage* message) {
        const ADSBTarget* aircraft = _tracking.take(message);
        noteLosses();
        if (_pages && aircraft != nullptr) {
            noteHistory(*aircraft);
        }
    }

    /// Says once which aircraft a full table loses.
    void noteLosses() {
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

    void noteHistory(const ADSBTarget& aircraft) {
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

    void killSilent() {
        if (_options.silentMs) {
            for (const TrackedAircraft& aircraft : _tracking.killSilentFor(*_options.silentMs)) {
                _history.forget(aircraft.icaoAddr());
                if (isShown(aircraft)) {
                    _sink->showKilled(aircraft, showing());
                }
            }
        }
    }

    bool isShown(const ADSBTarget& aircraft) const {
        return _options.reportAddress || aircraft.statisticDfMsgCount() >= _options.minMessages;
    }

    Showing showing() const { return {_tracking.now(), _showings + 1, _options.receiver}; }

    std::vector<TrackedAircraft> sortedAircraft() const {
        std::vector<TrackedAircraft> all = _tracking.aircraft();
        all.erase(std::remove_if(all.begin(), all.end(),
                                 [this](const TrackedAircraft& one) { return !isShown(one); }),
                  all.end());
        sortAircraft(all, showing(), aircraftColumn(_options.sortKey), _options.descending);
        return all;
    }

    void writePages(const std::vector<TrackedAircraft>& all) const {
        if (_pages) {
            _pages->write({_input.name(), showing(), all, _history});
            _console.write("pages for a browser: " + _pages->indexPath());
        }
    }

    const TrackOptions& _options;
    ReplyInput& _input;
    Console& _console;
    std::unique_ptr<AircraftSink> _sink;
    Stamping _stamping;
    Tracking _tracking;
    TrackHistory _history; ///< kept for pages only
    std::optional<PageFolder> _pages;
    std::optional<Pace> _pace;
    std::optional<Periods> _shows;
    std::optional<Periods> _checks;
    u64 _showings = 0; ///< of all aircraft, done
    u64 _hidden = 0;   ///< aircraft of the table that are not shown at the end
    bool _saidRoom = false;
    bool _saidNoRoom = false;
};

} // namespace

TrackCommand::TrackCommand(CLI::App& program) : Command(program, "track", description) {
    addReplyInputOptions(line(), _input);
    addOutputOptions();
    addTrackingOptions();
    line().callback([this] {
        if (_options.sortKey == "distance" && !_options.receiver) {
            throw CLI::ValidationError(
                "--sort", "distance is counted from the receiver; --location tells where it is");
        }
    });
    line().footer(replySourceHelp() + tableHelp + aircraftColumnHelp() + terminalHelp() + footer);
}

void TrackCommand::addOutputOptions() {
    CLI::Option* json = line().add_flag(
        "--json", _options.json, "One JSON object a line, with all that is known of an aircraft");
    line()
        .add_option(
            "--sort", _options.sortKey,
            wrapped("Sort by this column: " + listText(aircraftColumnKeys(), "or"), helpWidth))
        ->type_name("COLUMN=address")
        ->check(CLI::IsMember(aircraftColumnKeys()).description(""));
    line().add_flag("--reverse", _options.descending, "Sort from the highest to the lowest");
    line()
        .add_option("--min-messages", _options.minMessages,
                    "Show aircraft of which so many messages were counted;\n"
                    "the summary tells how many are hidden. --report shows\n"
                    "every aircraft")
        ->type_name("N=2")
        ->transform(wholeNumber(1, mostMessages));
    CLI::Option* html = line()
                            .add_option("--html", _options.htmlFolder,
                                        "Write pages for a browser into this folder: index.html\n"
                                        "with a map and the table, and a page of each aircraft;\n"
                                        "those of an earlier run are removed")
                            ->type_name("DIR");
    line()
        .add_flag("--force", _options.force,
                  "With --html: also replace files that ondrel did not make")
        ->needs(html);
    line()
        .add_option_function<std::string>(
            "--report",
            [this](const std::string& digits) {
                _options.reportAddress = static_cast<u32>(std::stoul(digits, nullptr, 16));
            },
            "Show all that is known of the aircraft with this\n"
            "address instead of the table, each datum with its age")
        ->type_name("ADDRESS")
        ->check(icaoAddress())
        ->excludes(json);
    line()
        .add_option_function<std::string>(
            "--location", [this](const std::string& text) { _options.receiver = placeOf(text); },
            "Where the receiver stands, in degrees, north and east\n"
            "positive: adds the distance of each aircraft, and the\n"
            "receiver and circles of distance to the map")
        ->type_name("LAT,LON")
        ->check(CLI::Validator(placeError, ""));
    addSeconds(line(), "--every", _options.everyMs,
               "Also show the aircraft at each such interval of the\n"
               "recording");
}

void TrackCommand::addTrackingOptions() {
    line()
        .add_option_function<std::string>(
            "--silent-after",
            [this](const std::string& text) {
                _options.keepAll = text == never;
                if (!_options.keepAll) {
                    _options.silentMs = milliseconds(std::stod(text));
                }
            },
            "Remove an aircraft that was not heard for so long in\n"
            "the recording, and write a line about it; never: keep\n"
            "all even when the table is full")
        ->type_name("SECONDS|never")
        ->check(wordOrNumber(never, 0.001, longestSeconds));
    line()
        .add_option("--start", _options.start,
                    "When the first reply of a counter was received, in\n"
                    "seconds since 1970-01-01 UTC; mtime: guess it from the\n"
                    "time at which the file was last changed")
        ->type_name("TIME|mtime")
        ->check(wordOrNumber(modified, 0, latestStart));
    line()
        .add_option("--pace", _options.pace,
                    "Replay the recording at this multiple of the speed\n"
                    "at which it was received")
        ->type_name("FACTOR")
        ->check(number(0.001, 1e6));
    line()
        .add_option("--max-speed", _options.greatestKnots,
                    "Believe a position if the aircraft can have flown\n"
                    "there at this speed")
        ->type_name("KNOTS=2000")
        ->check(number(1, 1e6));
    line()
        .add_option_function<std::string>(
            "--altitude-check",
            [this](const std::string& text) { _options.altitudeCheck = altitudeCheck(text); },
            "Believe a new altitude within so many seconds of the\n"
            "last one only if they differ by at most so many feet")
        ->type_name("SECONDS,FEET")
        ->check(CLI::Validator(altitudeCheckError, ""));
}

int TrackCommand::run() {
    Output output("-");
    Console console(output);
    ReplyInput input(_input, console);
    TrackRun track(_options, startOf(_options, _input.arguments.front()), input, output, console);
    const std::vector<TrackedAircraft> aircraft = track.run();
    output.close();
    console.write(trackSummary(track.counts()));
    const auto isWanted = [this](const TrackedAircraft& one) {
        return one.icaoAddr() == *_options.reportAddress;
    };
    if (_options.reportAddress && std::none_of(aircraft.begin(), aircraft.end(), isWanted)) {
        throw Failure("no aircraft " + hex24(*_options.reportAddress) + " is tracked");
    }
    return input.status();
}

} // namespace tolvarin::ondrel::client
