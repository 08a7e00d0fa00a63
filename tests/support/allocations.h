/// @file
/// Counts the allocations of the test program, and lets one fail.
#pragma once

#include <cstddef>

namespace tolvarin::ondrel::test {

/// All calls of operator new so far, in all threads.
std::size_t allocations();

/// The sum of the bytes of all these calls.
std::size_t allocatedBytes();

/// While it exists, one allocation fails: that after `spared` others. At most one may exist at a
/// time.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t spared);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();
};

} // namespace tolvarin::ondrel::test
