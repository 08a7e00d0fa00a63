#include "apps/decode_command.h"

#include "apps/common/file.h"
#include "apps/console.h"
#include "apps/decode_summary.h"
#include "apps/json_form.h"
#include "apps/text_form.h"

#include <map>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* description = "Decode recorded Mode S replies and their ADS-B payloads";

constexpr const char* footer = R"(
A line of the output has
  stamp        in seconds, - if the line has none; that of a counter begins with it
  format       DF-0 to DF-24
  address      six hexadecimal digits
  confidence   None, Low, Medium or High
  description  the fields; of an extended squitter also its ADS-B payload, behind a |;
               and [repaired] if the parity told which bits were wrong
or, for a reply that does not decode, the word refused and its bytes; --log info shows
why. How far a reply is believed depends on the replies before it.

What the bits of a payload mean depends on the MOPS version of the aircraft, which its
operational status announces. Without --mops each aircraft is read as of the version
that it announced last, and as of version 0 before that.

With --fields, each field has a line behind that: position, width in bits, name and
value. Positions count from 0, those of the payload from its own first bit.

Exit status: 0 when the recording was read to its end, also if some lines could not be
read; 1 when it could not be, when not one line held a reply and some line could not be
read, or when the output could not be written; 2 for a wrong command line.)";

const std::map<std::string, MOPSVersion> versions = {
    {"0", MOPSVersion0}, {"1", MOPSVersion1}, {"2", MOPSVersion2}};

} // namespace

DecodeCommand::DecodeCommand(CLI::App& program) : Command(program, "decode", description) {
    addRecordingOptions(line(), _recording);
    line()
        .add_option_function<std::string>(
            "--mops", [this](const std::string& name) { _version = versions.at(name); },
            "Read every payload as of this MOPS version: 0, 1 or 2")
        ->type_name("VERSION")
        ->check(CLI::IsMember(versions).description(""));
    CLI::Option* fields = line().add_flag("--fields", _fields, "Show all fields of each reply");
    line().add_flag("--json", _json, "One JSON object a line, with all fields")->excludes(fields);
    line().footer(recordingHelp() + footer);
}

int DecodeCommand::run() {
    Output output("-");
    Console console(output);
    RecordingSource source(_recording, console);
    PayloadDecoder payloads(_version);
    DecodeSummary summary;
    while (auto reply = source.next()) {
        DecodedReply decoded = source.decode(*std::move(reply));
        if (!decoded.refused()) {
            decoded.payload = payloads.decode(*decoded.message);
        }
        summary.count(decoded);
        output << form(decoded);
    }
    output.close();
    console.write(summary.text(source.unreadableLines()));
    return source.status();
}

/// With the end of its last line.
std::string DecodeCommand::form(const DecodedReply& decoded) const {
    const std::string line = _json ? jsonForm(decoded).dump() : textForm(decoded);
    return line + '\n' + (_fields ? fieldsForm(decoded) : "");
}

} // namespace tolvarin::ondrel::client
