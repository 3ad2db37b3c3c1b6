/// \file
/// Puts pixels that a colour covers in part.
///
/// Coverage blends the colour's channels with those of the pixel below; indexed pixels then take the nearest
/// entry of their table. One-bit pixels are either covered, from half on, or not.
#pragma once

#include <array>
#include <cstdint>

#include "platform/software/context.h"

namespace device {

/// A colour on one surface. The context must outlive it and keep its surface and colours meanwhile.
class GlyphInk {
public:
    GlyphInk(const Context& context, COLORREF color);

    /// Puts the part of a picture of \p stride bytes a row that lies within \p visible; (\p left, \p top) is
    /// the picture's first pixel. \p visible lies on the surface and within the picture.
    void Put(const std::uint8_t* coverage, std::int32_t stride, std::int64_t left, std::int64_t top,
             const Box& visible) const;
    /// Puts a run of one coverage, which lies on the surface.
    void PutRun(std::int32_t y, std::int32_t x0, std::int32_t x1, std::uint8_t coverage) const;

private:
    /// Indexed pixels tell so many steps of coverage apart, so that few blends have to be looked up.
    static constexpr unsigned kLevels = 16;

    template <Format F>
    void PutPixel(std::uint8_t* row, std::int32_t x, std::uint8_t coverage) const;
    std::uint32_t BlendIndexed(std::uint32_t pixel, std::uint8_t coverage) const;

    const Context& m_Context;
    std::uint32_t m_Color;  ///< as the pixel shows it
    std::uint32_t m_Pixel;
    mutable bool m_Blended = false;                            ///< whether m_Blends has been begun
    mutable std::array<std::int16_t, 256 * kLevels> m_Blends;  ///< by pixel and level; -1: not yet known
};

}  // namespace device
