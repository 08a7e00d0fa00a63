#pragma once

#include <string>
#include <string_view>

/// What the abbreviations on a page stand for.
namespace tolvarin::ondrel::client {

/// The label of a datum or a column, in HTML. If its key has a meaning, the label shows it.
std::string explained(std::string_view label, std::string_view key);

/// Stands behind a MOPS version until it is confirmed, in HTML.
std::string unconfirmedVersion(std::string_view text);

/// The plain name of a kind of message: of a format such as "DF-17", or of a payload such as
/// "ACID". A kind that has none is its own name.
std::string_view nameOfKind(std::string_view kind);

} // namespace tolvarin::ondrel::client
