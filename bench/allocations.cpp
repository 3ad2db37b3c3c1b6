#include "bench/allocations.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>

// The C library's own, which the calls below stand in front of.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace {

bool isCounting = false;
zulbench::Allocations counted;
std::int64_t held = 0;

void Hold(std::int64_t bytes) {
    held += bytes;
    counted.peak = std::max(counted.peak, held);
}

std::int64_t SizeOf(void* memory) {
    return static_cast<std::int64_t>(malloc_usable_size(memory));
}

void* Taken(void* memory) {
    if (isCounting && memory) {
        ++counted.count;
        Hold(SizeOf(memory));
    }
    return memory;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
    return Taken(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
    return Taken(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size) {
    if (isCounting && memory) Hold(-SizeOf(memory));
    return Taken(__libc_realloc(memory, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return Taken(__libc_memalign(alignment, size));
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    *memory = Taken(__libc_memalign(alignment, size));
    return *memory ? 0 : 12;  // ENOMEM
}

void free(void* memory) {
    if (isCounting && memory) Hold(-SizeOf(memory));
    __libc_free(memory);
}

}  // extern "C"

namespace zulbench {

Allocations CountAllocations(const std::function<void()>& work) {
    counted = {};
    held = 0;
    isCounting = true;
    work();
    isCounting = false;
    return counted;
}

}  // namespace zulbench
