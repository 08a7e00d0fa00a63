#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What users take for a recording, and how it is recognised.
namespace tolvarin::ondrel::client {

/// So many bytes from the start of an input are enough for foreignContent().
constexpr std::size_t foreignContentSize = 512;

/// What the input is and what to do with it ("a zip archive; unpack it first: ..."), by its first
/// bytes. Empty if they tell nothing. Call it only for input that does not begin with a reply.
std::string foreignContent(std::string_view beginning);

/// Takes a UTF-8 byte-order mark off the start of the text, if one is there.
std::string_view withoutByteOrderMark(std::string_view text);

/// Whether a line that cannot be read names the columns of a table: several fields with commas or
/// semicolons between them, each of which begins with a letter, perhaps behind a quote, and none
/// holds a reply.
bool isHeaderLine(std::string_view line);

} // namespace tolvarin::ondrel::client
