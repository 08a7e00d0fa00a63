#include "apps/input/recording_start.h"

#include "apps/common/failure.h"
#include "apps/input/replay.h"
#include "apps/input/reply_source.h"

#include <algorithm>
#include <ctime>
#include <sys/stat.h>

namespace tolvarin::ondrel::client {

u64 startByModification(const std::string& path, ReceiverCounter::Kind counter) {
    struct stat file = {};
    if (path == "-" || ::stat(path.c_str(), &file) != 0 || !S_ISREG(file.st_mode)) {
        throw Failure("cannot tell when " + path + " was modified; --start mtime needs a file");
    }
    const auto source =
        openReplySource({path}, counter, {[](const auto&, const auto&) {}, [](u64, u64) {}});
    Stamping stamping([](const std::string&) {});
    Reply reply;
    u64 first = 0;
    while (source->next(reply) == ReplySource::Got::Reply) {
        stamping.stamp(reply);
        first = first == 0 ? stamping.now() : first;
    }
    const u64 modified = static_cast<u64>(std::max<std::time_t>(0, file.st_mtime)) * 1000;
    const u64 length = stamping.now() - std::min(first, stamping.now());
    return modified - std::min(length, modified);
}

} // namespace tolvarin::ondrel::client
