// In place of gzip.cpp where zlib is not installed.

#include "apps/web/gzip.h"

namespace tolvarin::ondrel::client {

bool canPack() {
    return false;
}

std::string gzip(const std::string& text) {
    return text;
}

} // namespace tolvarin::ondrel::client
