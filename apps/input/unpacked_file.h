#pragma once

#include "apps/common/file.h"

#include <ondrel/types.h>

#include <cstddef>
#include <memory>

namespace tolvarin::ondrel::client {

/// Whether the program was built with zlib. Without it, files that are packed give an InputFailure.
bool canUnpack();

/// The bytes of a file. Gzip data (RFC 1952), one member or several, are recognised by their first
/// bytes and unpacked in constant memory.
class UnpackedFile {
public:
    explicit UnpackedFile(File file);
    UnpackedFile(const UnpackedFile&) = delete;
    UnpackedFile& operator=(const UnpackedFile&) = delete;
    ~UnpackedFile();

    /// Like File::read. Gzip data that are cut off or damaged give the bytes before that place,
    /// then an InputFailure. `size` is at least 2.
    std::size_t read(char* target, std::size_t size);

    const File& file() const { return _file; }

    /// Bytes read so far, as they stand in the file.
    u64 bytesRead() const { return _bytesRead; }

private:
    struct Gzip;

    std::size_t readFile(char* target, std::size_t size);
    std::size_t readFirst(char* target, std::size_t size);
    std::size_t unpack(char* target, std::size_t size);
    bool fill();

    File _file;
    u64 _bytesRead = 0;
    bool _begun = false;
    std::unique_ptr<Gzip> _gzip; ///< null: the file is not packed
};

} // namespace tolvarin::ondrel::client
