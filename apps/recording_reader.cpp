#include "apps/recording_reader.h"

#include <utility>
#include <variant>

namespace tolvarin::ondrel::client {

namespace {

ParsedLine parse(const Line& line) {
    if (line.tooLong) {
        return LineError{"the line has more than " + std::to_string(LineReader::longest) +
                         " characters"};
    }
    return parseReplyLine(line.text);
}

} // namespace

RecordingReader::RecordingReader(const std::string& path, Console& console)
    : _console(console), _lines(File::openForReading(path),
                                [this] { _console.progress(_lines.bytesRead(), _totalBytes); }),
      _totalBytes(_lines.file().remaining()) {}

std::optional<Reply> RecordingReader::next() {
    while (const auto line = _lines.next()) {
        ParsedLine parsed = parse(*line);
        if (auto* reply = std::get_if<Reply>(&parsed)) {
            return std::move(*reply);
        }
        if (const auto* error = std::get_if<LineError>(&parsed)) {
            complain(*line, error->text);
        }
    }
    return std::nullopt;
}

void RecordingReader::complain(const Line& line, const std::string& text) {
    ++_unreadableLines;
    _console.write(name() + ":" + std::to_string(line.number) + ": " + text);
}

} // namespace tolvarin::ondrel::client
