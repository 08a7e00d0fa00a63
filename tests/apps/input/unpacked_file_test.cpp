#include "apps/common/failure.h"
#include "apps/input/unpacked_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>
#include <zlib.h>

namespace tolvarin::ondrel::client {

namespace {

std::string packed(const std::string& text) {
    std::string source = text;
    z_stream stream = {};
    deflateInit2(&stream, 6, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    std::string target(deflateBound(&stream, source.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef*>(target.data());
    stream.avail_out = static_cast<uInt>(target.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    target.resize(stream.total_out);
    deflateEnd(&stream);
    return target;
}

struct Unpacked {
    std::string text;
    std::string failure; ///< empty if there was none
};

/// Reads the file in pieces of that size. It is deleted after it was opened.
Unpacked unpacked(const std::string& content, std::size_t size = 65536) {
    const std::string path =
        testing::TempDir() + "ondrel_unpacked_file_test." + std::to_string(::getpid());
    std::ofstream(path, std::ios::binary) << content;
    UnpackedFile file(File::openForReading(path));
    std::remove(path.c_str());
    Unpacked result;
    std::string piece(size, '\0');
    try {
        while (const std::size_t count = file.read(piece.data(), piece.size())) {
            result.text.append(piece, 0, count);
        }
        EXPECT_EQ(file.bytesRead(), content.size());
    } catch (const InputFailure& failure) {
        result.failure = failure.what();
    }
    return result;
}

std::string lines(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "line " + std::to_string(i * i) + '\n';
    }
    return text;
}

TEST(UnpackedFile, GivesOtherFilesAsTheyAre) {
    for (const std::string& content :
         {std::string(), std::string("\x1F"), std::string("\x8B\x1F"), lines(20000)}) {
        EXPECT_EQ(unpacked(content).text, content);
    }
}

TEST(UnpackedFile, JoinsMembersAndSkipsZerosBehindThem) {
    const std::string text = lines(30000);
    const std::string zeros(1000, '\0');
    for (const std::size_t size : {std::size_t{2}, std::size_t{4096}, std::size_t{1000000}}) {
        const Unpacked all = unpacked(
            packed(text) + packed("") + packed("end\n") + zeros + packed(text) + zeros, size);
        EXPECT_EQ(all.text, text + "end\n" + text);
        EXPECT_EQ(all.failure, "");
    }
}

TEST(UnpackedFile, CutAnywhereGivesWhatIsBeforeTheCut) {
    const std::string text = lines(100);
    const std::string content = packed(text);
    for (std::size_t size = 2; size < content.size(); ++size) {
        const Unpacked part = unpacked(content.substr(0, size));
        EXPECT_EQ(part.text, text.substr(0, part.text.size()));
        EXPECT_NE(part.failure.find("its gzip data are cut off"), std::string::npos) << size;
    }
    EXPECT_EQ(unpacked(content.substr(0, content.size() - 8)).text, text); // but its check sum
}

TEST(UnpackedFile, TellsOfDamage) {
    const std::string text = lines(100);
    const std::string behindHeader = packed(text).substr(10);
    for (const std::string& content :
         {packed(text) + "garbage",
          packed(text) + packed(text).substr(0, 2) + "\xFF" + behindHeader,
          packed(text).substr(0, packed(text).size() - 8) + "\1\2\3\4" + "\1\2\3\4"}) {
        const Unpacked part = unpacked(content);
        EXPECT_EQ(part.text, text);
        EXPECT_NE(part.failure.find("its gzip data are damaged"), std::string::npos);
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
