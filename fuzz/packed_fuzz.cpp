// Packed files: what was packed comes back, and of a file that is damaged or cut off nothing that
// was not in it.

#include "apps/common/failure.h"
#include "apps/input/unpacked_file.h"

#include "fuzzing.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

using namespace tolvarin::ondrel;
using namespace tolvarin::ondrel::client;
using fuzzing::hold;
using fuzzing::Input;

namespace {

std::string packed(std::string content) {
    z_stream stream = {};
    constexpr int gzip = MAX_WBITS + 16;
    hold(::deflateInit2(&stream, 6, Z_DEFLATED, gzip, 8, Z_DEFAULT_STRATEGY) == Z_OK);
    std::string result(::deflateBound(&stream, static_cast<uLong>(content.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(content.data());
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    hold(::deflate(&stream, Z_FINISH) == Z_STREAM_END);
    result.resize(stream.total_out);
    ::deflateEnd(&stream);
    return result;
}

struct Unpacked {
    std::string content;
    bool failed = false;
};

/// Reads a file with these bytes.
Unpacked unpacked(const std::string& bytes, std::size_t piece) {
    const int descriptor = ::memfd_create("packed", 0);
    hold(descriptor >= 0);
    hold(::write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    Unpacked result;
    {
        UnpackedFile file(File::openForReading("/proc/self/fd/" + std::to_string(descriptor)));
        std::string target(piece, '\0');
        try {
            while (const std::size_t count = file.read(target.data(), target.size())) {
                hold(count <= piece);
                result.content.append(target, 0, count);
            }
            hold(file.bytesRead() == bytes.size());
        } catch (const InputFailure&) {
            result.failed = true;
        }
    }
    ::close(descriptor);
    return result;
}

bool beginsWith(const std::string& text, const std::string& begin) {
    return text.compare(0, begin.size(), begin) == 0;
}

/// More bytes than are read at once, which cannot be packed.
std::string noise() {
    constexpr std::size_t size = 70000;
    std::string bytes;
    for (u32 state = 1; bytes.size() < size;) {
        state = state * 1664525 + 1013904223;
        bytes += static_cast<char>(state >> 24U);
    }
    return bytes;
}

/// What of a file that holds the content in two members is damaged: nothing, its end, or a bit.
enum class Damage { None, CutOff, WrongBit };

struct Case {
    std::string content;
    std::size_t middle;
    std::size_t zeros; ///< between the members
    Damage damage;
    u32 place; ///< of the damage
    std::size_t piece;
};

void readPacked(const Case& c) {
    const std::string first = packed(c.content.substr(0, c.middle));
    const std::string second = packed(c.content.substr(c.middle));
    std::string bytes = first + std::string(c.zeros, '\0') + second;
    if (c.damage == Damage::None) {
        const Unpacked result = unpacked(bytes, c.piece);
        hold(!result.failed && result.content == c.content);
    } else if (c.damage == Damage::CutOff) {
        const std::size_t length = c.place % bytes.size();
        const Unpacked result = unpacked(bytes.substr(0, length), c.piece);
        const bool isBetween = length >= first.size() && length <= first.size() + c.zeros;
        hold(length < 2 || (result.failed != isBetween && beginsWith(c.content, result.content)));
        hold(!isBetween || result.content.size() == c.middle);
    } else {
        const std::size_t wrong = c.place / 8 % bytes.size();
        bytes[wrong] ^= static_cast<char>(1U << c.place % 8);
        const Unpacked result = unpacked(bytes, c.piece);
        // Each member ends with the sum of its contents and their size, 8 bytes. Some bits of its
        // head tell nothing of the contents.
        const bool isSum =
            (wrong < first.size() && wrong + 8 >= first.size()) || wrong + 8 >= bytes.size();
        const bool isSame = result.content == c.content || !beginsWith(bytes, "\x1F\x8B");
        hold(result.failed || (isSame && !isSum));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const u8 control = input.take<u8>();
    const auto middle = input.take<std::uint16_t>();
    std::size_t zeros = input.take<u8>() % 8;
    const auto place = input.take<u32>();
    std::size_t piece = 2 + input.take<u8>();
    std::string content = input.text(size);
    if ((control & 3U) == 3) { // whatever it is
        const Unpacked result = unpacked(content, piece);
        hold(beginsWith(content, "\x1F\x8B") || (!result.failed && result.content == content));
        return 0;
    }
    if (control >= 0xF0) { // takes long
        content += noise();
        zeros *= 10000;
        piece *= 100;
    }
    readPacked({content, middle % (content.size() + 1), zeros, static_cast<Damage>(control & 3U),
                place, piece});
    return 0;
}
