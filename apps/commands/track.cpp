#include "apps/commands/track.h"

#include "apps/commands/network_options.h"
#include "apps/commands/options.h"
#include "apps/commands/track_output.h"
#include "apps/commands/track_run.h"
#include "apps/commands/view_run.h"
#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/display/showing.h"
#include "apps/input/recording_start.h"
#include "apps/json/map_json.h"
#include "apps/messaging/aircraft_publisher.h"
#include "apps/network/feed_address.h"
#include "apps/sbs/sbs_server.h"
#include "apps/terminal/live_table.h"
#include "apps/web/web_view.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* description = "Track the aircraft of a recording";

constexpr const char* tableHelp = R"(
The table has a line for each aircraft with at least two messages (--min-messages): one
message alone may be noise that decoded into some address. A dash stands for what was not
received.
)";

constexpr const char* liveHelp = R"(
With a feed on a terminal, the table refreshes in place once a second, unless --once,
--json, --report or --every is given. Arrows mark an aircraft, enter shows all that is
known of it, s sorts by the next column, ? tells the other keys, q ends. Then the terminal
is as it was, and gets the table as text. Messages show at the foot for a minute, and go
to standard error at the end; aircraft removed by --silent-after just leave the table.
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

With nats://HOST:PORT, the replies come from many sites that ondrel feed sends to a message
server (NATS), each reply once, with the grade that its site gave it. A worker tracks the
parts that --partitions names, so several workers can share the work, and each part has a
table for 4095 aircraft. If the server stores replies (JetStream), a worker that is started
again goes on where it was; if it does not, what is lost on the way stays lost. Without a
reply the time goes on with the clock.

A worker reports each aircraft that was updated to the server, about every five seconds.
With --view, the aircraft of all workers are shown as these reports tell, up to 65,536 of
them; all are there at once if the server stores the last report of each. Nothing is
tracked then, so what is for replies, such as --sbs, does not go with it. Where this page
speaks of the newest stamp, it is that of the newest report.

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

/// Browsers compare an origin letter by letter with the one that they send, which has small letters
/// and no path.
bool isOrigin(const std::string& text) {
    constexpr std::string_view lettersOfScheme = "abcdefghijklmnopqrstuvwxyz0123456789+-.";
    constexpr std::string_view lettersOfHost = "abcdefghijklmnopqrstuvwxyz0123456789-.:[]";
    const std::size_t end = text.find("://");
    if (end == std::string::npos || end == 0 || text.find_first_not_of(lettersOfScheme) != end) {
        return false;
    }
    const std::string host = text.substr(end + 3);
    return host.find_first_not_of(lettersOfHost) == std::string::npos &&
           (hostAndPort(host) || hostAndPort(host + ":80"));
}

/// What is wrong with the text of an origin; empty if nothing is.
std::string originError(const std::string& text) {
    return text == "*" || isOrigin(text)
               ? ""
               : "expected * or SCHEME://HOST[:PORT] in small letters, not '" + text + "'";
}

/// An address with a port: that of this machine alone unless told.
std::string served(const std::string& text) {
    return text.find(':') == std::string::npos ? "127.0.0.1:" + text : text;
}

/// In milliseconds since 1970. The text has been checked.
std::optional<u64> startOf(const TrackOptions& options, const ReplyInputOptions& input) {
    if (!options.start) {
        return std::nullopt;
    }
    return *options.start == modified ? startByModification(input.arguments.front(), input.counter)
                                      : milliseconds(std::stod(*options.start));
}

} // namespace

TrackCommand::TrackCommand(CLI::App& program) : Command(program, "track", description) {
    WorkerOptions& worker = _input.worker.emplace();
    addReplyInputOptions(line(), _input);
    addWorkerOptions(line(), worker);
    line().add_flag("--view", _options.isView,
                    "From a message server: show the aircraft that all its\n"
                    "workers report; track nothing");
    addOutputOptions();
    addTrackingOptions();
    line().final_callback([this] {
        if (_options.sortKey == "distance" && !_options.receiver) {
            throw CLI::ValidationError(
                "--sort", "distance is counted from the receiver; --location tells where it is");
        }
        if (_options.isView) {
            checkViewOptions();
        }
        if (!isNetwork(_input)) {
            checkOtherOptions();
        }
        if (isLive(_input) && (_options.pace || _options.start)) {
            throw CLI::ValidationError(_options.pace ? "--pace" : "--start",
                                       "it is for recordings; a feed has the time of the clock");
        }
    });
    line().footer(replySourceHelp() + tableHelp + aircraftColumnHelp() + terminalHelp() + liveHelp +
                  footer);
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
    CLI::Option* serve = line().add_option_function<std::string>(
        "--serve", [this](const std::string& address) { _options.serve = served(address); },
        "Serve live pages for browsers at this address, and the\n"
        "files of --json-dir at /data/; without ADDRESS, only\n"
        "programs on this machine reach them");
    serve->type_name("[ADDRESS:]PORT")
        ->check(CLI::Validator(
            [](const std::string& text) -> std::string {
                return hostAndPort(served(text)) ? ""
                                                 : "expected [ADDRESS:]PORT, not '" + text + "'";
            },
            ""));
    line()
        .add_option("--allow-origin", _options.dataOrigin,
                    "With --serve: let the scripts of pages from there read\n"
                    "/data/, such as https://map.example; *: of any page")
        ->type_name("ORIGIN|*")
        ->needs(serve)
        ->check(CLI::Validator(originError, ""));
    line()
        .add_option("--json-dir", _options.jsonFolder,
                    "Keep aircraft.json and receiver.json in this folder,\n"
                    "once a second, for map pages and other programs")
        ->type_name("DIR");
    line()
        .add_option("--sbs", _options.sbsAddress,
                    "Send an SBS line of each tracked message to all who\n"
                    "connect to this address")
        ->type_name("ADDRESS:PORT")
        ->check(addressAndPort());
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
        ->check(place());
    addSeconds(line(), "--every", _options.everyMs,
               "Also show the aircraft at each such interval of the\n"
               "recording");
    line().add_flag("--once", _options.once,
                    "With feeds on a terminal: show the aircraft once, at the\n"
                    "end, instead of a table that refreshes in place");
}

void TrackCommand::addTrackingOptions() {
    line()
        .add_option_function<std::string>(
            "--silent-after",
            [this](const std::string& text) {
                _options.keepAll = text == never;
                if (!_options.keepAll) {
                    _options.silentMs = milliseconds(std::stod(text));
                    _options.tellSilent = true;
                }
            },
            "Remove an aircraft that was not heard for so long, and\n"
            "write a line about it; never: keep all even when the\n"
            "table is full. With feeds, those silent for 300 s leave\n"
            "unless told")
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

/// Options that fit no source but a message server.
void TrackCommand::checkOtherOptions() {
    for (const char* name : {"--partitions", "--worker", "--rebuild", "--credentials", "--tls-ca",
                             "--tls-cert", "--tls-key"}) {
        if (line().count(name) > 0) {
            throw CLI::ValidationError(name, "it is for a message server: nats://HOST:PORT");
        }
    }
}

/// Options that do not fit reports of workers.
void TrackCommand::checkViewOptions() {
    if (!isNetwork(_input)) {
        throw CLI::ValidationError("--view", "it shows what is on a message server: nats://...");
    }
    for (const std::string name :
         {"--sbs", "--partitions", "--worker", "--rebuild", "--pace", "--start", "--max-speed",
          "--altitude-check", "--record", "--clock", "--log"}) {
        if (line().count(name) > 0) {
            throw CLI::ValidationError(
                "--view", name + " is for replies; a viewer gets only reports of aircraft");
        }
    }
}

/// Sets what is usual for sources without an end, where the user did not say otherwise.
void TrackCommand::setLiveOptions() {
    if (!_options.silentMs && !_options.keepAll) {
        _options.silentMs = Tracking::shortestSilence;
    }
}

/// Where the table is shown live; null if it is not.
std::unique_ptr<LiveScreen> TrackCommand::openScreen() {
    const bool isText =
        _options.once || _options.json || _options.everyMs || _options.reportAddress;
    auto screen = isLive(_input) && !isText ? openLiveScreen() : nullptr;
    if (screen) {
        _options.tellSilent = false; // the table tells
    }
    return screen;
}

/// The table on the screen comes last, since it takes the lines of the console from then on.
void TrackCommand::addViews(TrackOutput& display, const std::string& input, Console& console,
                            std::unique_ptr<LiveScreen> screen, const RunState& state) const {
    if (_options.serve) {
        auto view = std::make_unique<WebView>(*hostAndPort(*_options.serve), input,
                                              _options.dataOrigin, state.status);
        console.write("pages for a browser: http://" + view->address() + "/");
        display.add(std::move(view));
    }
    if (_options.jsonFolder) {
        display.add(std::make_unique<MapJsonFolder>(*_options.jsonFolder, _options.receiver));
    }
    if (_options.sbsAddress) {
        display.add(std::make_unique<SbsServer>(
            *hostAndPort(*_options.sbsAddress),
            [&console](const std::string& message) { console.write("SBS: " + message); }));
    }
    if (screen) {
        display.add(std::make_unique<LiveTable>(std::move(screen), console,
                                                LiveTableOptions{input, _options.sortKey,
                                                                 _options.descending, state.table,
                                                                 state.what}));
    }
}

/// The message server that is the source.
MessageServer TrackCommand::server() const {
    MessageServer server = _input.worker->server;
    server.url = _input.arguments.front();
    return server;
}

/// Throws Failure if the aircraft of --report is not there.
void TrackCommand::checkReport(const std::vector<TrackedAircraft>& aircraft) const {
    const auto isWanted = [this](const TrackedAircraft& one) {
        return one.icaoAddress() == *_options.reportAddress;
    };
    if (_options.reportAddress && std::none_of(aircraft.begin(), aircraft.end(), isWanted)) {
        throw Failure("no aircraft " + hex24(*_options.reportAddress) + " is tracked");
    }
}

int TrackCommand::run() {
    Output output("-");
    Console console(output);
    return _options.isView ? view(output, console) : track(output, console);
}

int TrackCommand::track(Output& output, Console& console) {
    ReplyInput input(_input, console);
    if (isLive(_input)) {
        setLiveOptions();
    }
    std::unique_ptr<LiveScreen> screen = openScreen();
    if (isNetwork(_input)) {
        _options.partitions = _input.worker->partitions;
        _options.isMerged = true;
    }
    const std::optional<u64> start = startOf(_options, _input);
    TrackOutput display(_options, input.name(), isLive(_input), output, console);
    TrackRun track(_options, start, input, display, console);
    if (isNetwork(_input)) {
        display.add(std::make_unique<AircraftPublisher>(
            server(), _input.worker->name,
            [&](const std::string& message) { console.write(input.name() + ": " + message); }));
    }
    addViews(display, input.name(), console, std::move(screen),
             {[&track] { return track.statusJson(); }, [&track] { return track.tableState(); },
              "replies"});
    const std::vector<TrackedAircraft> aircraft = track.run();
    output.close();
    input.close();
    console.write(trackSummary(track.counts()));
    checkReport(aircraft);
    return input.status();
}

int TrackCommand::view(Output& output, Console& console) {
    noteInterruption();
    setLiveOptions();
    std::unique_ptr<LiveScreen> screen = openScreen();
    const MessageServer from = server();
    TrackOutput display(_options, from.url, true, output, console);
    ViewRun view(_options, from, display, console);
    addViews(
        display, from.url, console, std::move(screen),
        {[&view] { return view.statusJson(); }, [&view] { return view.tableState(); }, "reports"});
    const std::vector<TrackedAircraft> aircraft = view.run();
    output.close();
    console.write(viewSummary(view.counts()));
    checkReport(aircraft);
    return interrupted() ? interruptedStatus : 0;
}

} // namespace tolvarin::ondrel::client
