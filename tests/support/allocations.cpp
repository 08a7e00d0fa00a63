#include "support/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

} // namespace

std::size_t tolvarin::ondrel::test::allocations() {
    return count;
}

// These replace the operators of the whole test program. If they were inlined, the compiler would
// warn about new and free() as a mismatched pair.

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    ++count;
    return std::malloc(size != 0 ? size : 1);
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
