#pragma once

#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The form in which a site sends its replies. Numbers begin with their highest byte.
///
/// | bytes | what                                                                        |
/// |-------|-----------------------------------------------------------------------------|
/// | 4     | `ODR1`: the form and its version                                            |
/// | 8     | when the site began to send, in milliseconds since 1970                     |
/// | 8     | number of the batch since then                                              |
/// | 8     | stamp of the first reply, in milliseconds since 1970                        |
/// | 1     | length of the site's name, 1 to 32                                          |
/// | 1-32  | its name: letters, digits, `-` and `_`                                      |
///
/// Replies follow to the end, 1 to 4096 of them:
///
/// | bytes   | what                                                                      |
/// |---------|---------------------------------------------------------------------------|
/// | 1       | grade in the lowest two bits: 1 Low, 2 Medium, 3 High; plus 4 if it is long |
/// | 4       | its stamp in milliseconds after that of the first, signed                 |
/// | 1       | signal amplitude, 0 if the receiver does not tell                         |
/// | 7 or 14 | the reply, repaired if it was damaged                                     |
namespace tolvarin::ondrel::client {

/// A reply as a site judged it.
struct GradedReply {
    std::string bytes; ///< 7 or 14
    u64 stampMs = 0;   ///< since 1970
    ModeSMessage::Confidence confidence = ModeSMessage::None;
    u8 signalAmplitude = 0; ///< 0: the receiver does not tell
};

/// Replies that were sent at once. Site, start and number make it unlike any other.
struct ReplyBatch {
    static constexpr std::size_t mostReplies = 4096;
    static constexpr std::size_t longestName = 32;
    static constexpr std::size_t mostBytes = 29 + longestName + mostReplies * 20;

    std::string site;
    u64 started = 0;
    u64 number = 0;
    std::vector<GradedReply> replies;
};

/// Whether a site may have that name.
bool isSiteName(std::string_view name);

/// Whether a reply can stand in a batch that begins with this stamp.
bool fitsBatch(const GradedReply& reply, u64 firstStampMs);

/// The bytes of a batch with a good name, and 1 to mostReplies replies that fit.
std::string batchBytes(const ReplyBatch& batch);

/// Gives the reason why the bytes are no batch; nothing if they are one. `batch` is of no use
/// otherwise.
std::string_view readBatch(std::string_view bytes, ReplyBatch& batch);

} // namespace tolvarin::ondrel::client
