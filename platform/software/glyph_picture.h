/// \file
/// The picture of a character, laid out to be put without looking at the pixels it leaves alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/software/surface.h"

namespace device {

/// Long runs that are wholly covered stand as runs, all other pixels as points: the wholly covered ones
/// first, then those covered in part. A loop over points has no branch to mispredict, and small letters
/// consist of little else.
class GlyphPicture {
public:
    /// Places are counted from the first pixel of the picture's box.
    struct Run {
        std::uint16_t x, y, length;
    };
    struct Point {
        std::uint16_t x, y;
    };

    /// Wholly covered points come in groups of so many: loops that run for the same few numbers of groups
    /// are foretold better, and a pixel that is put again to fill a group costs less.
    static constexpr std::size_t kGroup = 8;

    /// Shows nothing.
    GlyphPicture() = default;
    /// \p box from the pixel on which the pen stands, its sides below 65536; \p coverage a byte for each of
    /// its pixels, row by row. Throws std::bad_alloc.
    GlyphPicture(const Box& box, const std::uint8_t* coverage);

    const Box& Bounds() const { return m_Box; }
    bool IsEmpty() const { return m_Points.empty() && m_Runs.empty(); }
    const std::vector<Run>& Runs() const { return m_Runs; }
    const std::vector<Point>& Points() const { return m_Points; }
    /// How many points are wholly covered, some of them twice; the others have a coverage each.
    std::size_t FullPoints() const { return m_Points.size() - m_Coverage.size(); }
    const std::vector<std::uint8_t>& Coverage() const { return m_Coverage; }

    /// How many bytes each point lies behind the box's first pixel on a surface with such rows and pixels;
    /// null when 32 bits cannot tell. Kept for the next call: rows are mostly the same.
    const std::int32_t* Offsets(std::ptrdiff_t stride, int pixelBytes) const {
        const bool known = stride == m_Stride && pixelBytes == m_PixelBytes;
        return known || FindOffsets(stride, pixelBytes) ? m_Offsets.data() : nullptr;
    }

    /// What the picture takes, about.
    std::size_t Bytes() const;

private:
    bool FindOffsets(std::ptrdiff_t stride, int pixelBytes) const;

    Box m_Box;
    std::vector<Run> m_Runs;
    std::vector<Point> m_Points;
    std::vector<std::uint8_t> m_Coverage;
    mutable std::vector<std::int32_t> m_Offsets;  ///< as many as points, from the start
    mutable std::ptrdiff_t m_Stride = 0;          ///< that the offsets hold good for
    mutable int m_PixelBytes = 0;
};

}  // namespace device
