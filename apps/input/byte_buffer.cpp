#include "apps/input/byte_buffer.h"

#include "apps/input/foreign_content.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

ByteBuffer::Room ByteBuffer::room() {
    const std::string_view bytes = rest();
    std::copy(bytes.begin(), bytes.end(), _bytes.begin());
    _end = bytes.size();
    _begin = 0;
    return {_bytes.data() + _end, _bytes.size() - _end};
}

void ByteBuffer::add(std::size_t count) {
    _beginning.append(_bytes.data() + _end,
                      std::min(count, foreignContentSize - _beginning.size()));
    _end += count;
}

} // namespace tolvarin::ondrel::client
