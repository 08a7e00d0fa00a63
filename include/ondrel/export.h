/// @file
/// The visibility of the library's symbols.
#pragma once

#if defined(__GNUC__) || defined(__clang__)
/// Marks what the shared library exports; everything else is hidden.
#define ONDREL_EXPORT __attribute__((visibility("default")))
/// Lets the compiler check a print format at argument `text` against the arguments from `first`.
#define ONDREL_PRINT_FORMAT(text, first) __attribute__((format(printf, text, first)))
#else
#define ONDREL_EXPORT
#define ONDREL_PRINT_FORMAT(text, first)
#endif
