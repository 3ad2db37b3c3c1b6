/// \file
/// A device context and the objects that can stand selected in it, as the drawing calls see them.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <vector>

#include "platform/gdi.h"
#include "platform/software/display.h"
#include "platform/software/ink.h"
#include "platform/software/objects.h"
#include "platform/software/pixel_memory.h"
#include "platform/software/surface.h"

namespace device {

struct Typeface;

struct Pen : Object {
    static constexpr DWORD kType = OBJ_PEN;
    Pen() : Object(kType) {}

    int style = PS_SOLID;    ///< PS_SOLID, PS_DASH or PS_NULL
    std::int32_t width = 1;  ///< pixels, at least 1
    COLORREF color = 0;
    LOGPEN description{};  ///< as GetObjectW reports it
};

/// A pattern's own pixels, copied when the brush was made.
struct Pattern {
    PixelMemory bits;
    ColorTable table;          ///< of an indexed pattern with colours of its own
    bool ownColors = false;    ///< false for a one-bit device-dependent bitmap: text and background colour
                               ///< apply
    Surface surface;           ///< over bits
    std::uint64_t serial = 0;  ///< differs for every pattern ever made
};

struct Brush : Object {
    static constexpr DWORD kType = OBJ_BRUSH;
    Brush() : Object(kType) {}

    UINT style = BS_SOLID;  ///< BS_SOLID, BS_NULL or BS_PATTERN
    COLORREF color = 0;
    Pattern pattern;
    std::uintptr_t hatch = 0;  ///< as GetObjectW reports it: the bitmap that the pattern was copied from
};

struct Font : Object {
    static constexpr DWORD kType = OBJ_FONT;
    explicit Font(const LOGFONTW& asked);

    const LOGFONTW description;
    const std::uint64_t serial;  ///< differs for every font ever made
    /// What stands for it; looked up when first needed, since that may mean reading every font file's head.
    mutable std::atomic<const Typeface*> typeface{nullptr};
};

struct Palette : Object {
    static constexpr DWORD kType = OBJ_PAL;
    Palette() : Object(kType) {}

    /// The first entry stands for those that are not there; black when there is none.
    COLORREF ColorAt(std::size_t index) const;

    std::vector<PALETTEENTRY> entries;
};

struct Bitmap : Object {
    static constexpr DWORD kType = OBJ_BITMAP;
    Bitmap() : Object(kType) {}

    PixelMemory pixels;
    std::unique_ptr<ColorTable> table;
    Surface surface;
    bool section = false;  ///< a DIB section: the caller may address the pixels
};

/// Colours lately looked up in an indexed surface's table.
struct ColorCache {
    static constexpr std::size_t kEntries = 16;
    std::uint32_t colors[kEntries];  ///< the colour, or kEmpty
    std::uint8_t pixels[kEntries];
    static constexpr std::uint32_t kEmpty = 0xFFFFFFFFu;

    ColorCache() { Clear(); }
    void Clear() { std::fill(std::begin(colors), std::end(colors), kEmpty); }
};

/// What a colour that covers pixels of an indexed surface in part makes of them.
struct BlendTable {
    /// So many steps of coverage are told apart, so that few blends have to be looked up.
    static constexpr unsigned kLevels = 16;
    std::uint32_t color;
    std::array<std::int16_t, 256 * kLevels> pixels;  ///< by pixel and level; -1: not yet known
};

/// A pattern as last prepared for a context's surface, and what it was prepared from.
struct PreparedTile {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t capacity = 0;
    MixTile tile;
    std::uint64_t serial = 0;  ///< of the pattern; 0: nothing prepared
    int rop2 = 0;
    std::int32_t lead = 0;                             ///< the origin's place within its byte
    std::uint32_t textColor = 0, backgroundColor = 0;  ///< looked up in the palette
};

/// State that drawing calls read. Selected objects are never null: a fresh context holds the stock ones.
struct Context {
    const Pen* pen = nullptr;
    const Brush* brush = nullptr;
    const Font* font = nullptr;
    const Palette* palette = nullptr;
    Surface surface;
    Clip clip;
    int rop2 = R2_COPYPEN;
    int backgroundMode = OPAQUE;
    int stretchMode = BLACKONWHITE;
    COLORREF textColor = 0;
    COLORREF backgroundColor = 0xFFFFFF;
    POINT brushOrigin{0, 0};
    POINT position{0, 0};

    std::vector<Box> visible;  ///< what `clip` refers to
    mutable ColorCache colorCache;
    PreparedTile prepared;
    mutable std::vector<BlendTable> blends;  ///< of the colours that smooth text was lately drawn in
    std::uint32_t stamp = 0;                 ///< of the surface's table when colours were looked up

    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// Draws on \p target from now on; where, the clip must be told anew.
    void SetSurface(const Surface& target);
    /// Looks colours up anew when a palette has changed the surface's table since.
    void NoticeNewColors() {
        if (surface.table != nullptr && surface.table->stamp != stamp) SetSurface(surface);
    }
    /// The table of a colour; it stays where it is until the next call. Throws std::bad_alloc.
    BlendTable& BlendsOf(std::uint32_t color) const;
    /// Draws within \p boxes from now on, which are as `Clip` wants them.
    void SetVisible(std::vector<Box> boxes);
};

/// The live context behind a handle; null, with the last error set, when there is none. Takes no lock.
ZUL_PLATFORM_API Context* FindContext(HDC dc);

/// Runs \p draw on the context behind \p dc; fails on a stale handle or when memory runs out. A container
/// that is to grow beyond what a host of 32 bits can count throws something else than std::bad_alloc, and
/// means the same.
template <class Draw>
BOOL OnContext(HDC dc, Draw&& draw) {
    Context* const context = FindContext(dc);
    if (context == nullptr) return FALSE;
    return WithMemory([&] { return draw(*context) ? TRUE : FALSE; });
}

/// The bitmap that stands for itself in every fresh context; each context has a pixel of its own for it.
Bitmap* DefaultBitmap();

/// The colour that a caller's colour value means: one of the palette, or its low 24 bits.
std::uint32_t PlainColor(const Context& context, COLORREF value);

/// A colour in the surface's pixel layout, as pens and brushes map it. Indexed surfaces take the nearest
/// entry. On one-bit surfaces only a colour of the table is itself; the background colour, named as it
/// was set, is the entry nearest to it and every other colour is the other entry.
std::uint32_t PixelFromColor(const Context& context, COLORREF color);
/// A colour in the surface's pixel layout as SetPixel maps it: the nearest entry at every indexed depth.
std::uint32_t NearestPixel(const Context& context, COLORREF color);
COLORREF ColorFromPixel(const Context& context, std::uint32_t pixel);

/// The selected pen's ink under the context's raster operation.
Ink PenInk(const Context& context);
/// That of the gaps between its dashes: the background colour. On one-bit surfaces it is the entry that the
/// pen does not have, unless pen and background were given the same colour value.
Ink GapInk(const Context& context);

/// The ink of a brush under the context's origin and colours. The result may refer to the context's scratch
/// and is good until the next call on the same context. The brush must not be null-style. Throws
/// std::bad_alloc.
Ink BrushInk(Context& context, const Brush& brush, int rop2);

}  // namespace device
