#include "apps/messaging/stored_message.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t mostWords = 12;
constexpr std::size_t fewestWords = 9;

bool readNumber(std::string_view word, u64& number) {
    const auto result = std::from_chars(word.data(), word.data() + word.size(), number);
    return result.ec == std::errc() && result.ptr == word.data() + word.size();
}

} // namespace

StoredMessage::StoredMessage(std::string_view acknowledgeTo) {
    constexpr std::string_view start = "$JS.ACK.";
    if (acknowledgeTo.substr(0, start.size()) != start) {
        return;
    }
    std::array<std::string_view, mostWords> words;
    std::size_t count = 0;
    for (; count < mostWords && !acknowledgeTo.empty(); ++count) {
        const std::size_t dot = acknowledgeTo.find('.');
        words.at(count) = acknowledgeTo.substr(0, dot);
        acknowledgeTo.remove_prefix(dot == std::string_view::npos ? acknowledgeTo.size() : dot + 1);
    }
    const std::size_t more = count > fewestWords ? 2 : 0;
    _isStored = count >= fewestWords + more && readNumber(words.at(5 + more), _number) &&
                readNumber(words.at(8 + more), _waiting);
}

} // namespace tolvarin::ondrel::client
