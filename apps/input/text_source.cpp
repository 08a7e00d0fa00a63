#include "apps/input/text_source.h"

#include "apps/input/reply_line.h"

#include <utility>

namespace tolvarin::ondrel::client {

namespace {

LineContent read(const Line& line, Reply& reply, std::string& error) {
    if (line.tooLong) {
        error = "the line has more than " + std::to_string(LineReader::longest) + " characters";
        return LineContent::Error;
    }
    return readReplyLine(line.text, reply, error);
}

} // namespace

TextSource::TextSource(File file, SourceEvents events)
    : _events(std::move(events)), _totalBytes(file.remaining()),
      _lines(std::move(file), [this] { _events.reading(_lines.bytesRead(), _totalBytes); }) {}

bool TextSource::next(Reply& reply) {
    std::string error;
    while (const auto line = _lines.next()) {
        const LineContent content = read(*line, reply, error);
        if (content == LineContent::Reply) {
            return true;
        }
        if (content == LineContent::Error) {
            report(*line, error);
        }
    }
    return false;
}

void TextSource::report(const Line& line, const std::string& reason) {
    ++_unreadable;
    _events.unreadable(name() + ":" + std::to_string(line.number) + ": " + reason);
}

} // namespace tolvarin::ondrel::client
