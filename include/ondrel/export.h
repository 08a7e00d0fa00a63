/// @file
/// The visibility of the library's symbols.
#pragma once

/// Marks what a shared library exports; everything else is hidden. ONDREL_STATIC, which the CMake
/// target defines for a static library, hides all.
#if (defined(__GNUC__) || defined(__clang__)) && !defined(ONDREL_STATIC)
#define ONDREL_EXPORT __attribute__((visibility("default")))
#else
#define ONDREL_EXPORT
#endif

/// Marks what an exported class does not export: private members that no program can call. Those
/// that are virtual are exported all the same, since the virtual table of a program's subclass
/// holds them.
#if defined(__GNUC__) || defined(__clang__)
#define ONDREL_HIDDEN __attribute__((visibility("hidden")))
#else
#define ONDREL_HIDDEN
#endif

/// Lets the compiler check a print format at argument `text` against the arguments from `first`.
#if defined(__GNUC__) || defined(__clang__)
#define ONDREL_PRINT_FORMAT(text, first) __attribute__((format(printf, text, first)))
#else
#define ONDREL_PRINT_FORMAT(text, first)
#endif
