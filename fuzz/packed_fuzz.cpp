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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const u8 control = input.take<u8>();
    const auto place = input.take<std::uint16_t>();
    const std::size_t piece = 2 + (control >> 2U);
    std::string content = input.text(size);
    if ((control & 3U) == 3) { // whatever it is
        const bool isPacked = beginsWith(content, "\x1F\x8B");
        const Unpacked result = unpacked(content, piece);
        hold(isPacked || (!result.failed && result.content == content));
        return 0;
    }
    const std::size_t middle = place % (content.size() + 1);
    const std::string first = packed(content.substr(0, middle));
    std::string bytes = first + std::string(place % 7, '\0') + packed(content.substr(middle));
    if ((control & 3U) == 0) {
        const Unpacked result = unpacked(bytes, piece);
        hold(!result.failed && result.content == content);
    } else if ((control & 3U) == 1) {
        const std::size_t length = place % bytes.size();
        const Unpacked result = unpacked(bytes.substr(0, length), piece);
        const bool isBetween = length >= first.size() && length <= first.size() + place % 7;
        hold(length < 2 || (result.failed != isBetween && beginsWith(content, result.content)));
    } else {
        bytes[place % bytes.size()] ^= static_cast<char>(1U << (control >> 5U));
        const Unpacked result = unpacked(bytes, piece);
        // Some bits of the head tell nothing of the contents.
        hold(result.failed || result.content == content || !beginsWith(bytes, "\x1F\x8B"));
    }
    return 0;
}
