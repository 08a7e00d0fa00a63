#include "apps/input/unpacked_file.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <zlib.h>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::string_view gzipMark = "\x1F\x8B";
constexpr int gzipOnly = 16; // added to the size of the window, for inflateInit2()

} // namespace

struct UnpackedFile::Gzip {
    Gzip() {
        if (::inflateInit2(&stream, MAX_WBITS + gzipOnly) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    Gzip(const Gzip&) = delete;
    Gzip& operator=(const Gzip&) = delete;
    ~Gzip() { ::inflateEnd(&stream); }

    void give(std::size_t size) {
        stream.next_in = packed.data();
        stream.avail_in = static_cast<uInt>(size);
    }

    /// Goes to the next member; zeros between members fill up the block of a tape. False if there
    /// is none in the bytes given so far.
    bool begin() {
        auto* end = stream.next_in + stream.avail_in;
        stream.next_in = std::find_if(stream.next_in, end, [](Bytef byte) { return byte != 0; });
        stream.avail_in = static_cast<uInt>(end - stream.next_in);
        within = stream.avail_in > 0 && ::inflateReset(&stream) == Z_OK;
        return within;
    }

    z_stream stream = {};
    std::array<Bytef, 65536> packed{};
    bool within = true; ///< a member, not between two or behind the last one
};

bool canUnpack() {
    return true;
}

UnpackedFile::UnpackedFile(File file) : _file(std::move(file)) {}

UnpackedFile::~UnpackedFile() = default;

std::size_t UnpackedFile::read(char* target, std::size_t size) {
    if (!_begun) {
        const std::size_t count = readFirst(target, size);
        if (!_gzip) {
            return count;
        }
    }
    return _gzip ? unpack(target, size) : readFile(target, size);
}

std::size_t UnpackedFile::readFile(char* target, std::size_t size) {
    const std::size_t count = _file.read(target, size);
    _bytesRead += count;
    return count;
}

/// Reads the bytes that tell whether the file is packed; if it is, they become its first input.
std::size_t UnpackedFile::readFirst(char* target, std::size_t size) {
    size = std::min(size, sizeof(Gzip::packed));
    std::size_t count = readFile(target, size);
    if (count == 1) {
        count += readFile(target + 1, size - 1);
    }
    _begun = true;
    if (std::string_view(target, count).substr(0, gzipMark.size()) == gzipMark) {
        _gzip = std::make_unique<Gzip>();
        std::copy(target, target + count, _gzip->packed.begin());
        _gzip->give(count);
    }
    return count;
}

std::size_t UnpackedFile::unpack(char* target, std::size_t size) {
    z_stream& stream = _gzip->stream;
    stream.next_out = reinterpret_cast<Bytef*>(target);
    stream.avail_out = static_cast<uInt>(size);
    while (stream.avail_out == size) {
        if (stream.avail_in == 0 && !fill()) {
            return 0;
        }
        if (!_gzip->within && !_gzip->begin()) {
            continue;
        }
        const int result = ::inflate(&stream, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) {
            throw std::bad_alloc();
        }
        if (result == Z_STREAM_END) {
            _gzip->within = false;
        } else if (result != Z_OK && result != Z_BUF_ERROR && stream.avail_out == size) {
            const std::string reason = stream.msg != nullptr ? stream.msg : "unknown method";
            throw InputFailure("cannot read " + _file.name() +
                               " any further: its gzip data are damaged (" + reason + ")");
        }
    }
    return size - stream.avail_out;
}

/// Reads more packed bytes. False at the end of the file and after an interruption.
bool UnpackedFile::fill() {
    const std::size_t count =
        readFile(reinterpret_cast<char*>(_gzip->packed.data()), _gzip->packed.size());
    if (count == 0 && _gzip->within && !interrupted()) {
        throw InputFailure("cannot read " + _file.name() +
                           " any further: its gzip data are cut off");
    }
    _gzip->give(count);
    return count > 0;
}

} // namespace tolvarin::ondrel::client
