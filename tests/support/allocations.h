/// @file
/// Counts the allocations of the test program.
#pragma once

#include <cstddef>

namespace tolvarin::ondrel::test {

/// All calls of operator new so far, in all threads.
std::size_t allocations();

} // namespace tolvarin::ondrel::test
