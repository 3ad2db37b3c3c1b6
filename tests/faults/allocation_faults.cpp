#include "tests/faults/allocation_faults.h"

#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <new>

// What stands behind the replaced functions: the C library, or the sanitizer's runtime.
#if defined(ZUL_SANITIZED)
#define ZUL_REAL(name) __interceptor_##name
#else
#define ZUL_REAL(name) __libc_##name
#endif

extern "C" {
void* ZUL_REAL(malloc)(std::size_t);
void* ZUL_REAL(calloc)(std::size_t, std::size_t);
void* ZUL_REAL(realloc)(void*, std::size_t);
void* ZUL_REAL(memalign)(std::size_t, std::size_t);
void ZUL_REAL(free)(void*);
}

namespace faults {
namespace {

struct TPlan {
    std::uint64_t Left;  ///< allocations until the first that fails; 0: none does
    std::uint64_t Failed;
    Failing Kind;
};
thread_local TPlan t_Plan;
std::atomic<std::int64_t> g_Live{0};

struct TCode {
    std::uintptr_t Begin, End;
    bool Holds(const void* address) const {
        return reinterpret_cast<std::uintptr_t>(address) - Begin < End - Begin;
    }
};
TCode g_Loader, g_ThreadExit;

int FindLoader(dl_phdr_info* info, std::size_t, void*) {
    if (std::strstr(info->dlpi_name, "ld-linux") == nullptr) return 0;
    g_Loader.Begin = info->dlpi_addr;
    for (int i = 0; i < info->dlpi_phnum; ++i)
        g_Loader.End = info->dlpi_addr + info->dlpi_phdr[i].p_vaddr + info->dlpi_phdr[i].p_memsz;
    return 1;
}

void FindExceptions() {
    dl_iterate_phdr(FindLoader, nullptr);
    void* const function = dlsym(RTLD_DEFAULT, "__cxa_thread_atexit_impl");
    Dl_info info;
    void* symbol = nullptr;
    if (function == nullptr || dladdr1(function, &info, &symbol, RTLD_DL_SYMENT) == 0) return;
    g_ThreadExit.Begin = reinterpret_cast<std::uintptr_t>(function);
    g_ThreadExit.End = g_ThreadExit.Begin + static_cast<const ElfW(Sym)*>(symbol)->st_size;
}

bool Fails(const void* caller) {
    if (t_Plan.Left == 0 || g_Loader.Holds(caller) || g_ThreadExit.Holds(caller)) return false;
    if (t_Plan.Left > 1) {
        --t_Plan.Left;
        return false;
    }
    if (t_Plan.Kind == Failing::One) t_Plan.Left = 0;
    ++t_Plan.Failed;
    errno = ENOMEM;
    return true;
}

void* Counted(void* block) {
    if (block != nullptr) g_Live.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void* AllocateOrThrow(std::size_t size, const void* caller) {
    void* const block = Fails(caller) ? nullptr : Counted(ZUL_REAL(malloc)(size != 0 ? size : 1));
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

}  // namespace

void Arm(std::uint64_t nth, Failing failing) {
    if (g_Loader.End == 0) FindExceptions();
    t_Plan = {nth, 0, failing};
}

std::uint64_t Disarm() {
    t_Plan.Left = 0;
    return t_Plan.Failed;
}

std::int64_t LiveBlocks() {
    return g_Live.load();
}

}  // namespace faults

using faults::Counted;
using faults::Fails;
#define ZUL_CALLER __builtin_return_address(0)
#define ZUL_REPLACED __attribute__((visibility("default")))

extern "C" {
ZUL_REPLACED void* malloc(std::size_t size) {
    return Fails(ZUL_CALLER) ? nullptr : Counted(ZUL_REAL(malloc)(size));
}
ZUL_REPLACED void* calloc(std::size_t count, std::size_t size) {
    return Fails(ZUL_CALLER) ? nullptr : Counted(ZUL_REAL(calloc)(count, size));
}
ZUL_REPLACED void* realloc(void* block, std::size_t size) {
    if (size != 0 && Fails(ZUL_CALLER)) return nullptr;
    void* const moved = ZUL_REAL(realloc)(block, size);
    if (block == nullptr) return Counted(moved);
    if (size == 0) faults::g_Live.fetch_sub(1, std::memory_order_relaxed);
    return moved;
}
ZUL_REPLACED void* memalign(std::size_t alignment, std::size_t size) {
    return Fails(ZUL_CALLER) ? nullptr : Counted(ZUL_REAL(memalign)(alignment, size));
}
ZUL_REPLACED void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return Fails(ZUL_CALLER) ? nullptr : Counted(ZUL_REAL(memalign)(alignment, size));
}
ZUL_REPLACED int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    void* const made = Fails(ZUL_CALLER) ? nullptr : Counted(ZUL_REAL(memalign)(alignment, size));
    if (made == nullptr) return ENOMEM;
    *block = made;
    return 0;
}
ZUL_REPLACED void free(void* block) {
    if (block != nullptr) faults::g_Live.fetch_sub(1, std::memory_order_relaxed);
    ZUL_REAL(free)(block);
}
}

// Thousands of stores are made and dropped: none needs to reach a disk.
extern "C" {
ZUL_REPLACED int fsync(int) {
    return 0;
}
ZUL_REPLACED int fdatasync(int) {
    return 0;
}
}

// The runtime's own would reach the functions above, the sanitizer's would not.
ZUL_REPLACED void* operator new(std::size_t size) {
    return faults::AllocateOrThrow(size, ZUL_CALLER);
}
ZUL_REPLACED void* operator new[](std::size_t size) {
    return faults::AllocateOrThrow(size, ZUL_CALLER);
}
ZUL_REPLACED void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return malloc(size);
}
ZUL_REPLACED void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return malloc(size);
}
ZUL_REPLACED void operator delete(void* block) noexcept {
    free(block);
}
ZUL_REPLACED void operator delete[](void* block) noexcept {
    free(block);
}
ZUL_REPLACED void operator delete(void* block, std::size_t) noexcept {
    free(block);
}
ZUL_REPLACED void operator delete[](void* block, std::size_t) noexcept {
    free(block);
}
ZUL_REPLACED void operator delete(void* block, const std::nothrow_t&) noexcept {
    free(block);
}
ZUL_REPLACED void operator delete[](void* block, const std::nothrow_t&) noexcept {
    free(block);
}
