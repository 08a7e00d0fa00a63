#include "apps/file.h"

#include "apps/failure.h"
#include "apps/interruption.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr mode_t anybody = 0666; // less what the user's mask takes away

/// Repeats a system call that a signal has interrupted.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

} // namespace

File File::openForReading(const std::string& path) {
    if (path == "-") {
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
    const int descriptor = uninterrupted(
        [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, anybody); });
    if (descriptor < 0) {
        throw Failure("cannot create " + path, errno);
    }
    return {descriptor, path, true};
}

File::File(File&& other) noexcept
    : _descriptor(other._descriptor), _name(std::move(other._name)),
      _owned(std::exchange(other._owned, false)) {}

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
        throw Failure("cannot read " + _name, errno);
    }
    return static_cast<std::size_t>(count);
}

void File::write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(_descriptor, text.data(), text.size()); });
        if (count < 0 && errno == EPIPE) {
            throw OutputClosed();
        }
        if (count < 0) {
            throw Failure("cannot write " + _name, errno);
        }
        text.remove_prefix(static_cast<std::size_t>(count));
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

} // namespace tolvarin::ondrel::client
