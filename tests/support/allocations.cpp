#include "support/allocations.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> count{0};
std::atomic<std::size_t> bytes{0};
std::atomic<std::size_t> failing{never}; // the value of count at which an allocation fails

} // namespace

namespace tolvarin::ondrel::test {

std::size_t allocations() {
    return count;
}

std::size_t allocatedBytes() {
    return bytes;
}

FailingAllocation::FailingAllocation(std::size_t spared) {
    failing = count + spared;
}

FailingAllocation::~FailingAllocation() {
    failing = never;
}

} // namespace tolvarin::ondrel::test

// These replace the operators of the whole test program. If they were inlined, the compiler would
// warn about new and free() as a mismatched pair.

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    bytes += size;
    return count++ == failing ? nullptr : std::malloc(size != 0 ? size : 1);
}

[[gnu::noinline]] void* operator new(std::size_t size) {
    void* memory = operator new(size, std::nothrow);
    return memory != nullptr ? memory : throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
