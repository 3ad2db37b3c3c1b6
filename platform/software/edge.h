/// \file
/// The side of a filled shape, followed from row to row.
#pragma once

#include <cstdint>
#include <utility>

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

}  // namespace device
