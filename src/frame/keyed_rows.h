/// @file
/// Tables by enumeration: one row for each value, in the order of the values. Each row has its
/// value as member `key`, so that a reader sees what a row is for and the compiler checks the
/// order.
#pragma once

#include <ondrel/types.h>

#include <array>
#include <cstddef>
#include <string>

namespace tolvarin::ondrel {

/// Whether the keys are 0, 1, 2 and so on. Every table of this kind asserts it.
template <class Row, std::size_t Size>
constexpr bool keysCountFrom0(const std::array<Row, Size>& rows) {
    for (std::size_t i = 0; i < Size; ++i) {
        if (static_cast<std::size_t>(rows[i].key) != i) {
            return false;
        }
    }
    return true;
}

/// The entry of a value, or the last entry for a value that has none. A negative value has none: as
/// an unsigned number it is larger than every index.
template <class Entry, std::size_t Size>
constexpr const Entry& entryOrLast(const std::array<Entry, Size>& entries, i32 value) {
    const auto index = static_cast<u32>(value);
    return index < Size ? entries[index] : entries[Size - 1];
}

/// One column of names as strings. Accessors return them by reference, and make them last.
template <class Row, std::size_t Size, class Name>
std::array<std::string, Size> strings(const std::array<Row, Size>& rows, Name Row::*column) {
    std::array<std::string, Size> names;
    for (std::size_t i = 0; i < Size; ++i) {
        names[i] = rows[i].*column;
    }
    return names;
}

} // namespace tolvarin::ondrel
