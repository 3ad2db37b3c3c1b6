#include "platform/software/font_memory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace device {
namespace {

FontMemory& Of(FT_Memory memory) {
    return *static_cast<FontMemory*>(memory->user);
}

}  // namespace

FontMemory::FontMemory() : m_Reserve(new std::byte[kReserve]), m_Access{this, Allocate, Free, Reallocate} {}

void FontMemory::Check() const {
    if (m_HasRefused) throw std::bad_alloc();
}

void FontMemory::Reset() {
    m_Used = 0;
    m_HasRefused = false;
}

void* FontMemory::Allocate(FT_Memory memory, long size) {
    const auto bytes = static_cast<std::size_t>(size);
    void* const block = std::malloc(bytes);
    return block != nullptr ? block : Of(memory).TakeFromReserve(bytes);
}

void FontMemory::Free(FT_Memory memory, void* block) {
    if (!Of(memory).IsReserve(block)) std::free(block);
}

void* FontMemory::Reallocate(FT_Memory memory, long from, long to, void* block) {
    const auto bytes = static_cast<std::size_t>(to);
    if (!Of(memory).IsReserve(block)) {
        void* const moved = std::realloc(block, bytes);
        if (moved != nullptr) return moved;
    }
    void* const moved = Of(memory).TakeFromReserve(bytes);
    if (moved == nullptr) return nullptr;
    std::memcpy(moved, block, static_cast<std::size_t>(from < to ? from : to));
    Free(memory, block);
    return moved;
}

void* FontMemory::TakeFromReserve(std::size_t size) {
    constexpr std::size_t kUnit = alignof(std::max_align_t);
    if (size > kReserve - m_Used) {
        m_HasRefused = true;
        return nullptr;
    }
    void* const block = m_Reserve.get() + m_Used;
    m_Used += (size + kUnit - 1) / kUnit * kUnit;
    return block;
}

bool FontMemory::IsReserve(const void* block) const {
    const auto distance =
        reinterpret_cast<std::uintptr_t>(block) - reinterpret_cast<std::uintptr_t>(m_Reserve.get());
    return distance < kReserve;
}

}  // namespace device
