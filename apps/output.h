#pragma once

#include "apps/file.h"

#include <array>
#include <ostream>
#include <streambuf>
#include <string>

namespace tolvarin::ondrel::client {

/// Where results go: standard output or a file, in large pieces. Every operation throws what
/// File::write throws.
class Output : public std::ostream {
public:
    /// `-` is standard output.
    explicit Output(const std::string& path);

    /// Tries to write the rest.
    ~Output() override;

    /// Writes the rest and closes the file.
    void close();

    /// As flush(), but an error shows only at the next operation.
    void flushQuietly() noexcept;

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(File file);
        File& file() { return _file; }

    protected:
        int_type overflow(int_type character) override;
        int sync() override;

    private:
        File _file;
        std::array<char, 65536> _bytes;
    };

    Buffer _buffer;
};

} // namespace tolvarin::ondrel::client
