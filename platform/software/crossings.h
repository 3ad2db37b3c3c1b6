/// \file
/// The rows of a filled shape, found from where its sides cross them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/software/surface.h"

namespace device {

/// A bit for each pixel: whether inside and outside change places there, to its right. Sides turn bits over
/// where they cross rows, in any order; two crossings on one pixel cancel out, as they should. Then the rows
/// are read from left to right, each run of pixels that an odd number of crossings encloses at once. So
/// nothing is sorted, and a figure costs its crossings and a word for every 64 pixels of its box.
/// (B. Ackland and N. Weste, The Edge Flag Algorithm, 1981.)
///
/// The memory is kept between figures and is clean between them.
class Crossings {
public:
    /// Starts a figure. \p bounds are not empty. Throws std::bad_alloc.
    void Begin(const Box& bounds) {
        const auto rows = static_cast<std::size_t>(bounds.bottom - bounds.top);
        const std::size_t stride = static_cast<std::size_t>(bounds.right - bounds.left) / kWordBits + 1;
        if (m_Words.size() < stride * (rows + 1)) m_Words.resize(stride * (rows + 1));
        if (m_Turns.size() < rows + 1) m_Turns.resize(rows + 1);
        m_Bounds = bounds;
        m_Stride = static_cast<std::int32_t>(stride);
    }

    const Box& Bounds() const { return m_Bounds; }

    /// A side crosses row \p y at column \p x of the bounds, or at their right end.
    /// \param times 1; 0 crosses nothing, and may do so in the row below the bounds too
    void Cross(std::int32_t y, std::int32_t x, std::uint64_t times = 1) {
        const auto column = static_cast<std::uint32_t>(x - m_Bounds.left);
        const auto row = static_cast<std::ptrdiff_t>(y - m_Bounds.top);
        m_Words[static_cast<std::size_t>(row * m_Stride) + column / kWordBits] ^= times
                                                                                  << (column % kWordBits);
    }

    /// A side passes the rows from <= y < to of the bounds on their left.
    void PassLeft(std::int32_t from, std::int32_t to) {
        m_Turns[static_cast<std::size_t>(from - m_Bounds.top)] ^= 1;
        m_Turns[static_cast<std::size_t>(to - m_Bounds.top)] ^= 1;
    }

    /// Calls `run(y, x0, x1)` for what the sides enclose within the bounds, and forgets them.
    template <class Run>
    void Take(Run&& run) {
        std::uint64_t* words = m_Words.data();
        bool leftInside = false;
        for (std::int32_t y = m_Bounds.top; y < m_Bounds.bottom; ++y, words += m_Stride) {
            leftInside ^= TakeTurn(y);
            bool inside = leftInside;
            std::int32_t start = m_Bounds.left;
            for (std::int32_t at = 0; at < m_Stride; ++at) {
                std::uint64_t word = words[at];
                if (word == 0) continue;
                words[at] = 0;
                const std::int32_t column = m_Bounds.left + at * kWordBits;
                for (; word != 0; word &= word - 1, inside = !inside) {
                    const std::int32_t x = column + __builtin_ctzll(word);
                    if (inside) run(y, start, x);
                    start = x;
                }
            }
            if (inside) run(y, start, m_Bounds.right);
        }
        TakeTurn(m_Bounds.bottom);
    }

private:
    static constexpr std::int32_t kWordBits = 64;

    bool TakeTurn(std::int32_t y) {
        std::uint8_t& turn = m_Turns[static_cast<std::size_t>(y - m_Bounds.top)];
        const bool turns = turn != 0;
        turn = 0;
        return turns;
    }

    Box m_Bounds;
    std::int32_t m_Stride = 0;  ///< words a row
    std::vector<std::uint64_t>
        m_Words;  ///< lowest bit: leftmost pixel; a row and a column more than the bounds
    std::vector<std::uint8_t> m_Turns;  ///< by row: an odd number of sides on the left begin or end there
};

}  // namespace device
