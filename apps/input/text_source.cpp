#include "apps/input/text_source.h"

#include "apps/common/failure.h"
#include "apps/input/foreign_content.h"

#include <utility>

namespace tolvarin::ondrel::client {

namespace {

inline LineContent read(const Line& line, Reply& reply, std::string& error) {
    if (line.tooLong) {
        error = "the line has more than " + std::to_string(LineReader::longest) + " characters";
        return LineContent::Error;
    }
    const LineContent content = readReplyLine(line.text, reply, error);
    if (content == LineContent::Reply && !lengthFits(reply.bytes)) {
        error = lengthError;
        return LineContent::Error;
    }
    return content;
}

} // namespace

TextSource::TextSource(File file, SourceEvents events)
    : _events(std::move(events)), _totalBytes(file.remaining()),
      _lines(std::move(file), [this] { _events.reading(_lines.bytesRead(), _totalBytes); }) {}

bool TextSource::next(Reply& reply) {
    std::string error;
    while (const auto line = _lines.next()) {
        LineContent content = read(*line, reply, error);
        if (content != LineContent::Reply && !_begun) {
            content = readFirst(*line, reply, error);
        }
        if (content != LineContent::Nothing) {
            _begun = true;
        }
        if (content == LineContent::Reply) {
            return true;
        }
        if (content == LineContent::Error) {
            report(*line, error);
        }
    }
    return false;
}

/// A line before the first reply. A comment may be all of a file whose line ends are not known.
LineContent TextSource::readFirst(Line line, Reply& reply, std::string& error) {
    const std::string content = foreignContent(_lines.beginning());
    if (!content.empty()) {
        throw InputFailure("cannot read " + name() + ": it is " + content);
    }
    if (line.number == 1) {
        line.text = withoutByteOrderMark(line.text);
    }
    const LineContent again = read(line, reply, error);
    if (again == LineContent::Error && isHeaderLine(line.text)) {
        _events.unreadable(place(line), "the line names columns and is skipped");
        return LineContent::Nothing;
    }
    return again;
}

void TextSource::report(const Line& line, const std::string& reason) {
    ++_unreadable;
    _events.unreadable(place(line), reason);
}

std::string TextSource::place(const Line& line) const {
    return name() + ":" + std::to_string(line.number);
}

} // namespace tolvarin::ondrel::client
