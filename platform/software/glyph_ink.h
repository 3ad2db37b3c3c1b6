/// \file
/// Puts pixels that a colour covers in part.
///
/// Coverage blends the colour's channels with those of the pixel below; indexed pixels then take the nearest
/// entry of their table. One-bit pixels are either covered, from half on, or not.
#pragma once

#include <cstdint>

#include "platform/software/context.h"
#include "platform/software/glyph_picture.h"

namespace device {

/// A colour on one surface. The context must outlive it and keep its surface and colours meanwhile. Throws
/// std::bad_alloc when the first smooth text of a context with indexed pixels finds no memory.
class GlyphInk {
public:
    GlyphInk(const Context& context, COLORREF color);

    /// Puts a picture that lies on the surface and within the clip with its box's first pixel at (x, y).
    void Put(const GlyphPicture& picture, std::int32_t x, std::int32_t y) const;
    /// Puts the part of a picture that lies within \p visible, which lies on the surface.
    void PutPart(const GlyphPicture& picture, std::int64_t x, std::int64_t y, const Box& visible) const;
    /// Puts a run of one coverage, which lies on the surface.
    void PutRun(std::int32_t y, std::int32_t x0, std::int32_t x1, std::uint8_t coverage) const;

private:
    template <Format F>
    void Cover(std::uint8_t* row, std::int32_t x, std::uint8_t coverage) const;
    template <Format F>
    void PutPoints(const GlyphPicture& picture, std::int32_t x, std::int32_t y) const;
    template <Format F>
    void PutPointsWithin(const GlyphPicture& picture, std::int64_t x, std::int64_t y,
                         const Box& visible) const;
    std::uint32_t BlendIndexed(std::uint32_t pixel, std::uint8_t coverage) const;

    const Context& m_Context;
    std::uint32_t m_Color;  ///< as the pixel shows it
    std::uint32_t m_Pixel;
    std::uint64_t m_Lanes;  ///< the channels, as they are blended
    Ink m_Ink;
    mutable BlendTable* m_Blends = nullptr;
};

}  // namespace device
