#include "platform/software/glyph_ink.h"

#include <algorithm>

#include "platform/software/color.h"

namespace device {

namespace {

constexpr std::uint8_t kFull = 255, kHalf = 128;

/// The channels of a pixel, 8 bits each, 16 bits apart: from the lowest up blue, red, green.
template <Format F>
inline std::uint64_t LanesOf(std::uint32_t pixel) {
    if constexpr (F == Format::Rgb565 || F == Format::Rgb555) {
        constexpr unsigned kRed = F == Format::Rgb565 ? 11 : 10, kGreenBits = F == Format::Rgb565 ? 6 : 5;
        const std::uint32_t green = (pixel >> 5) & ((1u << kGreenBits) - 1);
        const std::uint32_t others = (pixel & 31u) | (((pixel >> kRed) & 31u) << 16);
        return (others << 3) | ((others >> 2) & 0x070007u) |
               (std::uint64_t{WidenChannel(green, kGreenBits)} << 32);
    } else {
        return (pixel & 0xFF00FFu) | (std::uint64_t{pixel & 0x00FF00u} << 24);
    }
}

template <Format F>
inline std::uint32_t PixelOf(std::uint64_t lanes) {
    if constexpr (F == Format::Rgb565 || F == Format::Rgb555) {
        constexpr unsigned kRed = F == Format::Rgb565 ? 11 : 10, kGreenBits = F == Format::Rgb565 ? 6 : 5;
        const auto channel = [lanes](unsigned at, unsigned bits) {
            return static_cast<std::uint32_t>(lanes >> (at + 8 - bits)) & ((1u << bits) - 1);
        };
        return channel(0, 5) | (channel(16, 5) << kRed) | (channel(32, kGreenBits) << 5);
    } else {
        return static_cast<std::uint32_t>((lanes & 0xFF00FFu) | ((lanes >> 24) & 0x00FF00u));
    }
}

/// The rounded mean of each channel, weighted by the coverage of 255. With n at most 255 * 255 and m = n +
/// 128, n / 255 rounded is (m + m / 256) / 256: all three channels are divided at once.
inline std::uint64_t Blend(std::uint64_t below, std::uint64_t above, std::uint32_t coverage) {
    constexpr std::uint64_t kRound = 0x008000800080u, kBytes = 0x00FF00FF00FFu;
    const std::uint64_t sum = below * (kFull - coverage) + above * coverage + kRound;
    return ((sum + ((sum >> 8) & kBytes)) >> 8) & kBytes;
}

constexpr Format kPlain = Format::Bgrx32;

}  // namespace

GlyphInk::GlyphInk(const Context& context, COLORREF color)
    : m_Context(context),
      m_Color(PlainColor(context, color)),
      m_Pixel(PixelFromColor(context, color)),
      m_Lanes(LanesOf<kPlain>(PackColor(kPlain, m_Color))),
      m_Ink(MakeSolidInk(context.surface, {0, m_Pixel})) {}

std::uint32_t GlyphInk::BlendIndexed(std::uint32_t pixel, std::uint8_t coverage) const {
    if (m_Blends == nullptr) m_Blends = &m_Context.BlendsOf(m_Color);
    const unsigned level = coverage * (BlendTable::kLevels - 1) / kFull;
    std::int16_t& known = m_Blends->pixels[pixel * BlendTable::kLevels + level];
    if (known < 0) {
        const std::uint64_t below = LanesOf<kPlain>(PackColor(kPlain, ColorFromPixel(m_Context, pixel)));
        const std::uint64_t lanes = Blend(below, m_Lanes, level * kFull / (BlendTable::kLevels - 1));
        const std::uint32_t color = UnpackColor(kPlain, PixelOf<kPlain>(lanes));
        known = static_cast<std::int16_t>(NearestPixel(m_Context, color));
    }
    return static_cast<std::uint32_t>(known);
}

template <Format F>
inline void GlyphInk::Cover(std::uint8_t* row, std::int32_t x, std::uint8_t coverage) const {
    if constexpr (F == Format::Mono) {
        if (coverage >= kHalf) Pixels<F>::Store(row, x, m_Pixel);
        return;
    }
    const std::uint32_t below = Pixels<F>::Load(row, x);
    if constexpr (IsIndexed(F)) {
        Pixels<F>::Store(row, x, BlendIndexed(below, coverage));
    } else {
        Pixels<F>::Store(row, x, PixelOf<F>(Blend(LanesOf<F>(below), m_Lanes, coverage)));
    }
}

template <Format F>
void GlyphInk::PutPoints(const GlyphPicture& picture, std::int32_t x, std::int32_t y) const {
    // What the loops need stands in locals: a store to a pixel may change any member, for all the compiler
    // knows.
    const Surface& surface = m_Context.surface;
    const std::ptrdiff_t stride = surface.stride;
    const std::uint32_t pixel = m_Pixel;
    const std::size_t full = picture.FullPoints(), count = picture.Points().size();
    const std::uint8_t* const coverage = picture.Coverage().data();
    std::uint8_t* const row = surface.Row(y);
    if constexpr (!IsPacked(F)) {
        constexpr int kBytes = BitsPerPixel(F) / 8;
        if (const std::int32_t* const offsets = picture.Offsets(stride, kBytes)) {
            std::uint8_t* const first = row + std::ptrdiff_t{x} * kBytes;
            for (std::size_t i = 0; i < full; i += GlyphPicture::kGroup) {
                for (std::size_t k = i; k < i + GlyphPicture::kGroup; ++k)
                    Pixels<F>::Store(first + offsets[k], 0, pixel);
            }
            for (std::size_t i = full; i < count; ++i)
                Cover<F>(first + offsets[i], 0, coverage[i - full]);
            return;
        }
    }
    const GlyphPicture::Point* const points = picture.Points().data();
    for (std::size_t i = 0; i < full; ++i)
        Pixels<F>::Store(row + points[i].y * stride, x + points[i].x, pixel);
    for (std::size_t i = full; i < count; ++i)
        Cover<F>(row + points[i].y * stride, x + points[i].x, coverage[i - full]);
}

void GlyphInk::Put(const GlyphPicture& picture, std::int32_t x, std::int32_t y) const {
    VisitFormat(m_Context.surface.format,
                [&](auto format) { PutPoints<decltype(format)::value>(picture, x, y); });
    for (const GlyphPicture::Run& run : picture.Runs())
        PutSpan(m_Ink, {y + run.y, x + run.x, x + run.x + run.length});
}

template <Format F>
void GlyphInk::PutPointsWithin(const GlyphPicture& picture, std::int64_t x, std::int64_t y,
                               const Box& visible) const {
    using Point = GlyphPicture::Point;
    const std::int64_t left = visible.left - x, right = visible.right - x;
    const std::int64_t top = visible.top - y, bottom = visible.bottom - y;
    // Both kinds of points stand row by row, so those of the visible rows are found at once.
    const auto forVisible = [&](const Point* begin, const Point* end, auto put) {
        const Point* point =
            std::partition_point(begin, end, [top](const Point& candidate) { return candidate.y < top; });
        for (; point != end && point->y < bottom; ++point) {
            if (point->x < left || point->x >= right) continue;
            put(*point, m_Context.surface.Row(static_cast<std::int32_t>(y + point->y)),
                static_cast<std::int32_t>(x + point->x));
        }
    };
    const Point* const points = picture.Points().data();
    const Point* const partial = points + picture.FullPoints();
    forVisible(points, partial, [&](const Point&, std::uint8_t* row, std::int32_t column) {
        Pixels<F>::Store(row, column, m_Pixel);
    });
    forVisible(partial, points + picture.Points().size(),
               [&](const Point& point, std::uint8_t* row, std::int32_t column) {
                   Cover<F>(row, column, picture.Coverage()[static_cast<std::size_t>(&point - partial)]);
               });
}

void GlyphInk::PutPart(const GlyphPicture& picture, std::int64_t x, std::int64_t y,
                       const Box& visible) const {
    VisitFormat(m_Context.surface.format,
                [&](auto format) { PutPointsWithin<decltype(format)::value>(picture, x, y, visible); });
    for (const GlyphPicture::Run& run : picture.Runs()) {
        const std::int64_t row = y + run.y;
        const std::int64_t x0 = std::max<std::int64_t>(x + run.x, visible.left);
        const std::int64_t x1 = std::min<std::int64_t>(x + run.x + run.length, visible.right);
        if (row < visible.top || row >= visible.bottom || x0 >= x1) continue;
        PutSpan(m_Ink, {static_cast<std::int32_t>(row), static_cast<std::int32_t>(x0),
                        static_cast<std::int32_t>(x1)});
    }
}

void GlyphInk::PutRun(std::int32_t y, std::int32_t x0, std::int32_t x1, std::uint8_t coverage) const {
    if (coverage == kFull) {
        PutSpan(m_Ink, {y, x0, x1});
        return;
    }
    VisitFormat(m_Context.surface.format, [&](auto format) {
        std::uint8_t* const row = m_Context.surface.Row(y);
        for (std::int32_t x = x0; x < x1; ++x)
            Cover<decltype(format)::value>(row, x, coverage);
    });
}

}  // namespace device
