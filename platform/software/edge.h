/// \file
/// The side of a filled shape, followed from row to row.
#pragma once

#include <cstdint>

#include "platform/gdi.h"

namespace device {

/// Where a side crosses pixel rows. A side belongs to the rows from its upper end (inclusive) to its lower
/// end (exclusive); in each it stands at the first pixel column that is not left of the ideal line at the
/// row's own coordinate. Filling from one side's column up to the next one's therefore takes in what lies on
/// a left or top border and leaves out what lies on a right or bottom one.
///
/// Exact for ends up to 2^32 apart in y and 2^33 in x.
class Edge {
public:
    /// \param y the row to start at: from the upper end's row on, before the lower end's.
    Edge(std::int64_t upperX, std::int64_t upperY, std::int64_t lowerX, std::int64_t lowerY, std::int64_t y)
        : m_Height(lowerY - upperY) {
        const std::int64_t width = lowerX - upperX;
        m_Whole = width / m_Height;
        m_Part = width % m_Height;
        if (m_Part < 0) {
            --m_Whole;
            m_Part += m_Height;
        }
        // x = upperX + ceil(width * rows / height): the division rounds down, so it starts a part short of 1.
        const std::int64_t rows = y - upperY;
        m_X = upperX;
        m_Rest = m_Height - 1;
        if (rows != 0) {
            const auto product = static_cast<std::uint64_t>(m_Part) * static_cast<std::uint64_t>(rows);
            const auto height = static_cast<std::uint64_t>(m_Height);
            m_X += m_Whole * rows + static_cast<std::int64_t>(product / height);
            m_Rest += static_cast<std::int64_t>(product % height);
            Carry();
        }
    }

    std::int64_t X() const { return m_X; }

    void NextRow() {
        m_X += m_Whole;
        m_Rest += m_Part;
        Carry();
    }

private:
    void Carry() {
        if (m_Rest >= m_Height) {
            m_Rest -= m_Height;
            ++m_X;
        }
    }

    std::int64_t m_X;
    std::int64_t m_Height;
    std::int64_t m_Whole, m_Part;  ///< width / height, rounded down, and what remains: 0 <= part < height
    std::int64_t m_Rest;           ///< 0 <= rest < height
};

/// An Edge of at most kMost rows and columns between its ends, found without exact division: its column is
/// kept with 32 binary places.
///
/// The side crosses a row k / height short of or on a column, k whole. The column after is what adding
/// 1 - 1 / (2 height) and rounding down gives, even where the product is wrong by less than 1 / (2 height).
/// A step is wrong by little more than 2^-32, so height steps are wrong by less than that as long as
/// 2 height^2 stays below 2^32.
class ShortEdge {
public:
    static constexpr std::int64_t kMost = 32767;

    static bool Holds(POINT upper, POINT lower) {
        const std::int64_t width = std::int64_t{lower.x} - upper.x;
        return std::int64_t{lower.y} - upper.y <= kMost && width <= kMost && width >= -kMost;
    }

    /// \p upper lies above \p lower, and the two are held. \param y as Edge wants it
    ShortEdge(POINT upper, POINT lower, std::int32_t y) {
        const double part = static_cast<double>(kOne) / (lower.y - upper.y);
        m_Step = static_cast<std::int64_t>((lower.x - upper.x) * part);
        m_X = upper.x * kOne + (kOne - static_cast<std::int64_t>(part / 2)) + m_Step * (y - upper.y);
    }

    std::int32_t X() const { return static_cast<std::int32_t>(m_X >> 32); }

    void NextRow() { m_X += m_Step; }

private:
    static constexpr std::int64_t kOne = std::int64_t{1} << 32;

    std::int64_t m_X;
    std::int64_t m_Step;
};

}  // namespace device
