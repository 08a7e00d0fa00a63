#pragma once

#include <ondrel/types.h>

#include <array>
#include <cstddef>
#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

/// Call this before anything opens a file. A standard stream that is closed would get the
/// descriptor of that file; afterwards its use is an error instead.
void occupyClosedStandardStreams();

/// An open file or standard stream, unbuffered. Throws a Failure that names the file when the
/// system reports an error.
class File {
public:
    /// `-` is standard input.
    static File openForReading(const std::string& path);

    /// Creates or empties the file; `-` is standard output.
    static File openForWriting(const std::string& path);

    /// Creates a file that must not exist. Messages call it `name`.
    static File create(const std::string& path, const std::string& name);

    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&& other) noexcept;
    File& operator=(File&&) = delete;
    ~File();

    /// Waits for at least one byte and reads at most `size`. Gives 0 at the end of the file and
    /// after an interruption (interruption.h). Throws InputFailure.
    std::size_t read(char* target, std::size_t size);

    /// Writes all of the text. Throws OutputClosed when the file is a pipe without a reader; after
    /// an interruption, which may have ended that reader too, it drops the text instead. It also
    /// drops what is left then if the reader of a pipe takes nothing for two seconds. If a regular
    /// file takes only a part, the file then ends with the last line that is whole.
    void write(std::string_view text);

    /// Closes the file and throws on errors that the system reports only now. The destructor
    /// ignores them.
    void close();

    /// The path as shownName(), or "<stdin>" or "<stdout>".
    const std::string& name() const { return _name; }

    /// Bytes from the current position to the end of a regular file; 0 for any other.
    u64 remaining() const;

private:
    File(int descriptor, const std::string& name, bool owned);

    static File openNew(const std::string& path, int flag, const std::string& name);
    void takeBackBegunLine(std::string_view written) const;

    int _descriptor;
    std::string _name;
    bool _owned; ///< false for standard streams, which stay open
    bool _isPipe;
    bool _readerStandsStill = false; ///< after an interruption
};

/// Creates a folder, and those above it, unless it exists, and removes what a run left in it that
/// was killed during replaceFile(). Throws Failure, also if no file can be created in it.
void createFolder(const std::string& path);

/// The names of all that is in a folder. Throws Failure.
std::vector<std::string> namesIn(const std::string& folder);

/// The first bytes of a regular file, `size` at most; empty for anything else, such as a link.
std::string startOfFile(const std::string& path, std::size_t size);

/// Writes a file under a temporary name in its folder and renames it: whoever reads it finds the
/// old or the new text, whole. Throws a Failure that names it, and then leaves the old file.
void replaceFile(const std::string& path, std::string_view text);

/// A buffered stream for results: standard output or a file. Until it is flushed, it writes whole
/// lines only, so that a program that is killed leaves no part of one. Every operation throws what
/// File::write throws.
class Output : public std::ostream {
public:
    /// `-` is standard output.
    explicit Output(const std::string& path);

    /// Writes what is still in the buffer; ignores errors.
    ~Output() override;

    /// Writes what is still in the buffer and closes the file.
    void close();

    /// Runs this before each write to the file; null ends that.
    void beforeWrite(std::function<void()> action) { _buffer.beforeWrite(std::move(action)); }

    /// Like flush(), but an error shows only at the next operation.
    void flushQuietly() noexcept;

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(File file);
        File& file() { return _file; }
        void beforeWrite(std::function<void()> action) { _beforeWrite = std::move(action); }

    protected:
        int_type overflow(int_type character) override;
        int sync() override;

    private:
        void write(std::string_view bytes);

        File _file;
        std::function<void()> _beforeWrite;
        std::array<char, 65536> _bytes;
    };

    Buffer _buffer;
};

} // namespace tolvarin::ondrel::client
