#include "platform/software/coverage.h"

#include <algorithm>
#include <limits>

namespace device {
namespace {

constexpr std::int32_t kWordBits = 64;

int LowestBit(std::uint64_t word) {
    return __builtin_ctzll(word);
}

}  // namespace

void Coverage::Begin(const Box& bounds) {
    Clear();
    m_Bounds = bounds.IsEmpty() ? Box{} : bounds;
    const auto width = static_cast<std::size_t>(m_Bounds.right - m_Bounds.left);
    const auto height = static_cast<std::size_t>(m_Bounds.bottom - m_Bounds.top);
    m_Stride = (width + kWordBits - 1) / kWordBits;
    if (m_Words.size() < m_Stride * height) m_Words.resize(m_Stride * height);
    m_Extents.assign(height, {std::numeric_limits<std::int32_t>::max(), 0, false});
}

void Coverage::Mark(std::int32_t row, std::int32_t left, std::int32_t right) {
    Extent& extent = m_Extents[static_cast<std::size_t>(row)];
    if (extent.whole) return;
    if (right - left == m_Bounds.right - m_Bounds.left) {
        extent.whole = true;
        ++m_WholeRows;
    }
    extent.first = std::min(extent.first, left);
    extent.last = std::max(extent.last, right);
    std::uint64_t* word = &m_Words[m_Stride * static_cast<std::size_t>(row)];
    const std::uint64_t head = ~std::uint64_t{0} << (left % kWordBits);
    const std::uint64_t tail = ~std::uint64_t{0} >> (kWordBits - 1 - (right - 1) % kWordBits);
    const std::int32_t last = (right - 1) / kWordBits;
    std::int32_t at = left / kWordBits;
    if (at == last) {
        word[at] |= head & tail;
        return;
    }
    word[at] |= head;
    for (++at; at < last; ++at)
        word[at] = ~std::uint64_t{0};
    word[last] |= tail;
}

std::int32_t Coverage::Seek(std::int32_t row, std::int32_t x, std::int32_t end, bool covered) const {
    const std::uint64_t* const words = &m_Words[m_Stride * static_cast<std::size_t>(row)];
    const std::uint64_t invert = covered ? 0 : ~std::uint64_t{0};
    while (x < end) {
        const std::uint64_t found = (words[x / kWordBits] ^ invert) >> (x % kWordBits);
        if (found != 0) return std::min(end, x + LowestBit(found));
        x += kWordBits - x % kWordBits;
    }
    return end;
}

void Coverage::Put(const Ink& ink, const Clip& clip) const {
    ClipRows rows(ink, clip);
    for (std::int32_t y = m_Bounds.top; y < m_Bounds.bottom; ++y) {
        const std::int32_t row = y - m_Bounds.top;
        const Extent extent = m_Extents[static_cast<std::size_t>(row)];
        std::int32_t x = extent.first;
        while (x < extent.last) {
            x = Seek(row, x, extent.last, true);
            const std::int32_t end = Seek(row, x, extent.last, false);
            if (x < end) rows.Put(y, std::int64_t{m_Bounds.left} + x, std::int64_t{m_Bounds.left} + end);
            x = end;
        }
    }
}

void Coverage::Clear() {
    for (std::size_t row = 0; row < m_Extents.size(); ++row) {
        const Extent extent = m_Extents[row];
        if (extent.first >= extent.last) continue;
        std::uint64_t* const words = &m_Words[m_Stride * row];
        std::fill(words + extent.first / kWordBits, words + (extent.last - 1) / kWordBits + 1, 0);
    }
    m_Extents.clear();
    m_WholeRows = 0;
    m_Bounds = {};
}

}  // namespace device
