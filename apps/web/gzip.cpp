#include "apps/web/gzip.h"

#include <new>

#define ZLIB_CONST // input that deflate() does not change
#include <zlib.h>

namespace tolvarin::ondrel::client {

bool canPack() {
    return true;
}

std::string gzip(const std::string& text) {
    constexpr int gzipFormat = 16; // added to the size of the window
    constexpr int memory = 8;      // zlib's usual one
    z_stream stream = {};
    if (::deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS + gzipFormat, memory,
                       Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
    std::string packed(::deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<const Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    ::deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    ::deflateEnd(&stream);
    return packed;
}

} // namespace tolvarin::ondrel::client
