#include "platform/software/objects.h"

#include <mutex>

#include "platform/software/display.h"

namespace device {

namespace {

constexpr std::uint32_t kIndexBits = 16, kGenerationBits = 11;
constexpr std::uint32_t kTypeShift = kIndexBits + kGenerationBits;
constexpr std::uint32_t kChunkBits = 8;
constexpr std::uint32_t kChunkSize = 1u << kChunkBits;
constexpr std::uint32_t kChunks = 1u << (kIndexBits - kChunkBits);
constexpr std::uint32_t kNone = 0xFFFFFFFFu;
/// Freed slots rest until so many others have been freed, so that a stale handle stays stale for long.
constexpr std::uint32_t kResting = 512;
/// Slots that only stock objects may take: those are made when first asked for, be the table full or not.
constexpr std::uint32_t kKeptForStock = 64;

struct Slot {
    std::atomic<std::uint32_t> handle{0};  ///< 0 while the slot is free
    std::atomic<Object*> object{nullptr};
    std::uint32_t generation = 0;
    std::uint32_t nextFree = kNone;
};

std::atomic<Slot*> g_Chunks[kChunks];

// Guarded by g_Mutex.
std::mutex g_Mutex;
std::uint32_t g_Used = 0;  // slots ever used
std::uint32_t g_FirstFree = kNone, g_LastFree = kNone, g_FreeCount = 0;

thread_local DWORD t_Error = ERROR_SUCCESS;

Slot* SlotAt(std::uint32_t index) {
    Slot* chunk = g_Chunks[index >> kChunkBits].load(std::memory_order_acquire);
    return chunk == nullptr ? nullptr : chunk + (index & (kChunkSize - 1));
}

/// A slot that was handed out before, so its chunk exists.
Slot& UsedSlot(std::uint32_t index) {
    return g_Chunks[index >> kChunkBits].load(std::memory_order_acquire)[index & (kChunkSize - 1)];
}

std::uint32_t TakeFreeSlot() {
    const std::uint32_t index = g_FirstFree;
    g_FirstFree = UsedSlot(index).nextFree;
    if (g_FirstFree == kNone) g_LastFree = kNone;
    --g_FreeCount;
    return index;
}

/// The index of a slot to use, or kNone. Called under the lock.
std::uint32_t TakeSlot(bool stock) {
    const bool full = g_Used >= kChunks * kChunkSize - (stock ? 0 : kKeptForStock);
    if (g_FreeCount > kResting || (full && g_FreeCount > 0)) return TakeFreeSlot();
    if (full) return kNone;
    if (SlotAt(g_Used) == nullptr) {
        Slot* chunk = new (std::nothrow) Slot[kChunkSize];
        if (chunk == nullptr) return g_FreeCount > 0 ? TakeFreeSlot() : kNone;
        g_Chunks[g_Used >> kChunkBits].store(chunk, std::memory_order_release);
    }
    return g_Used++;
}

std::uint32_t IndexOf(HGDIOBJ handle) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle)) & ((1u << kIndexBits) - 1);
}

}  // namespace

void SetError(DWORD error) {
    t_Error = error;
}

Failure Fail(DWORD error) {
    t_Error = error;
    return {};
}

int LiveHandles(DWORD type) {
    const std::lock_guard<std::mutex> lock(g_Mutex);
    int live = 0;
    for (std::uint32_t index = 0; index < g_Used; ++index) {
        const Object* const object = UsedSlot(index).object.load(std::memory_order_relaxed);
        if (object != nullptr && !object->stock && (type == 0 || object->type == type)) ++live;
    }
    return live;
}

HGDIOBJ Publish(std::unique_ptr<Object> object) {
    if (object == nullptr) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    const std::lock_guard<std::mutex> lock(g_Mutex);
    const std::uint32_t index = TakeSlot(object->stock);
    if (index == kNone) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    Slot& slot = UsedSlot(index);
    slot.generation = (slot.generation + 1) & ((1u << kGenerationBits) - 1);
    const std::uint32_t handle = (object->type << kTypeShift) | (slot.generation << kIndexBits) | index;
    object->handle = reinterpret_cast<HGDIOBJ>(std::uintptr_t{handle});
    slot.object.store(object.get(), std::memory_order_relaxed);
    slot.handle.store(handle, std::memory_order_release);
    return object.release()->handle;
}

Object* Find(HGDIOBJ handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    if (value > 0x7FFFFFFFu) return nullptr;
    const Slot* slot = SlotAt(IndexOf(handle));
    if (slot == nullptr || value == 0) return nullptr;
    if (slot->handle.load(std::memory_order_acquire) != value) return nullptr;
    Object* object = slot->object.load(std::memory_order_acquire);
    // Another thread may have ended a stale handle's successor meanwhile and used the slot again.
    return slot->handle.load(std::memory_order_relaxed) == value ? object : nullptr;
}

void End(Object* object) {
    {
        const std::lock_guard<std::mutex> lock(g_Mutex);
        const std::uint32_t index = IndexOf(object->handle);
        Slot& slot = UsedSlot(index);
        slot.handle.store(0, std::memory_order_release);
        slot.object.store(nullptr, std::memory_order_release);
        slot.nextFree = kNone;
        if (g_LastFree == kNone) {
            g_FirstFree = index;
        } else {
            UsedSlot(g_LastFree).nextFree = index;
        }
        g_LastFree = index;
        ++g_FreeCount;
    }
    delete object;
}

void Select(Object* object) {
    if (!object->stock) object->selections.fetch_add(1, std::memory_order_relaxed);
}

void Deselect(Object* object) {
    if (object->stock) return;
    if (object->selections.fetch_sub(1, std::memory_order_acq_rel) == 1 && object->doomed) End(object);
}

}  // namespace device

DWORD GetLastError() {
    return device::t_Error;
}

void SetLastError(DWORD error) {
    device::t_Error = error;
}
