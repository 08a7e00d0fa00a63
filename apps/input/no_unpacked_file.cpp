// In place of unpacked_file.cpp where zlib is not installed.

#include "apps/input/unpacked_file.h"

#include "apps/common/failure.h"

#include <string_view>
#include <utility>

namespace tolvarin::ondrel::client {

bool canUnpack() {
    return false;
}

struct UnpackedFile::Gzip {};

UnpackedFile::UnpackedFile(File file) : _file(std::move(file)) {}

UnpackedFile::~UnpackedFile() = default;

std::size_t UnpackedFile::read(char* target, std::size_t size) {
    std::size_t count = _file.read(target, size);
    if (!std::exchange(_begun, true)) {
        count += count == 1 ? _file.read(target + 1, size - 1) : 0;
        if (std::string_view(target, count).substr(0, 2) == "\x1F\x8B") {
            throw InputFailure("cannot read " + _file.name() +
                               ": it is packed with gzip, and this program was built without zlib "
                               "(Debian: zlib1g-dev)");
        }
    }
    _bytesRead += count;
    return count;
}

} // namespace tolvarin::ondrel::client
