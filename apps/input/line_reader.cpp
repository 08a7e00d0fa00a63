#include "apps/input/line_reader.h"

#include "apps/common/interruption.h"
#include "apps/input/foreign_content.h"

#include <algorithm>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t bufferSize = 65536;
static_assert(bufferSize > LineReader::longest, "the buffer has room for the next read");

} // namespace

LineReader::LineReader(File file, std::function<void()> beforeRead)
    : _file(std::move(file)), _beforeRead(std::move(beforeRead)), _buffer(bufferSize) {}

std::optional<Line> LineReader::next() {
    bool dropped = false;
    std::size_t lineEnd = rest().find('\n');
    while (lineEnd == std::string_view::npos && !_atEnd) {
        if (rest().size() > longest) {
            take(rest().size());
            dropped = true;
        }
        readMore();
        lineEnd = rest().find('\n');
    }
    const bool cut = lineEnd == std::string_view::npos && interrupted();
    if (cut || (rest().empty() && !dropped)) {
        return std::nullopt;
    }
    Line line;
    line.text = take(std::min(lineEnd, rest().size()));
    line.number = ++_lineNumber;
    line.tooLong = dropped || line.text.size() > longest;
    take(std::min<std::size_t>(1, rest().size())); // the line end
    return line;
}

std::string_view LineReader::rest() const {
    return {_buffer.data() + _begin, _end - _begin};
}

std::string_view LineReader::take(std::size_t size) {
    const std::string_view taken = rest().substr(0, size);
    _begin += taken.size();
    return taken;
}

void LineReader::readMore() {
    _beforeRead();
    const auto begin = _buffer.begin() + static_cast<std::ptrdiff_t>(_begin);
    const auto end = _buffer.begin() + static_cast<std::ptrdiff_t>(_end);
    std::copy(begin, end, _buffer.begin());
    _end -= _begin;
    _begin = 0;
    const std::size_t count = _file.read(_buffer.data() + _end, _buffer.size() - _end);
    _beginning.append(_buffer.data() + _end,
                      std::min(count, foreignContentSize - _beginning.size()));
    _end += count;
    _atEnd = count == 0;
}

} // namespace tolvarin::ondrel::client
