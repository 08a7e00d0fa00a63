/// @file
/// Keeps internal classes out of the binary interface. A class that is nested in an exported class
/// is exported with it, unless it is marked.
#pragma once

#if defined(__GNUC__) || defined(__clang__)
/// Marks a nested class whose members are not exported with its enclosing class.
#define ONDREL_HIDDEN __attribute__((visibility("hidden")))
#else
#define ONDREL_HIDDEN
#endif
