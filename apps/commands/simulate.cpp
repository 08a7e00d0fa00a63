#include "apps/commands/simulate.h"

#include "apps/commands/options.h"
#include "apps/common/file.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/network/broadcast.h"
#include "apps/network/feed_address.h"
#include "apps/terminal/console.h"

#include "simulator/recording.h"

#include <chrono>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace tolvarin::ondrel::client {

namespace {

using simulator::RecordingForm;

constexpr const char* description = "Write a recording of invented traffic";

constexpr const char* footer =
    R"(Of the damaged replies, 50 % have one wrong bit, 20 % have two, 10 % have 3 to 12, 10 %
are cut short, and 10 % are replaced by noise.

The same options give the same bytes on every machine. The first line of a
recording, unless it is binary, is the command that makes it again.

Ctrl-C, or a signal to terminate or to hang up, ends the recording behind a whole line.

Exit status:
  0    done
  1    the output cannot be written
  2    the command line is wrong
  130  interrupted)";

constexpr u64 mostAircraft = u64{1} << 20U;
constexpr u64 longestSeconds = 1000000; // --form ticks can count 23 times as long
constexpr u64 latestStart = 9999999999; // ten digits
constexpr u64 mostInterrogators = 64;
constexpr u64 repliesBetweenProgress = 1000;
constexpr double halfWayRoundNm = 10800;
constexpr std::chrono::milliseconds betweenSends(10);
constexpr std::chrono::milliseconds toFinish(200); // for the last bytes to go out

const std::map<std::string, RecordingForm> forms = {
    {"seconds", RecordingForm::Seconds}, {"ticks", RecordingForm::Ticks},
    {"star", RecordingForm::Frame},      {"bare", RecordingForm::Bare},
    {"binary", RecordingForm::Binary},   {"text", RecordingForm::Ticks}};

/// Options without which the recording is that of no place.
bool isOfReceiver(const std::string& option) {
    return option == "--receiver" || option == "--range";
}

CLI::Validator share() {
    return number(0, 1);
}

simulator::DamageShares damageShares(double all) {
    simulator::DamageShares shares;
    shares.oneBit = 0.5 * all;
    shares.twoBits = 0.2 * all;
    shares.manyBits = 0.1 * all;
    shares.cut = 0.1 * all;
    shares.noise = 0.1 * all;
    return shares;
}

} // namespace

SimulateCommand::SimulateCommand(CLI::App& program) : Command(program, "simulate", description) {
    // The help text shows the default of each option that is added from here on.
    line().option_defaults()->always_capture_default();
    addRecordingOptions();
    addFleetOptions();
    addReceptionOptions();
    addReceiverOptions();
    line().footer(footer);
}

void SimulateCommand::addRecordingOptions() {
    line()
        .add_option("-o,--output", _path, "The file to create or replace; - for standard output")
        ->type_name("FILE");
    line()
        .add_option_function<std::string>(
            "--serve", [this](const std::string& address) { _serve = address; },
            "Play the traffic from now on to all who connect to this\n"
            "address, instead of writing it")
        ->type_name("ADDRESS:PORT")
        ->check(addressAndPort());
    line()
        .add_option("--pace", _pace, "With --serve: the multiple of the real speed")
        ->type_name("FACTOR")
        ->check(number(0.001, 1e6));
    line()
        .add_option("--form", _form,
                    "seconds, ticks, star, bare: SECONDS,HEX @TICKSHEX; *HEX; HEX;\n"
                    "or binary: frames of 0x1A, type, counter, signal and reply")
        ->type_name("FORM")
        ->check(CLI::IsMember(forms).description(""));
    line()
        .add_option("--seconds", _traffic.seconds, "Duration of the recording")
        ->type_name("N")
        ->transform(wholeNumber(1, longestSeconds));
    line()
        .add_option("--start", _startSeconds,
                    "Start of the recording, in seconds since 1970-01-01 UTC")
        ->type_name("N")
        ->transform(wholeNumber(0, latestStart));
    line()
        .add_option("--seed", _traffic.seed,
                    "Seed of the random numbers: each seed gives other traffic")
        ->type_name("N")
        ->transform(wholeNumber(0, std::numeric_limits<u64>::max()));
}

void SimulateCommand::addFleetOptions() {
    line()
        .add_option("--aircraft", _traffic.aircraft, "Number of aircraft, ground vehicles included")
        ->type_name("N")
        ->transform(wholeNumber(1, mostAircraft));
    line()
        .add_option("--ground", _traffic.groundShare, "Share of aircraft that start on the ground")
        ->type_name("SHARE")
        ->check(share());
    line()
        .add_option("--latitude", _traffic.centre.latitude,
                    "Centre of the traffic, in degrees north")
        ->type_name("DEG")
        ->check(number(-90, 90));
    line()
        .add_option("--longitude", _traffic.centre.longitude,
                    "Centre of the traffic, in degrees east")
        ->type_name("DEG")
        ->check(number(-180, 180));
    line()
        .add_option("--radius", _traffic.radiusNm,
                    "Greatest distance from the centre, in nautical miles")
        ->type_name("NM")
        ->check(number(1, halfWayRoundNm));
    line().add_flag("--worldwide", _traffic.worldwide,
                    "Put the aircraft anywhere on earth instead");
}

void SimulateCommand::addReceptionOptions() {
    line()
        .add_option("--interrogators", _traffic.interrogators,
                    "Number of radars that interrogate the aircraft")
        ->type_name("N")
        ->transform(wholeNumber(0, mostInterrogators));
    line()
        .add_option("--reception", _traffic.receptionShare, "Share of replies that are received")
        ->type_name("SHARE")
        ->check(share());
    line()
        .add_option("--damage", _damage, "Share of received replies that are damaged")
        ->type_name("SHARE")
        ->check(share());
}

void SimulateCommand::addReceiverOptions() {
    const auto setPlace = [this](const std::string& text) {
        const GeoPoint place = placeOf(text);
        _receiver.place = {place.latitude, place.longitude};
        _hasReceiver = true;
    };
    CLI::Option* receiver = line().add_option_function<std::string>(
        "--receiver", setPlace,
        "Hear the traffic at this place. If all else is the same,\n"
        "receivers at several places hear the same traffic, each\n"
        "with losses and damage of its own");
    receiver->type_name("LAT,LON")->check(place());
    line()
        .add_option("--range", _receiver.rangeNm,
                    "With --receiver: how far it hears, in nautical miles")
        ->type_name("NM")
        ->check(number(1, halfWayRoundNm))
        ->needs(receiver);
}

int SimulateCommand::run() {
    return _serve ? serve() : write();
}

int SimulateCommand::write() {
    Output output(_path);
    const simulator::TrafficOptions traffic = options();
    Console console(output);
    noteInterruption();
    const RecordingForm form = forms.at(_form);
    if (form != RecordingForm::Binary) {
        output << "# " << commandLine() << '\n';
    }
    simulator::Traffic source(traffic);
    u64 replies = 0;
    std::optional<simulator::Reply> reply;
    while (!interrupted() && (reply = source.next())) {
        if (replies++ % repliesBetweenProgress == 0) {
            console.showProgress(reply->timeMs - traffic.startMs, u64{1000} * traffic.seconds);
        }
        output << recorded(*reply, form, traffic.startMs);
    }
    output.close();
    tellEnd(console, _path == "-" ? "<stdout>" : shownName(_path), replies);
    return interrupted() ? interruptedStatus : 0;
}

/// Plays the traffic to clients, from now on.
int SimulateCommand::serve() {
    Output output("-"); // nothing goes there
    Console console(output);
    noteInterruption();
    const simulator::TrafficOptions traffic = options();
    Broadcast clients(*hostAndPort(*_serve),
                      [&console](const std::string& message) { console.write(message); });
    const auto start = std::chrono::steady_clock::now();
    const auto timeOf = [&](u64 simulatedMs) {
        return start + std::chrono::microseconds(
                           std::llround(static_cast<double>(simulatedMs) * 1000 / _pace));
    };
    simulator::Traffic source(traffic);
    u64 replies = 0;
    auto sent = start;
    std::string bytes;
    std::optional<simulator::Reply> reply;
    while (!interrupted() && (reply = source.next())) {
        const auto due = timeOf(reply->timeMs - traffic.startMs);
        if (due > sent + betweenSends) {
            clients.send(bytes);
            bytes.clear();
            clients.serve(due);
            sent = due;
        }
        bytes += recorded(*reply, forms.at(_form), traffic.startMs);
        ++replies;
    }
    clients.send(bytes);
    clients.serve(std::chrono::steady_clock::now() + toFinish);
    tellEnd(console, *_serve, replies);
    return interrupted() ? interruptedStatus : 0;
}
void SimulateCommand::tellEnd(Console& console, const std::string& name, u64 replies) {
    if (name != "<stdout>" || interrupted()) {
        console.write(name + ": " + std::to_string(replies) + " replies" +
                      (interrupted() ? ", interrupted" : ""));
    }
}

simulator::TrafficOptions SimulateCommand::options() const {
    simulator::TrafficOptions options = _traffic;
    options.startMs = _startSeconds * 1000;
    options.damage = damageShares(_damage);
    if (_hasReceiver) {
        options.receiver = _receiver;
    }
    return options;
}

/// The command line with every option that changes the bytes, given or not.
std::string SimulateCommand::commandLine() {
    std::string text = "ondrel simulate";
    for (const CLI::Option* option : line().get_options()) {
        const std::string name = option->get_name();
        if (name == "--help" || name == "--output" || name == "--serve" || name == "--pace" ||
            (isOfReceiver(name) && !_hasReceiver)) {
            continue;
        }
        if (option->get_items_expected() == 0) {
            text += option->count() > 0 ? " " + name : "";
        } else {
            text += " " + name + " ";
            text += option->count() > 0 ? option->as<std::string>() : option->get_default_str();
        }
    }
    return text;
}

} // namespace tolvarin::ondrel::client
