#include "platform/software/fill_rows.h"

#include <cstring>

#include "platform/software/wide_vectors.h"

namespace device {
namespace {

using Vector = std::uint8_t __attribute__((vector_size(32)));

/// How far behind the first byte the first vector's border lies that is a pixel's border too; 0 when no
/// border is both.
std::size_t WayToBorder(const std::uint8_t* first, std::size_t pixelBytes) {
    const std::size_t rest = (0 - reinterpret_cast<std::uintptr_t>(first)) % sizeof(Vector);
    // 3 * 11 leaves 1.
    if (pixelBytes == 3) return 3 * (11 * rest % sizeof(Vector));
    return rest % pixelBytes == 0 ? rest : 0;
}

ZUL_IN_BOTH void Fill(const FilledRows& rows, const std::uint8_t* block, std::size_t pixelBytes) {
    Vector a, b, c;
    static_assert(sizeof a + sizeof b + sizeof c == kFillBlock);
    std::memcpy(&a, block, sizeof a);
    std::memcpy(&b, block + sizeof a, sizeof b);
    std::memcpy(&c, block + sizeof a + sizeof b, sizeof c);
    const auto put = [&](std::uint8_t * bytes) __attribute__((always_inline)) {
        std::memcpy(bytes, &a, sizeof a);
        std::memcpy(bytes + sizeof a, &b, sizeof b);
        std::memcpy(bytes + sizeof a + sizeof b, &c, sizeof c);
    };
    std::uint8_t* first = rows.first;
    for (std::int32_t i = 0; i < rows.count; ++i, first += rows.stride) {
        // Blocks that overlap put the same: all begin with a whole pixel.
        std::uint8_t* const last = first + rows.bytes - kFillBlock;
        put(first);
        for (std::uint8_t* at = first + WayToBorder(first, pixelBytes); at < last; at += kFillBlock)
            put(at);
        put(last);
    }
}

ZUL_WIDE_VECTORS void FillWide(const FilledRows& rows, const std::uint8_t* block, std::size_t pixelBytes) {
    Fill(rows, block, pixelBytes);
}

}  // namespace

void FillRows(const FilledRows& rows, const std::uint8_t* block, std::size_t pixelBytes) {
    if (g_HasWideVectors) {
        FillWide(rows, block, pixelBytes);
    } else {
        Fill(rows, block, pixelBytes);
    }
}

void FillRowsPlainly(const FilledRows& rows, const std::uint8_t* block, std::size_t pixelBytes) {
    Fill(rows, block, pixelBytes);
}

}  // namespace device
