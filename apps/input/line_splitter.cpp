#include "apps/input/line_splitter.h"

#include <algorithm>
#include <utility>

namespace tolvarin::ondrel::client {

static_assert(LineSplitter::longest < ByteBuffer::size, "a line leaves room for the next bytes");

std::optional<Line> LineSplitter::next(ByteBuffer& bytes, bool atEnd) {
    const std::string_view rest = bytes.rest();
    const std::size_t lineEnd = rest.find('\n');
    if (lineEnd == std::string_view::npos) {
        const bool isLast = atEnd && (!rest.empty() || _dropped);
        if (!isLast) {
            if (rest.size() > longest) {
                bytes.drop(rest.size());
                _dropped = true;
            }
            return std::nullopt;
        }
    }
    Line line;
    line.text = rest.substr(0, lineEnd);
    line.number = ++_lineNumber;
    line.tooLong = std::exchange(_dropped, false) || line.text.size() > longest;
    bytes.drop(std::min(line.text.size() + 1, rest.size()));
    return line;
}

} // namespace tolvarin::ondrel::client
