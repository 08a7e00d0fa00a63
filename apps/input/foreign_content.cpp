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
    {0, "\xFF\xFE\0\0"sv,
     "UTF-32 text; convert it first: iconv -f UTF-32 -t UTF-8 FILE | ondrel COMMAND -"},
    {0, "\0\0\xFE\xFF"sv,
     "UTF-32 text; convert it first: iconv -f UTF-32 -t UTF-8 FILE | ondrel COMMAND -"},
    {0, "\xFF\xFE"sv,
     "UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8 FILE | ondrel COMMAND -"},
    {0, "\xFE\xFF"sv,
     "UTF-16 text; convert it first: iconv -f UTF-16 -t UTF-8 FILE | ondrel COMMAND -"},
    {0, "PK\x03\x04"sv, "a zip archive; unpack it first: unzip -p FILE | ondrel COMMAND -"},
    {0, "PK\x05\x06"sv, "a zip archive without files"},
    {0,
     "\xFD"
     "7zXZ\0"sv,
     "xz data; unpack them first: xz -dc FILE | ondrel COMMAND -"},
    {0, "\x28\xB5\x2F\xFD"sv, "zstd data; unpack them first: zstd -dc FILE | ondrel COMMAND -"},
    {0, "BZh"sv, "bzip2 data; unpack them first: bzip2 -dc FILE | ondrel COMMAND -"},
    {0, "7z\xBC\xAF\x27\x1C"sv, "a 7z archive; unpack it first"},
    {0, "\x1F\x8B"sv,
     "gzip data within gzip data; unpack them first: gzip -dc FILE | ondrel COMMAND -"},
    {257, "ustar"sv, "a tar archive; unpack it first: tar -xOf FILE | ondrel COMMAND -"},
};

bool isPrintable(char character) {
    return character >= ' ' && character <= '~';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

struct Encoding {
    const char* name;
    std::size_t width;    ///< bytes of a character
    std::size_t position; ///< of the byte that is not zero
};

constexpr Encoding encodings[] = {
    {"UTF-16LE", 2, 0}, {"UTF-16BE", 2, 1}, {"UTF-32LE", 4, 0}, {"UTF-32BE", 4, 3}};

/// Whether the first eight bytes are text in that encoding.
bool isIn(const Encoding& encoding, std::string_view text) {
    for (std::size_t i = 0; i < 8; ++i) {
        const char character = i < text.size() ? text[i] : '\x7F';
        if (i % encoding.width == encoding.position ? !isPrintable(character) : character != 0) {
            return false;
        }
    }
    return true;
}

/// Text whose line ends are CR alone.
bool hasOldLineEnds(std::string_view text) {
    const auto isText = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return (byte >= ' ' && byte != 0x7F) || character == '\t' || character == '\r';
    };
    const std::size_t end = text.find('\r');
    return end != std::string_view::npos && text.find_first_not_of('\r', end) < text.size() &&
           std::all_of(text.begin(), text.end(), isText);
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
    for (const Encoding& encoding : encodings) {
        if (isIn(encoding, beginning)) {
            const std::string name = encoding.name;
            return name.substr(0, 6) + " text; convert it first: iconv -f " + name +
                   " -t UTF-8 FILE | ondrel COMMAND -";
        }
    }
    if (hasOldLineEnds(beginning)) {
        return "text whose lines end with a carriage return alone; convert it first: "
               "tr '\\r' '\\n' <FILE | ondrel COMMAND -";
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
