/// \file
/// The memory of a thread's font reader.
#pragma once

#include <cstddef>
#include <memory>

#include <ft2build.h>
#include FT_SYSTEM_H

namespace device {

/// Gives memory to FreeType, which does not everywhere withstand that there is none, and where it does may
/// read a face in part and keep it so. When the host has no more it takes from a reserve, so that the call at
/// hand comes to its end; after that whatever FreeType has made is to be ended, and begun anew with an empty
/// reserve. What cannot be had even so is refused, and remembered.
class FontMemory {
public:
    /// Throws std::bad_alloc.
    FontMemory();
    FontMemory(const FontMemory&) = delete;
    FontMemory& operator=(const FontMemory&) = delete;

    FT_Memory ForFreeType() { return &m_Access; }
    /// Whether the reserve was touched.
    bool IsShort() const { return m_Used != 0; }
    /// Throws std::bad_alloc when something was refused: then the last call's result says nothing.
    void Check() const;
    /// Nothing of FreeType is left: the reserve is whole again.
    void Reset();

private:
    static void* Allocate(FT_Memory memory, long size);
    static void Free(FT_Memory memory, void* block);
    static void* Reallocate(FT_Memory memory, long from, long to, void* block);

    void* TakeFromReserve(std::size_t size);
    bool IsReserve(const void* block) const;

    /// A face of a hundred thousand glyphs and its largest one fit. Most hosts give pages when first touched.
    static constexpr std::size_t kReserve = std::size_t{1} << 20;

    std::unique_ptr<std::byte[]> m_Reserve;
    std::size_t m_Used = 0;
    bool m_HasRefused = false;
    FT_MemoryRec_ m_Access{};
};

}  // namespace device
