#include "tests/kernel/allocation_counter.h"

#include <atomic>
#include <cstdlib>
#include <new>

// In a file of their own: where the compiler can inline one of the pair and not the other it takes them for a
// mismatch.
namespace {
std::atomic<std::uint64_t> g_Allocations{0};
}

std::uint64_t CountAllocations() {
    return g_Allocations;
}

void* operator new(std::size_t size) {
    ++g_Allocations;
    if (void* storage = std::malloc(size)) return storage;
    throw std::bad_alloc();
}
void operator delete(void* storage) noexcept {
    std::free(storage);
}
void operator delete(void* storage, std::size_t) noexcept {
    std::free(storage);
}
