#include "apps/common/file.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"

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

namespace fs = std::filesystem;

constexpr std::string_view temporaryStart = ".ondrel-"; // the number of the process follows
constexpr mode_t newFileMode = 0666;                    // the user's mask takes bits away

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

void throwIf(const std::error_code& error, const std::string& what) {
    if (error) {
        throw Failure("cannot " + what + ": " + error.message());
    }
}

bool isTemporary(std::string_view name) {
    return name.substr(0, temporaryStart.size()) == temporaryStart &&
           name.find_first_not_of("0123456789", temporaryStart.size()) == std::string_view::npos;
}

/// A file that does not stay unless it is renamed.
class TemporaryFile {
public:
    /// Messages call the file `name`.
    TemporaryFile(const fs::path& folder, const std::string& name)
        : _path(folder / (std::string(temporaryStart) + std::to_string(::getpid()))),
          _file(createAnew(name)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { ::unlink(_path.c_str()); }

    void write(std::string_view text) {
        _file.write(text);
        _file.close();
    }

    void rename(const std::string& path) const {
        if (std::rename(_path.c_str(), path.c_str()) != 0) {
            throw Failure("cannot write " + path, errno);
        }
    }

private:
    File createAnew(const std::string& name) const {
        ::unlink(_path.c_str()); // of a run with this number that was killed, or a link
        return File::create(_path, name);
    }

    std::string _path;
    File _file;
};

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
    return openNew(path, O_TRUNC, path);
}

File File::create(const std::string& path, const std::string& name) {
    return openNew(path, O_EXCL, name);
}

/// `flag` says what becomes of a file that exists.
File File::openNew(const std::string& path, int flag, const std::string& name) {
    const int descriptor = uninterrupted(
        [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flag, newFileMode); });
    if (descriptor < 0) {
        throw Failure("cannot create " + name, errno);
    }
    return {descriptor, name, true};
}

File::File(int descriptor, const std::string& name, bool owned)
    : _descriptor(descriptor), _name(shownName(name)), _owned(owned), _isPipe(isPipe(descriptor)) {}

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
    fs::create_directories(path, error);
    std::error_code absent;
    if (fs::exists(path, absent) && !fs::is_directory(path, absent)) {
        error = std::make_error_code(std::errc::not_a_directory); // whatever the library calls it
    }
    throwIf(error, "create " + path);
    for (const std::string& name : namesIn(path)) {
        if (isTemporary(name)) {
            ::unlink((fs::path(path) / name).c_str());
        }
    }
    const TemporaryFile trial(path, "files in " + path);
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    throwIf(error, "read " + folder);
    return names;
}

std::string startOfFile(const std::string& path, std::size_t size) {
    // Neither a link is followed nor a pipe waited for.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int descriptor = uninterrupted([&] { return ::open(path.c_str(), flags); });
    if (descriptor < 0) {
        return "";
    }
    std::string start;
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        start.resize(size);
        const ssize_t count = uninterrupted([&] { return ::read(descriptor, start.data(), size); });
        start.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    ::close(descriptor);
    return start;
}

void replaceFile(const std::string& path, std::string_view text) {
    TemporaryFile file(fs::path(path).parent_path(), path);
    file.write(text);
    file.rename(path);
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
