#include "apps/input/text_reader.h"

#include "apps/input/foreign_content.h"

#include <utility>

namespace tolvarin::ondrel::client {

ReplyReader::Found TextReader::next(ByteBuffer& bytes, bool atEnd, Reply& reply) {
    while (const auto line = _lines.next(bytes, atEnd)) {
        const LineContent content = read(*line, reply);
        if (content == LineContent::Nothing && _begun) {
            continue;
        }
        const bool isFirst = !std::exchange(_begun, true);
        if (content == LineContent::Reply) {
            return Found::Reply;
        }
        if (!isFirst) {
            return report(*line, Found::Unreadable);
        }
        const Found found = readFirst(*line, bytes.beginning(), reply);
        if (found != Found::Nothing) {
            return found;
        }
    }
    return Found::Nothing;
}

LineContent TextReader::read(const Line& line, Reply& reply) {
    if (line.tooLong) {
        _unreadable.reason =
            "the line has more than " + std::to_string(LineSplitter::longest) + " characters";
        return LineContent::Error;
    }
    const LineContent content = readReplyLine(line.text, _counter, reply, _unreadable.reason);
    if (content == LineContent::Reply && !lengthFits(reply.bytes)) {
        _unreadable.reason = lengthError;
        return LineContent::Error;
    }
    return content;
}

/// A line before the first reply. A comment may be all of a file whose line ends are not known.
ReplyReader::Found TextReader::readFirst(Line line, const std::string& beginning, Reply& reply) {
    const std::string content = foreignContent(beginning);
    if (!content.empty()) {
        _unreadable.reason = content;
        return Found::Foreign;
    }
    if (line.number == 1) {
        line.text = withoutByteOrderMark(line.text);
    }
    switch (read(line, reply)) {
    case LineContent::Reply:
        return Found::Reply;
    case LineContent::Nothing:
        _begun = false;
        return Found::Nothing;
    default:
        if (!isHeaderLine(line.text)) {
            return report(line, Found::Unreadable);
        }
        _begun = false;
        _unreadable.reason = "the line names columns and is skipped";
        return report(line, Found::Skipped);
    }
}

ReplyReader::Found TextReader::report(const Line& line, Found found) {
    _unreadable.place = ":" + std::to_string(line.number);
    return found;
}

} // namespace tolvarin::ondrel::client
