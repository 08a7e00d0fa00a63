#include "apps/track_command.h"

#include "apps/aircraft_columns.h"
#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/console.h"
#include "apps/option_checks.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* description = "Track the aircraft of a recording";

constexpr const char* footer = R"(
The table has a line for each aircraft, with a dash for what was not received:
  altitude, vertical    barometric
  speed, heading        over ground
  latitude, longitude   north and east positive
  MOPS                  the version, with ? until it is confirmed
  NIC, PIC              how far the position can be relied on
  messages              counted; only replies that are believed are
  age                   since the aircraft was last heard, when the newest reply of all
                        came

Stamps are those of the lines; a line without one counts as received together with the
line before it. If the first reply has no stamp, all replies are stamped with the clock
as they are read: positions, which need two messages not too far apart, are then only as
good as the pace at which the lines come.

How far a reply is believed goes by the wall clock: an aircraft must have proved itself
within the last 600 seconds, an interrogator within the last 60, and stamps do not
count. A recording that is read in a second is therefore graded as if it had been
received in a second. --pace 1 replays it as it was received, --pace 10 ten times as
fast.

Ctrl-C, or a signal to terminate, ends the reading; what was tracked is shown.

Exit status: 0 when the recording was read to its end, also if some lines could not be
read; 1 when it could not be, when not one line held a reply and some line could not be
read, when the output or a page could not be written, or when the aircraft of --report
is not there; 2 for a wrong command line; 130 when it was interrupted.)";

constexpr int interruptedStatus = 130;
constexpr double longestSeconds = 1e9;
constexpr u64 longestCheckSeconds = 4294967; // fewer than 2^32 milliseconds
constexpr u64 mostFeet = 200000;

/// An option of seconds with a fraction.
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
std::string complainOfAltitudeCheck(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return "expected SECONDS,FEET, not '" + text + "'";
    }
    std::string seconds = text.substr(0, comma);
    std::string feet = text.substr(comma + 1);
    const std::string complaint = wholeNumber(1, longestCheckSeconds)(seconds);
    return complaint.empty() ? wholeNumber(0, mostFeet)(feet) : complaint;
}

/// `text` is one that nothing is wrong with.
AltitudeCheck altitudeCheck(const std::string& text) {
    const auto numberAt = [&text](std::size_t begin) {
        return static_cast<u32>(std::stoul(text.substr(begin)));
    };
    return {numberAt(0), numberAt(text.find(',') + 1)};
}

std::vector<std::string> columnKeys() {
    std::vector<std::string> keys;
    for (const AircraftColumn& column : aircraftColumns()) {
        keys.emplace_back(column.key);
    }
    return keys;
}

} // namespace

TrackCommand::TrackCommand(CLI::App& program) : Command(program, "track", description) {
    addRecordingOptions(line(), _recording);
    addOutputOptions();
    addTrackingOptions();
    line().footer(recordingHelp() + footer);
}

void TrackCommand::addOutputOptions() {
    CLI::Option* json = line().add_flag(
        "--json", _options.json, "One JSON object a line, with all that is known of an aircraft");
    line()
        .add_option("--sort", _options.sortKey,
                    "The order: address, callsign, squawk, altitude, speed,\n"
                    "heading, rate, latitude, longitude, status, version,\n"
                    "nic, pic, messages or age")
        ->type_name("COLUMN=address")
        ->check(CLI::IsMember(columnKeys()).description(""));
    line().add_flag("--reverse", _options.descending, "The other way round");
    line()
        .add_option("--html", _options.htmlFolder,
                    "Write pages for a browser into this folder: index.html\n"
                    "with a map and the table, and one for each aircraft")
        ->type_name("DIR");
    line()
        .add_option_function<std::string>(
            "--report",
            [this](const std::string& digits) {
                _options.reportAddress = static_cast<u32>(std::stoul(digits, nullptr, 16));
            },
            "Show, instead of the table, all that is known of the\n"
            "aircraft of this address")
        ->type_name("ADDRESS")
        ->check(icaoAddress())
        ->excludes(json);
    addSeconds(line(), "--every", _options.everyMs,
               "Also show the aircraft at each such step of the recording");
}

void TrackCommand::addTrackingOptions() {
    addSeconds(line(), "--silent-after", _options.silentMs,
               "Drop an aircraft, with a line, when nothing was heard\n"
               "of it for so long in the recording");
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
            "Believe an altitude within so many seconds of the last\n"
            "only if it is at most so many feet away from it")
        ->type_name("SECONDS,FEET")
        ->check(CLI::Validator(complainOfAltitudeCheck, ""));
}

int TrackCommand::run() {
    Output output("-");
    Console console(output);
    RecordingSource source(_recording, console);
    TrackRun track(_options, source, output, console);
    noteInterruption();
    track.run();
    output.close();
    console.write(track.summary());
    if (!track.found()) {
        throw Failure("no aircraft " + hex24(*_options.reportAddress) + " is tracked");
    }
    return interrupted() ? interruptedStatus : source.status();
}

} // namespace tolvarin::ondrel::client
