#include "apps/recording_source.h"

namespace tolvarin::ondrel::client {

void addRecordingOptions(CLI::App& command, RecordingOptions& options) {
    command.add_option("FILE", options.path, "The recording; - for standard input")
        ->required()
        ->type_name("");
    addLogOption(command, options.logLevel);
}

std::string recordingHelp() {
    return R"(FILE has one reply a line, in any of these forms, line by line:
  *HEX;                    a reply
  @TICKSHEX;               with 12 hexadecimal digits of a 12 MHz counter in front
  HEX                      bare
  SECONDS[.FRACTION],HEX   with seconds since 1970-01-01 UTC in front
Blank lines and lines that begin with # are skipped. A line that cannot be read is
reported on standard error as FILE:LINE: what is wrong; the run goes on. A summary
on standard error ends it.
)";
}

RecordingSource::RecordingSource(const RecordingOptions& options, Console& console)
    : _reader(options.path, console), _log(console, options.logLevel) {}

std::optional<Reply> RecordingSource::next() {
    auto reply = _reader.next();
    if (reply) {
        ++_replies;
    }
    return reply;
}

} // namespace tolvarin::ondrel::client
