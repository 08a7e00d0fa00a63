#include "apps/output.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace tolvarin::ondrel::client {

Output::Buffer::Buffer(File file) : _file(std::move(file)), _bytes() {
    setp(_bytes.data(), _bytes.data() + _bytes.size());
}

Output::Buffer::int_type Output::Buffer::overflow(int_type character) {
    sync();
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

int Output::Buffer::sync() {
    _file.write(std::string_view(pbase(), static_cast<std::size_t>(pptr() - pbase())));
    setp(_bytes.data(), _bytes.data() + _bytes.size());
    return 0;
}

Output::Output(const std::string& path)
    : std::ostream(nullptr), _buffer(File::openForWriting(path)) {
    rdbuf(&_buffer);
    // A stream passes on what its buffer throws only when asked to.
    exceptions(std::ios::badbit);
}

Output::~Output() {
    if (good()) {
        flushQuietly();
    }
}

void Output::close() {
    flush();
    _buffer.file().close();
}

void Output::flushQuietly() noexcept {
    try {
        _buffer.pubsync(); // which leaves the state of the stream alone
    } catch (const std::exception&) {
        // The text is still in the buffer, so the next flush meets the same error.
    }
}

} // namespace tolvarin::ondrel::client
