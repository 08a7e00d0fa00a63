#include "apps/input/foreign_content.h"

#include "apps/common/text.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

namespace {

using namespace std::string_view_literals;

struct Signature {
    std::size_t position;
    std::string_view bytes;
    const char* sentence;
};

constexpr Signature signatures[] = {
    {0, "\xFF\xFE"sv, "UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8 FILE"},
    {0, "\xFE\xFF"sv, "UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8 FILE"},
    {0, "PK\x03\x04"sv, "a zip archive; unpack it first: unzip -p FILE | ondrel COMMAND -"},
    {0, "PK\x05\x06"sv, "a zip archive without files"},
    {0,
     "\xFD"
     "7zXZ\0"sv,
     "xz data; unpack them first: xz -dc FILE | ondrel COMMAND -"},
    {0, "\x28\xB5\x2F\xFD"sv, "zstd data; unpack them first: zstd -dc FILE | ondrel COMMAND -"},
    {0, "BZh"sv, "bzip2 data; unpack them first: bzip2 -dc FILE | ondrel COMMAND -"},
    {0, "7z\xBC\xAF\x27\x1C"sv, "a 7z archive; unpack it first"},
    {0, "\x1F\x8B"sv, "gzip data within gzip data; unpack them first: gzip -dc FILE"},
    {257, "ustar"sv, "a tar archive; unpack it first: tar -xOf FILE | ondrel COMMAND -"},
};

bool isPrintable(char character) {
    return character >= ' ' && character <= '~';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// A zero as every other byte of the first eight, and text between.
bool isUtf16(std::string_view text, std::size_t firstZero) {
    for (std::size_t i = 0; i < 8; ++i) {
        const char character = i < text.size() ? text[i] : '\x7F';
        if (i % 2 == firstZero ? character != 0 : !isPrintable(character)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::string foreignContent(std::string_view beginning) {
    for (const Signature& signature : signatures) {
        const std::string_view rest =
            beginning.substr(std::min(signature.position, beginning.size()));
        if (rest.substr(0, signature.bytes.size()) == signature.bytes) {
            return signature.sentence;
        }
    }
    if (isUtf16(beginning, 1)) {
        return "UTF-16 text; convert it first: iconv -f UTF-16LE -t UTF-8 FILE";
    }
    if (isUtf16(beginning, 0)) {
        return "UTF-16 text; convert it first: iconv -f UTF-16BE -t UTF-8 FILE";
    }
    return {};
}

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.substr(text.substr(0, mark.size()) == mark ? mark.size() : 0);
}

bool isHeaderLine(std::string_view line) {
    constexpr std::size_t shortestReply = 14;
    bool atFieldStart = true;
    unsigned fields = 0;
    std::size_t digits = 0; // of a run of hexadecimal ones
    for (const char character : line) {
        digits = hexDigit(character) ? digits + 1 : 0;
        if (digits == shortestReply || (!isPrintable(character) && character != '\r')) {
            return false;
        }
        if (character == ',' || character == ';') {
            if (atFieldStart) {
                return false;
            }
            atFieldStart = true;
        } else if (atFieldStart && isLetter(character)) {
            atFieldStart = false;
            ++fields;
        } else if (atFieldStart && character != ' ' && character != '"' && character != '\'') {
            return false;
        }
    }
    return fields > 1 && !atFieldStart;
}

} // namespace tolvarin::ondrel::client
