#include "apps/input/text_source.h"

#include "apps/input/reply_line.h"

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

TextSource::TextSource(File file, SourceEvents events)
    : _events(std::move(events)), _totalBytes(file.remaining()),
      _lines(std::move(file), [this] { _events.reading(_lines.bytesRead(), _totalBytes); }) {}

std::optional<Reply> TextSource::next() {
    while (const auto line = _lines.next()) {
        ParsedLine parsed = parse(*line);
        if (auto* reply = std::get_if<Reply>(&parsed)) {
            return std::move(*reply);
        }
        if (const auto* error = std::get_if<LineError>(&parsed)) {
            report(*line, error->reason);
        }
    }
    return std::nullopt;
}

void TextSource::report(const Line& line, const std::string& reason) {
    ++_unreadable;
    _events.unreadable(name() + ":" + std::to_string(line.number) + ": " + reason);
}

} // namespace tolvarin::ondrel::client
