#include "apps/commands/track.h"

#include "apps/commands/options.h"
#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
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
The table has a line for each aircraft. A dash stands for what was not received.
)";

constexpr const char* footer = R"(
A reply has the time stamp of its line. A line without a stamp gets the stamp of the line
before it. If the first reply has no stamp, the clock stamps all replies as they are
read. A position needs two messages not too far apart in time, so positions are then only
right if the lines come at the speed at which they were received.

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

constexpr double longestSeconds = 1e9;
constexpr u64 longestCheckSeconds = 4294967; // fewer than 2^32 milliseconds
constexpr u64 mostFeet = 200000;
constexpr u64 longestCheckPeriod = 1000; // ms between two searches for silent aircraft
constexpr std::size_t helpWidth = 54;    // longest line in the description of an option

/// Adds an option in seconds, which may have a fraction.
void addSeconds(CLI::App& command, const std::string& name, std::optional<u64>& milliseconds,
                const std::string& help) {
    command
        .add_option_function<double>(
            name,
            [&milliseconds](double seconds) {
                milliseconds = static_cast<u64>(std::llround(seconds * 1000));
            },
            help)
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

std::unique_ptr<AircraftSink> makeSink(const TrackOptions& options, Output& output) {
    if (options.json) {
        return std::make_unique<AircraftJsonLines>(output);
    }
    return std::make_unique<AircraftText>(output, options.reportAddress,
                                          options.everyMs.has_value());
}

/// Tracks the aircraft of one input and shows them.
class TrackRun {
public:
    /// All arguments must outlive the run.
    TrackRun(const TrackOptions& options, ReplyInput& input, Output& output, Console& console)
        : _options(options), _input(input), _console(console), _sink(makeSink(options, output)),
          _tracking(options.altitudeCheck) {
        if (options.htmlFolder) {
            _pages.emplace(*options.htmlFolder);
        }
        if (options.pace) {
            _input.showCountOnly();
            _pace.emplace(*options.pace, [this] { _input.showCount(); });
        }
        if (options.everyMs) {
            _shows.emplace(*options.everyMs);
        }
        if (options.silentMs) {
            _checks.emplace(std::min(*options.silentMs, longestCheckPeriod));
        }
    }

    /// Reads to the end of the input or until an interruption, and shows what there is then. Gives
    /// the aircraft that were tracked to the end.
    std::vector<ADSBTarget> run() {
        Reply reply;
        while (next(reply)) {
            moveTo(*reply.stampMs);
            take(_input.decode(reply).get());
        }
        killSilent();
        std::vector<ADSBTarget> all = sortedAircraft();
        writePages(all);
        _sink->show(all, _tracking.now());
        return all;
    }

    TrackingCounts counts() const { return _tracking.counts(); }

private:
    /// Puts the next reply into `reply`, with its stamp, when its time has come. False at the end
    /// of the input and after an interruption.
    bool next(Reply& reply) {
        if (!_input.next(reply)) {
            return false;
        }
        const bool first = !_stamping.begun();
        _stamping.stamp(reply);
        if (first && _stamping.byClock()) {
            reportMissingStamps();
        }
        if (_pace) {
            _pace->waitFor(*reply.stampMs);
        }
        return !interrupted();
    }

    void reportMissingStamps() {
        if (_pace) {
            throw Failure("cannot replay " + _input.name() + ": its first reply has no time stamp");
        }
        _console.write(_input.name() + ": the first reply has no time stamp; all are stamped with "
                                       "the clock");
    }

    /// A period ends before the reply of this stamp is taken in, so it is shown without that reply.
    void moveTo(u64 stampMs) {
        if (_shows && _shows->ended(stampMs)) {
            _sink->show(sortedAircraft(), _tracking.now());
        }
        _tracking.moveTo(stampMs);
        if (_checks && _checks->ended(stampMs)) {
            killSilent();
        }
    }

    void take(const DFMessage* message) {
        const ADSBTarget* aircraft = _tracking.take(message);
        if (_pages && aircraft != nullptr) {
            _history.note(*aircraft);
        }
    }

    void killSilent() {
        if (_options.silentMs) {
            for (const ADSBTarget& aircraft : _tracking.killSilentFor(*_options.silentMs)) {
                _history.forget(aircraft.icaoAddr());
                _sink->showKilled(aircraft, _tracking.now());
            }
        }
    }

    std::vector<ADSBTarget> sortedAircraft() const {
        std::vector<ADSBTarget> all = _tracking.aircraft();
        sortAircraft(all, _tracking.now(), aircraftColumn(_options.sortKey), _options.descending);
        return all;
    }

    void writePages(const std::vector<ADSBTarget>& all) const {
        if (_pages) {
            _pages->write({_input.name(), _tracking.now(), all, _history});
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
};

} // namespace

TrackCommand::TrackCommand(CLI::App& program) : Command(program, "track", description) {
    addReplyInputOptions(line(), _input);
    addOutputOptions();
    addTrackingOptions();
    line().footer(replySourceHelp() + tableHelp + aircraftColumnHelp() + footer);
}

void TrackCommand::addOutputOptions() {
    CLI::Option* json = line().add_flag(
        "--json", _options.json, "One JSON object a line, with all that is known of an aircraft");
    line()
        .add_option("--sort", _options.sortKey,
                    wrappedList("Sort by this column:", aircraftColumnKeys(), helpWidth))
        ->type_name("COLUMN=address")
        ->check(CLI::IsMember(aircraftColumnKeys()).description(""));
    line().add_flag("--reverse", _options.descending, "Sort from the highest to the lowest");
    line()
        .add_option("--html", _options.htmlFolder,
                    "Write pages for a browser into this folder: index.html\n"
                    "with a map and the table, and a page of each aircraft")
        ->type_name("DIR");
    line()
        .add_option_function<std::string>(
            "--report",
            [this](const std::string& digits) {
                _options.reportAddress = static_cast<u32>(std::stoul(digits, nullptr, 16));
            },
            "Show all that is known of the aircraft with this\n"
            "address instead of the table")
        ->type_name("ADDRESS")
        ->check(icaoAddress())
        ->excludes(json);
    addSeconds(line(), "--every", _options.everyMs,
               "Also show the aircraft at each such interval of the\n"
               "recording");
}

void TrackCommand::addTrackingOptions() {
    addSeconds(line(), "--silent-after", _options.silentMs,
               "Remove an aircraft that was not heard for so long in\n"
               "the recording, and write a line about it");
    line()
        .add_option("--pace", _options.pace,
                    "Replay the recording at this multiple of the speed\n"
                    "at which it was received")
        ->type_name("FACTOR")
        ->check(number(0.001, 1e6));
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
    TrackRun track(_options, input, output, console);
    const std::vector<ADSBTarget> aircraft = track.run();
    output.close();
    console.write(trackSummary(track.counts(), input.unreadable()));
    const auto isWanted = [this](const ADSBTarget& one) {
        return one.icaoAddr() == *_options.reportAddress;
    };
    if (_options.reportAddress && std::none_of(aircraft.begin(), aircraft.end(), isWanted)) {
        throw Failure("no aircraft " + hex24(*_options.reportAddress) + " is tracked");
    }
    return input.status();
}

} // namespace tolvarin::ondrel::client
