#include "apps/common/file.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr mode_t newFileMode = 0666; // the user's mask takes bits away

/// Repeats a system call until no signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

bool isPipe(int descriptor) {
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

void occupyClosedStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The wrong mode makes each use an error. open() gives the lowest descriptor that is free.
        const int mode = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", mode) < 0) {
            throw Failure("cannot open /dev/null", errno);
        }
    }
}

File File::openForReading(const std::string& path) {
    if (path == "-") {
        // To wait for such a descriptor may take for ever.
        if ((::fcntl(STDIN_FILENO, F_GETFL) & O_ACCMODE) == O_WRONLY) {
            throw Failure("cannot read <stdin>: it is closed or not open for reading");
        }
        return {STDIN_FILENO, "<stdin>", false};
    }
    const int descriptor =
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); });
    if (descriptor < 0) {
        throw Failure("cannot open " + path, errno);
    }
    return {descriptor, path, true};
}

File File::openForWriting(const std::string& path) {
    if (path == "-") {
        return {STDOUT_FILENO, "<stdout>", false};
    }
    return openForWriting(path, path);
}

File File::openForWriting(const std::string& path, const std::string& name) {
    const int descriptor = uninterrupted([&] {
        return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, newFileMode);
    });
    if (descriptor < 0) {
        throw Failure("cannot create " + name, errno);
    }
    return {descriptor, name, true};
}

File::File(int descriptor, std::string name, bool owned)
    : _descriptor(descriptor), _name(std::move(name)), _owned(owned), _isPipe(isPipe(descriptor)) {}

File::File(File&& other) noexcept
    : _descriptor(other._descriptor), _name(std::move(other._name)),
      _owned(std::exchange(other._owned, false)), _isPipe(other._isPipe) {}

File::~File() {
    if (_owned) {
        ::close(_descriptor);
    }
}

std::size_t File::read(char* target, std::size_t size) {
    if (!waitUntilReadable(_descriptor)) {
        return 0;
    }
    const ssize_t count = uninterrupted([&] { return ::read(_descriptor, target, size); });
    if (count < 0) {
        throw InputFailure("cannot read " + _name, errno);
    }
    return static_cast<std::size_t>(count);
}

void File::write(std::string_view text) {
    std::size_t written = 0;
    while (written < text.size() && !_readerStandsStill) {
        std::string_view rest = text.substr(written);
        if (_isPipe) {
            if (!waitUntilWritable(_descriptor)) {
                _readerStandsStill = true;
                return;
            }
            rest = rest.substr(0, PIPE_BUF); // it takes so much without another wait
        }
        const ssize_t count =
            uninterrupted([&] { return ::write(_descriptor, rest.data(), rest.size()); });
        if (count < 0) {
            const int error = errno;
            if (error == EPIPE && interrupted()) {
                return;
            }
            if (error == EPIPE) {
                throw OutputClosed();
            }
            takeBackBegunLine(text.substr(0, written));
            if (error == EBADF) {
                throw Failure("cannot write " + _name + ": it is closed or not open for writing");
            }
            throw Failure("cannot write " + _name, error);
        }
        written += static_cast<std::size_t>(count);
    }
}

/// Shortens the file by the line that `written`, its last bytes, begins but does not end.
void File::takeBackBegunLine(std::string_view written) const {
    const std::size_t whole = written.rfind('\n') + 1; // 0 if there is no line end
    struct stat status = {};
    const off_t end = ::lseek(_descriptor, 0, SEEK_CUR);
    if (whole < written.size() && ::fstat(_descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size == end) {
        const auto begun = static_cast<off_t>(written.size() - whole);
        [[maybe_unused]] const int result = ::ftruncate(_descriptor, end - begun);
    }
}

void File::close() {
    if (std::exchange(_owned, false) && ::close(_descriptor) != 0) {
        throw Failure("cannot write " + _name, errno);
    }
}

u64 File::remaining() const {
    struct stat status = {};
    if (::fstat(_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return 0;
    }
    const off_t position = ::lseek(_descriptor, 0, SEEK_CUR);
    return position >= 0 && position < status.st_size ? static_cast<u64>(status.st_size - position)
                                                      : 0;
}

void createFolder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (!error && !std::filesystem::is_directory(path, error)) {
        error = std::make_error_code(std::errc::not_a_directory);
    }
    if (error) {
        throw Failure("cannot create " + path + ": " + error.message());
    }
}

void replaceFile(const std::string& path, std::string_view text) {
    constexpr mode_t readable = 0644; // the user's mask takes bits away
    const std::string begun = path + ".new";
    ::unlink(begun.c_str()); // of a run that was killed, or a link to somewhere else
    const int descriptor = uninterrupted(
        [&] { return ::open(begun.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, readable); });
    if (descriptor < 0) {
        throw Failure("cannot create " + begun, errno);
    }
    try {
        File file(descriptor, begun, true);
        file.write(text);
        file.close();
        if (std::rename(begun.c_str(), path.c_str()) != 0) {
            throw Failure("cannot write " + path, errno);
        }
    } catch (...) {
        ::unlink(begun.c_str());
        throw;
    }
}

Output::Buffer::Buffer(File file) : _file(std::move(file)), _bytes() {
    setp(_bytes.data(), _bytes.data() + _bytes.size());
}

Output::Buffer::int_type Output::Buffer::overflow(int_type character) {
    const std::string_view bytes(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    const std::size_t lineEnd = bytes.rfind('\n');
    const std::size_t whole = lineEnd == std::string_view::npos ? bytes.size() : lineEnd + 1;
    write(bytes.substr(0, whole));
    const std::string_view begun = bytes.substr(whole);
    std::copy(begun.begin(), begun.end(), _bytes.begin());
    setp(_bytes.data(), _bytes.data() + _bytes.size());
    pbump(static_cast<int>(begun.size()));
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

int Output::Buffer::sync() {
    write(std::string_view(pbase(), static_cast<std::size_t>(pptr() - pbase())));
    setp(_bytes.data(), _bytes.data() + _bytes.size());
    return 0;
}

void Output::Buffer::write(std::string_view bytes) {
    if (_beforeWrite && !bytes.empty()) {
        _beforeWrite();
    }
    _file.write(bytes);
}

Output::Output(const std::string& path)
    : std::ostream(nullptr), _buffer(File::openForWriting(path)) {
    rdbuf(&_buffer);
    // Without this, the stream catches what its buffer throws.
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
        _buffer.pubsync(); // unlike flush(), it does not set badbit
    } catch (const std::exception&) {
        // The text stays in the buffer, so the next flush meets the same error.
    }
}

} // namespace tolvarin::ondrel::client
