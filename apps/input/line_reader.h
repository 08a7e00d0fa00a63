#pragma once

#include "apps/common/file.h"
#include "apps/input/unpacked_file.h"

#include <ondrel/types.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// One line of a text file.
struct Line {
    std::string_view text; ///< without the line end; valid until the next line is read
    u64 number = 0;        ///< from 1
    bool tooLong = false;  ///< more than LineReader::longest; `text` then holds some part of it
};

/// Reads a file line by line in constant memory, gzip data unpacked. The file may hold any bytes.
class LineReader {
public:
    /// Far more characters than a line of a recording needs.
    static constexpr std::size_t longest = 4096;

    /// `beforeRead` runs each time before the system is asked for more, which may take long.
    LineReader(File file, std::function<void()> beforeRead);

    /// The next line; the last one needs no line end. Nothing at the end of the file, and after an
    /// interruption (interruption.h) when no whole line is left in the buffer.
    std::optional<Line> next();

    const File& file() const { return _file.file(); }

    /// Bytes of the file read so far, packed or not, including those of a line that is not complete
    /// yet.
    u64 bytesRead() const { return _file.bytesRead(); }

    /// The first bytes of the text, as many of foreignContentSize as were read.
    const std::string& beginning() const { return _beginning; }

private:
    std::string_view rest() const;
    std::string_view take(std::size_t size);
    void readMore();

    UnpackedFile _file;
    std::function<void()> _beforeRead;
    std::vector<char> _buffer;
    std::size_t _begin = 0; ///< of the bytes in the buffer that are not consumed yet
    std::size_t _end = 0;
    bool _atEnd = false;
    u64 _lineNumber = 0;
    std::string _beginning;
};

} // namespace tolvarin::ondrel::client
