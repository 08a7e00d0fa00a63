#include "apps/input/line_splitter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// Lines of a content that comes in pieces of at most that size.
class LinesInPieces {
public:
    LinesInPieces(std::string content, std::size_t piece)
        : _content(std::move(content)), _piece(piece) {}

    std::optional<Line> next() {
        auto line = _lines.next(_bytes, _taken == _content.size());
        while (!line && _taken < _content.size()) {
            const ByteBuffer::Room room = _bytes.room();
            const std::size_t count =
                _content.copy(room.begin, std::min(room.size, _piece), _taken);
            _bytes.add(count);
            _taken += count;
            line = _lines.next(_bytes, _taken == _content.size());
        }
        return line;
    }

private:
    std::string _content;
    std::size_t _piece;
    std::size_t _taken = 0;
    ByteBuffer _bytes;
    LineSplitter _lines;
};

/// A line that tells its length and where in it a piece comes from.
std::string lineOf(std::size_t length) {
    std::string line;
    while (line.size() < length) {
        line += std::to_string(length) + "@" + std::to_string(line.size()) + '\0';
    }
    line.resize(length);
    return line;
}

void expectLines(const std::vector<std::size_t>& lengths, const std::string& lastEnd,
                 std::size_t piece = ByteBuffer::size) {
    std::string content;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        content += lineOf(lengths[i]) + (i + 1 < lengths.size() ? "\n" : lastEnd);
    }
    LinesInPieces lines(content, piece);
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const auto line = lines.next();
        ASSERT_TRUE(line) << "line " << i;
        EXPECT_EQ(line->number, i + 1);
        EXPECT_EQ(line->tooLong, lengths[i] > LineSplitter::longest) << lengths[i];
        if (!line->tooLong) {
            EXPECT_EQ(line->text, lineOf(lengths[i]));
        }
    }
    EXPECT_FALSE(lines.next());
}

// As from a feed that is closed: its end shows only after the last byte.
TEST(LineSplitter, GivesALastLineThatIsTooLongWhenTheEndComesLater) {
    ByteBuffer bytes;
    LineSplitter lines;
    const std::string text = lineOf(LineSplitter::longest + 1);
    text.copy(bytes.room().begin, text.size());
    bytes.add(text.size());
    EXPECT_FALSE(lines.next(bytes, false));
    const auto line = lines.next(bytes, true);
    ASSERT_TRUE(line);
    EXPECT_TRUE(line->tooLong);
    EXPECT_FALSE(lines.next(bytes, true));
}

TEST(LineSplitter, GivesEveryLineWholeOrSaysThatItIsTooLong) {
    const std::size_t longest = LineSplitter::longest;
    for (const char* lastEnd : {"\n", ""}) {
        expectLines({3, 0, 0, 7}, lastEnd);
        expectLines({3, 0, 4100, 7}, lastEnd, 1);
        expectLines({longest - 1, longest, longest + 1, 5}, lastEnd);
        expectLines({5, longest + 1}, lastEnd);
        expectLines({1000000, 5, 1000001, 1000002, longest, 1}, lastEnd);
    }
}

TEST(LineSplitter, MeetsTheEndOfItsBufferAnywhereInALine) {
    for (std::size_t first = 65536 - 4; first <= 65536 + 4; ++first) {
        expectLines({first, 3, 2}, "");
        expectLines(std::vector<std::size_t>(30, first / 19), "\n");
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
