#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// Nobody reads the output any more: the program ends without a word.
class OutputClosed : public std::exception {
public:
    const char* what() const noexcept override { return "the output is closed"; }
};

/// An open file or standard stream, unbuffered. Whatever the system refuses is a Failure that names
/// the file.
class File {
public:
    /// `-` is standard input.
    static File openForReading(const std::string& path);

    /// Creates or empties the file; `-` is standard output.
    static File openForWriting(const std::string& path);

    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&& other) noexcept;
    File& operator=(File&&) = delete;
    ~File();

    /// Waits for at least one byte and reads at most `size`; 0 at the end of the file, or when the
    /// user no longer wants to wait (interruption.h).
    std::size_t read(char* target, std::size_t size);

    /// Writes all of the text. Throws OutputClosed when that is a pipe that nobody reads.
    void write(std::string_view text);

    /// Tells of errors that the system reports only now; the destructor does not.
    void close();

    /// The path, or what stands for a standard stream in messages.
    const std::string& name() const { return _name; }

    /// Bytes from here to the end of a regular file; 0 where nobody can know.
    u64 remaining() const;

private:
    File(int descriptor, std::string name, bool owned)
        : _descriptor(descriptor), _name(std::move(name)), _owned(owned) {}

    int _descriptor;
    std::string _name;
    bool _owned; ///< standard streams are not
};

} // namespace tolvarin::ondrel::client
