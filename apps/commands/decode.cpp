#include "apps/commands/decode.h"

#include "apps/commands/reply_positions.h"
#include "apps/common/file.h"
#include "apps/json/reply_json.h"
#include "apps/terminal/reply_text.h"
#include "apps/terminal/summaries.h"

#include <map>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* description = "Decode recorded Mode S replies and their ADS-B payloads";

constexpr const char* footer = R"(
Each reply gives a line with these columns:
  stamp        in seconds; - if the line has none. A counter starts at its own zero
  format       DF-0 to DF-24
  address      six hexadecimal digits; ------ if the reply tells none
  confidence   None, Low, Medium or High. It depends on the replies before this one
  description  the fields; after a | the ADS-B payload of an extended squitter; at the
               end [repaired] if the decoder inverted wrong bits
If the decoder refuses a reply, the line has the word refused and the bytes of the reply.
--log info shows the reason.

The MOPS version of an aircraft decides how the bits of its payloads are read. Without
--mops it is the version that the aircraft announced last in its operational status, and
0 before that.

With --fields, a line for each field follows: position, width in bits, name and value.
Positions count from 0; those of the payload count from its first bit.

With --json, each reply is an object with its decoded values under keys of their own, in
the units that the keys name; --fields adds the bit fields. docs/json.md lists the keys.
A squitter that completes a position which ondrel track would show has latitude and
longitude. That takes stamps: without them, positions are only right if the lines come at
the speed at which they were received. With --json, --log also shows the log lines of the
tracker.

With --confidence above None, replies that the decoder refused are not shown either: they
have no grade. The summary still counts all replies.

Ctrl-C, or a signal to terminate or to hang up, ends the reading behind a whole line. A
summary on standard error ends the run.

Exit status:
  0    the recording was read to its end, even if some lines were not readable
  1    the recording cannot be read to its end, or has no reply but lines that are not
       readable, or the output cannot be written
  2    the command line is wrong
  130  interrupted)";

const std::map<std::string, MOPSVersion> versions = {
    {"0", MOPSVersion0}, {"1", MOPSVersion1}, {"2", MOPSVersion2}};

const std::map<std::string, ModeSMessage::Confidence> confidences = {
    {"None", ModeSMessage::None},
    {"Low", ModeSMessage::Low},
    {"Medium", ModeSMessage::Medium},
    {"High", ModeSMessage::High}};

} // namespace

DecodeCommand::DecodeCommand(CLI::App& program) : Command(program, "decode", description) {
    addReplyInputOptionsOrReplies(line(), _input);
    line()
        .add_option_function<std::string>(
            "--mops", [this](const std::string& name) { _version = versions.at(name); },
            "Read every payload in this MOPS version: 0, 1 or 2")
        ->type_name("VERSION")
        ->check(CLI::IsMember(versions).description(""));
    line()
        .add_option_function<std::string>(
            "--confidence", [this](const std::string& name) { _confidence = confidences.at(name); },
            "Show only replies of at least this grade: None, Low,\n"
            "Medium or High")
        ->type_name("LEVEL=None")
        ->transform(CLI::IsMember(confidences, CLI::ignore_case).description(""));
    line().add_flag("--fields", _fields, "Show all bit fields of each reply");
    line().add_flag("--json", _json, "One JSON object a line, with all decoded values");
    line().footer(replySourceHelp() + footer);
}

int DecodeCommand::run() {
    Output output("-");
    Console console(output);
    ReplyInput input(_input, console);
    PayloadDecoder payloads(_version);
    std::optional<ReplyPositions> positions;
    if (_json) {
        positions.emplace(
            [&](const std::string& text) { console.write(input.name() + ": " + text); });
    }
    DecodeSummary summary;
    DecodedReply decoded;
    std::optional<GeoPoint> place;
    std::string text;
    using Got = ReplySource::Got;
    for (auto got = input.next(decoded.reply); got != Got::End; got = input.next(decoded.reply)) {
        if (got == Got::Nothing) {
            continue;
        }
        const auto stamp = decoded.reply.stampMs;
        if (positions) {
            positions->stamp(decoded.reply);
        }
        decoded.message = input.decode(decoded.reply);
        decoded.payload = payloads.decode(decoded.message.get());
        if (positions) {
            place = positions->take(decoded.message.get());
            decoded.reply.stampMs = stamp; // the one of its line
        }
        const bool shown = isShown(decoded);
        summary.count(decoded, shown);
        if (shown) {
            text.clear();
            append(text, decoded, place);
            output << text;
        }
    }
    output.close();
    input.close();
    console.write(summary.text(input.leftOut()));
    return input.status();
}

bool DecodeCommand::isShown(const DecodedReply& decoded) const {
    return _confidence == ModeSMessage::None ||
           (!decoded.refused() && decoded.message->confidence() >= _confidence);
}

/// Appends one or more lines with their ends.
void DecodeCommand::append(std::string& text, const DecodedReply& decoded,
                           const std::optional<GeoPoint>& place) const {
    if (_json) {
        appendReplyJson(text, decoded, {place, _fields});
        return;
    }
    appendReply(text, decoded);
    if (_fields) {
        appendFields(text, decoded);
    }
}

} // namespace tolvarin::ondrel::client
