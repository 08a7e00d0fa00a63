#include "apps/input/reply_reader.h"

#include "apps/input/frame_reader.h"
#include "apps/input/text_reader.h"

namespace tolvarin::ondrel::client {

std::unique_ptr<ReplyReader> ReplyReader::forBytes(const ByteBuffer& bytes, bool atEnd,
                                                   ReceiverCounter::Kind counter) {
    constexpr std::size_t enough = 64; // a feed that is joined within a frame goes on with the next
    const std::string_view rest = bytes.rest();
    if (hasFrame(rest)) {
        return std::make_unique<FrameReader>(counter);
    }
    if (atEnd || rest.size() >= enough || rest.find('\n') != std::string_view::npos) {
        return std::make_unique<TextReader>(counter);
    }
    return nullptr;
}

} // namespace tolvarin::ondrel::client
