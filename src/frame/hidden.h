/// @file
/// The visibility of classes that are nested in exported ones but belong to the sources.
#pragma once

#if defined(__GNUC__) || defined(__clang__)
/// Keeps the members of a nested class from being exported with its enclosing class.
#define ONDREL_HIDDEN __attribute__((visibility("hidden")))
#else
#define ONDREL_HIDDEN
#endif
