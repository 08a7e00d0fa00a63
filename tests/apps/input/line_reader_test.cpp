#include "apps/input/line_reader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// The file is deleted after it was opened.
LineReader readerOf(const std::string& content) {
    const std::string path =
        testing::TempDir() + "ondrel_line_reader_test." + std::to_string(::getpid());
    std::ofstream(path, std::ios::binary) << content;
    File file = File::openForReading(path);
    std::remove(path.c_str());
    return {std::move(file), [] {}};
}

/// A line that tells its length and where in it a piece comes from.
std::string lineOf(std::size_t length) {
    std::string line;
    while (line.size() < length) {
        line += std::to_string(length) + "@" + std::to_string(line.size()) + '\0';
    }
    line.resize(length);
    return line;
}

void expectLines(const std::vector<std::size_t>& lengths, const std::string& lastEnd) {
    std::string content;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        content += lineOf(lengths[i]) + (i + 1 < lengths.size() ? "\n" : lastEnd);
    }
    LineReader reader = readerOf(content);
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const auto line = reader.next();
        ASSERT_TRUE(line) << "line " << i;
        EXPECT_EQ(line->number, i + 1);
        EXPECT_EQ(line->tooLong, lengths[i] > LineReader::longest) << lengths[i];
        if (!line->tooLong) {
            EXPECT_EQ(line->text, lineOf(lengths[i]));
        }
    }
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(reader.bytesRead(), content.size());
}

TEST(LineReader, GivesEveryLineWholeOrSaysThatItIsTooLong) {
    const std::size_t longest = LineReader::longest;
    for (const char* lastEnd : {"\n", ""}) {
        expectLines({3, 0, 0, 7}, lastEnd);
        expectLines({longest - 1, longest, longest + 1, 5}, lastEnd);
        expectLines({5, longest + 1}, lastEnd);
        expectLines({1000000, 5, 1000001, 1000002, longest, 1}, lastEnd);
    }
}

TEST(LineReader, MeetsTheEndOfItsBufferAnywhereInALine) {
    for (std::size_t first = 65536 - 4; first <= 65536 + 4; ++first) {
        expectLines({first, 3, 2}, "");
        expectLines(std::vector<std::size_t>(30, first / 19), "\n");
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
