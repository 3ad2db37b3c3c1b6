#include "platform/software/glyph_ink.h"

#include "platform/software/color.h"

namespace device {

namespace {

constexpr std::uint8_t kFull = 255, kHalf = 128;

std::uint32_t Blend(std::uint32_t below, std::uint32_t color, std::uint32_t coverage) {
    std::uint32_t blended = 0;
    for (unsigned shift = 0; shift < 24; shift += 8) {
        const std::uint32_t sum = ((below >> shift) & 0xFFu) * (kFull - coverage) +
                                  ((color >> shift) & 0xFFu) * coverage + kFull / 2;
        blended |= sum / kFull << shift;
    }
    return blended;
}

}  // namespace

GlyphInk::GlyphInk(const Context& context, COLORREF color)
    : m_Context(context), m_Color(PlainColor(color)), m_Pixel(PixelFromColor(context, color)) {}

std::uint32_t GlyphInk::BlendIndexed(std::uint32_t pixel, std::uint8_t coverage) const {
    if (!m_Blended) m_Blends.fill(-1);
    m_Blended = true;
    const unsigned level = coverage * (kLevels - 1) / kFull;
    std::int16_t& known = m_Blends[pixel * kLevels + level];
    if (known < 0) {
        const std::uint32_t color =
            Blend(ColorFromPixel(m_Context, pixel), m_Color, level * kFull / (kLevels - 1));
        known = static_cast<std::int16_t>(NearestPixel(m_Context, color));
    }
    return static_cast<std::uint32_t>(known);
}

template <Format F>
inline void GlyphInk::PutPixel(std::uint8_t* row, std::int32_t x, std::uint8_t coverage) const {
    if (coverage == 0) return;
    if (coverage == kFull || F == Format::Mono) {
        if (coverage >= kHalf) Pixels<F>::Store(row, x, m_Pixel);
        return;
    }
    const std::uint32_t below = Pixels<F>::Load(row, x);
    if constexpr (IsIndexed(F)) {
        Pixels<F>::Store(row, x, BlendIndexed(below, coverage));
    } else {
        Pixels<F>::Store(row, x, PackColor(F, Blend(UnpackColor(F, below), m_Color, coverage)));
    }
}

void GlyphInk::Put(const std::uint8_t* coverage, std::int32_t stride, std::int64_t left, std::int64_t top,
                   const Box& visible) const {
    VisitFormat(m_Context.surface.format, [&](auto format) {
        const std::uint8_t* from = coverage + (visible.top - top) * stride + (visible.left - left);
        std::uint8_t* row = m_Context.surface.Row(visible.top);
        for (std::int32_t y = visible.top; y < visible.bottom; ++y) {
            for (std::int32_t x = visible.left; x < visible.right; ++x)
                PutPixel<decltype(format)::value>(row, x, from[x - visible.left]);
            from += stride;
            row += m_Context.surface.stride;
        }
    });
}

void GlyphInk::PutRun(std::int32_t y, std::int32_t x0, std::int32_t x1, std::uint8_t coverage) const {
    VisitFormat(m_Context.surface.format, [&](auto format) {
        std::uint8_t* const row = m_Context.surface.Row(y);
        for (std::int32_t x = x0; x < x1; ++x)
            PutPixel<decltype(format)::value>(row, x, coverage);
    });
}

}  // namespace device
