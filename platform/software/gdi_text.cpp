/// \file
/// The text calls: fonts are made, texts measured and drawn.

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <limits>

#include "platform/software/context_object.h"
#include "platform/software/coverage.h"
#include "platform/software/extent.h"
#include "platform/software/glyph_ink.h"
#include "platform/software/glyphs.h"
#include "platform/software/polygon.h"
#include "platform/software/trace.h"
#include "platform/software/utf16.h"

namespace device {

namespace {

std::atomic<std::uint64_t> g_Fonts{0};
std::atomic<std::size_t> g_CacheBytes{TextSettings{}.cacheBytes};
std::atomic<bool> g_FontFiles{TextSettings{}.fontFiles};

/// Quarters of a pixel are told apart where a turned line puts its pen.
constexpr std::int64_t kQuarters = 4;
/// Whoever goes so far from a place of 32-bit coordinates, in whatever direction, sees no surface any more.
constexpr std::int64_t kFarthest = std::int64_t{1} << 34;

/// Of a number within 62 bits. Halves go away from zero.
std::int64_t Round(double value) {
    return static_cast<std::int64_t>(value + std::copysign(0.5, value));
}

std::int32_t Saturate(std::int64_t value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

bool IsHard(const ContextObject& context) {
    return !context.device->settings.smoothText || context.state.surface.format == Format::Mono ||
           context.state.font->description.lfQuality == NONANTIALIASED_QUALITY;
}

/// One line of text on a context. Along the line and across it distances are whole pixels from the reference
/// point; the line's direction turns them into places.
class TextLine {
public:
    TextLine(const Context& context, Strike& strike, std::int32_t x, std::int32_t y)
        : m_Context(context),
          m_Strike(strike),
          m_X(x),
          m_Y(y),
          m_Turned(strike.Key().angle != 0),
          m_Direction(DirectionOf(strike.Key().angle)) {}

    /// Fills a band of the line, from \p top to \p bottom across it.
    void PutBand(COLORREF color, std::int64_t width, std::int64_t top, std::int64_t bottom) const {
        const Ink ink = MakeSolidInk(m_Context.surface, {0, PixelFromColor(m_Context, color)});
        if (!m_Turned) {
            PutBox(ink, m_Context.clip, ExtentBox(m_X, m_Y + top, width, bottom - top));
            return;
        }
        const POINT corners[] = {At(0, top), At(width, top), At(width, bottom), At(0, bottom)};
        FillTarget target(ink, m_Context.clip, nullptr);
        RunExtents extents;
        extents.Find(corners, 4);
        FillPolygon(target, corners, 4, extents);
    }

    void PutCharacters(COLORREF color, const char16_t* text, std::int64_t count) const {
        const GlyphInk ink(m_Context, color);
        const Box open = OpenBox();
        std::int64_t along = 0;
        for (std::int64_t at = 0; at < count && along <= kFarthest;) {
            const char32_t character = NextCharacter(text, count, at);
            const PenPlace pen = PenAt(along);
            if (IsNearClip(pen)) PutCharacter(ink, open, character, pen);
            along += m_Strike.Advance(character);
        }
    }

private:
    double PlaceX(double along, double across) const {
        return static_cast<double>(m_X) + along * m_Direction.cosine + across * m_Direction.sine;
    }
    double PlaceY(double along, double across) const {
        return static_cast<double>(m_Y) - along * m_Direction.sine + across * m_Direction.cosine;
    }
    POINT At(std::int64_t along, std::int64_t across) const {
        const auto a = static_cast<double>(along), b = static_cast<double>(across);
        return {Saturate(Round(PlaceX(a, b))), Saturate(Round(PlaceY(a, b)))};
    }

    PenPlace PenAt(std::int64_t along) const {
        if (!m_Turned) return {m_X + along, m_Y + m_Strike.Ascent(), 0, 0};
        const auto a = static_cast<double>(along), b = static_cast<double>(m_Strike.Ascent());
        const std::int64_t x = Round(PlaceX(a, b) * kQuarters);
        const std::int64_t y = Round(PlaceY(a, b) * kQuarters);
        const auto quarter = [](std::int64_t value) {
            return static_cast<unsigned>(FloorModulo(value, kQuarters));
        };
        return {(x - quarter(x)) / kQuarters, (y - quarter(y)) / kQuarters, quarter(x), quarter(y)};
    }

    bool IsNearClip(const PenPlace& pen) const {
        const Box& bounds = m_Context.clip.bounds;
        const std::int64_t reach = m_Strike.Reach();
        return pen.x + reach > bounds.left && pen.x - reach < bounds.right && pen.y + reach > bounds.top &&
               pen.y - reach < bounds.bottom;
    }

    /// The part of the clip in which the line begins, else any part: what lies within it needs no clipping.
    Box OpenBox() const {
        const PenPlace pen = PenAt(0);
        const Box place = ExtentBox(pen.x, pen.y, 1, 1);
        const Box* box = m_Context.clip.FirstBelow(place.top);
        const Box* const end = m_Context.clip.boxes + m_Context.clip.count;
        while (box != end && box->top <= place.top && Intersect(*box, place).IsEmpty())
            ++box;
        return box != end ? *box : *m_Context.clip.boxes;
    }

    void PutCharacter(const GlyphInk& ink, const Box& open, char32_t character, const PenPlace& pen) const {
        if (!m_Strike.KeepsPictures()) {
            PutHuge(ink, character, pen);
            return;
        }
        const GlyphPicture& picture = m_Strike.Picture(character, pen.quarterX, pen.quarterY);
        if (picture.IsEmpty()) return;
        const Box& bounds = picture.Bounds();
        const std::int64_t left = pen.x + bounds.left, top = pen.y + bounds.top;
        if (left >= open.left && top >= open.top && pen.x + bounds.right <= open.right &&
            pen.y + bounds.bottom <= open.bottom) {
            ink.Put(picture, static_cast<std::int32_t>(left), static_cast<std::int32_t>(top));
            return;
        }
        ForVisibleBoxes(m_Context.clip,
                        ExtentBox(left, top, bounds.right - bounds.left, bounds.bottom - bounds.top),
                        [&](const Box& visible) { ink.PutPart(picture, left, top, visible); });
    }

    void PutHuge(const GlyphInk& ink, char32_t character, const PenPlace& pen) const {
        struct Target {
            const GlyphInk& ink;
            const Clip& clip;
        } target{ink, m_Context.clip};
        const auto put = [](void* user, std::int32_t y, std::int32_t x0, std::int32_t x1,
                            std::uint8_t coverage) {
            const auto& to = *static_cast<const Target*>(user);
            ForVisibleBoxes(to.clip, {x0, y, x1, y + 1}, [&](const Box& visible) {
                to.ink.PutRun(y, visible.left, visible.right, coverage);
            });
        };
        m_Strike.Render(character, pen, m_Context.clip.bounds, {put, &target});
    }

    const Context& m_Context;
    Strike& m_Strike;
    std::int64_t m_X, m_Y;
    bool m_Turned;
    Direction m_Direction;
};

void DrawLine(ContextObject& context, std::int32_t x, std::int32_t y, const char16_t* text,
              std::int64_t count) {
    const Context& state = context.state;
    const LOGFONTW& font = state.font->description;
    Strike& strike = Strike::Of(*state.font, IsHard(context));
    const TextLine line(state, strike, x, y);
    const bool opaque = state.backgroundMode == OPAQUE;
    const bool ruled = font.lfUnderline != 0 || font.lfStrikeOut != 0;
    const std::int64_t width = opaque || ruled ? strike.Width(text, count) : 0;
    if (opaque) line.PutBand(state.backgroundColor, width, 0, strike.CellHeight());
    line.PutCharacters(state.textColor, text, count);
    const auto rule = [&](std::int32_t top, std::int32_t rows) {
        const std::int64_t first = std::int64_t{strike.Ascent()} + top;
        line.PutBand(state.textColor, width, first, first + rows);
    };
    if (font.lfUnderline != 0) rule(strike.UnderlineTop(), strike.UnderlineRows());
    if (font.lfStrikeOut != 0) rule(strike.StrikeOutTop(), strike.StrikeOutRows());
}

}  // namespace

Font::Font(const LOGFONTW& asked)
    : Object(kType), description(asked), serial(g_Fonts.fetch_add(1, std::memory_order_relaxed) + 1) {}

void SetTextSettings(const TextSettings& settings) {
    g_CacheBytes = settings.cacheBytes;
    g_FontFiles = settings.fontFiles;
}

TextSettings GetTextSettings() {
    return {g_CacheBytes.load(std::memory_order_relaxed), g_FontFiles.load(std::memory_order_relaxed)};
}

}  // namespace device

using namespace device;

HFONT CreateFontIndirectW(const LOGFONTW* description) {
    Trace("CreateFontIndirectW", description);
    if (description == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    return static_cast<HFONT>(Publish(MakeObject<Font>(*description)));
}

BOOL GetTextExtentExPointW(HDC dc, LPCWSTR text, int count, int maxExtent, int* fit, int* extents,
                           SIZE* size) try {
    Trace("GetTextExtentExPointW", dc, text, count, maxExtent, fit, extents, size);
    const ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return FALSE;
    if (count < 0 || size == nullptr || (text == nullptr && count > 0)) return Fail(ERROR_INVALID_PARAMETER);
    std::int64_t width = 0;
    std::int32_t height = 0;
    int fitting = 0;
    if (count > 0) {
        Strike& strike = Strike::Of(*context->state.font, IsHard(*context));
        height = strike.CellHeight();
        if (fit == nullptr && extents == nullptr) {
            width = strike.Width(text, count);
        } else {
            std::int64_t begin = 0;
            strike.ForAdvances(text, count, [&](std::int64_t end, std::int32_t advance) {
                width += advance;
                for (; begin < end; ++begin)
                    if (extents != nullptr) extents[begin] = Saturate(width);
                if (maxExtent < 0 || width <= maxExtent) fitting = static_cast<int>(end);
            });
        }
    }
    if (fit != nullptr) *fit = fitting;
    size->cx = Saturate(width);
    size->cy = height;
    return TRUE;
} catch (const std::exception&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}

BOOL ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text, UINT count,
                 const int* advances) try {
    Trace("ExtTextOutW", dc, x, y, options, rect, text, count, advances);
    ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return FALSE;
    if (options != 0 || rect != nullptr || advances != nullptr || (text == nullptr && count > 0)) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (count > 0 && context->state.clip.count > 0) DrawLine(*context, x, y, text, count);
    return TRUE;
} catch (const std::exception&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}
