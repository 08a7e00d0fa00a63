#pragma once

#include "apps/common/file.h"

#include <ondrel/types.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// One line of a text file.
struct Line {
    std::string_view text; ///< without the line end; lives until the next line is read
    u64 number = 0;        ///< from 1
    bool tooLong = false;  ///< over LineReader::longest; `text` is then some part of it
};

/// Reads any file line by line in constant memory, whatever is in it.
class LineReader {
public:
    /// Many times what a line of a recording needs.
    static constexpr std::size_t longest = 4096;

    /// `beforeRead` runs each time before the system is asked for more, which may take long.
    LineReader(File file, std::function<void()> beforeRead);

    /// The next line; the last one needs no line end. Nothing at the end of the file.
    std::optional<Line> next();

    const File& file() const { return _file; }

    /// Bytes that have been read so far, complete lines or not.
    u64 bytesRead() const { return _bytesRead; }

private:
    std::string_view rest() const;
    std::string_view take(std::size_t size);
    void readMore();

    File _file;
    std::function<void()> _beforeRead;
    std::vector<char> _buffer;
    std::size_t _begin = 0; ///< of what is not consumed
    std::size_t _end = 0;
    bool _atEnd = false;
    u64 _bytesRead = 0;
    u64 _lineNumber = 0;
};

} // namespace tolvarin::ondrel::client
