#include "platform/software/context.h"

#include <algorithm>
#include <numeric>

#include "platform/software/color.h"
#include "platform/software/context_object.h"

namespace device {

namespace {

/// Narrow tiles are widened to about so many pixels, so that the loop over a row seldom wraps.
constexpr std::int32_t kTileWidth = 128;
/// A tile is not widened beyond so many pixels: a tall narrow pattern would take gigabytes.
constexpr std::int64_t kMostWidened = std::int64_t{1} << 20;
/// A solid brush is dithered by the right half of the upper half of the dither's cell.
constexpr std::int32_t kSolidDitherColumn = 8;
/// A label has a colour and one of its halo; a map has few of either.
constexpr std::size_t kBlendTables = 4;
constexpr std::uint64_t kSolidSerial = std::uint64_t{1} << 63;

const ColorTable& TableOf(const Surface& surface) {
    return surface.table != nullptr ? *surface.table : BlackAndWhite();
}

bool IsDeviceMono(const Surface& surface) {
    return surface.format == Format::Mono && surface.table == nullptr;
}

std::uint32_t SurfaceColor(const Surface& surface, std::uint32_t pixel) {
    if (IsIndexed(surface.format)) return TableOf(surface).colors[pixel & 0xFFu];
    return UnpackColor(surface.format, pixel);
}

/// The pixel that a plain colour becomes, cached.
std::uint32_t LookUp(const Context& context, std::uint32_t color) {
    ColorCache& cache = context.colorCache;
    const std::size_t slot = (color ^ (color >> 7) ^ (color >> 15)) % ColorCache::kEntries;
    if (cache.colors[slot] != color) {
        cache.colors[slot] = color;
        cache.pixels[slot] = static_cast<std::uint8_t>(NearestEntry(TableOf(context.surface), color));
    }
    return cache.pixels[slot];
}

/// Pixel (x, y) of a pattern in the layout of the context's surface.
std::uint32_t PatternPixel(const Context& context, const Pattern& pattern, std::int32_t x, std::int32_t y) {
    const std::uint32_t pixel = LoadPixel(pattern.surface, x, y);
    const Surface& target = context.surface;
    if (!pattern.ownColors) {
        if (IsDeviceMono(target)) return pixel;
        return NearestPixel(context, pixel != 0 ? context.backgroundColor : context.textColor);
    }
    if (pattern.surface.format == target.format && !IsIndexed(target.format)) return pixel;
    const std::uint32_t color = SurfaceColor(pattern.surface, pixel);
    if (target.format == Format::Mono) {
        return LookUp(context, IsDitheredBright(color, x, y) ? 0xFFFFFFu : 0u);
    }
    if (target.format == Format::Indexed8 && !IsIndexed(pattern.surface.format)) {
        return LookUp(context, LevelColor(color));
    }
    return NearestPixel(context, color);
}

/// Makes room for a tile's bytes, to keep and to flip. Throws std::bad_alloc.
void ReserveTile(PreparedTile& prepared, std::size_t rowBytes, std::int32_t height) {
    const std::size_t plane = rowBytes * static_cast<std::size_t>(height);
    if (prepared.capacity < 2 * plane) {
        prepared.serial = 0;
        prepared.bytes.reset(new std::uint8_t[2 * plane]);
        prepared.capacity = 2 * plane;
    }
    prepared.tile.rowBytes = rowBytes;
    prepared.tile.flip = prepared.bytes.get();
    prepared.tile.keep = prepared.bytes.get() + plane;
}

/// Lays a pattern out as a tile. Throws std::bad_alloc.
template <class PixelAt>
void PrepareTile(PreparedTile& prepared, Format format, std::int32_t width, std::int32_t height, int rop2,
                 PixelAt pixelAt) {
    const int bits = BitsPerPixel(format);
    const std::int32_t perByte = bits < 8 ? 8 / bits : 1;
    const std::int32_t whole = std::lcm(width, perByte);  // pixels until bytes repeat
    const bool widens = std::int64_t{kTileWidth} * height <= kMostWidened;
    const std::int32_t row = widens ? whole * std::max(1, kTileWidth / whole) : whole;
    const auto rowBytes = static_cast<std::size_t>(std::int64_t{row} * bits / 8);
    ReserveTile(prepared, rowBytes, height);
    prepared.tile.width = row;
    prepared.tile.height = height;
    std::uint8_t* flip = prepared.bytes.get();
    std::uint8_t* keep = flip + rowBytes * static_cast<std::size_t>(height);
    bool copies = true;
    for (std::int32_t y = 0; y < height; ++y, keep += rowBytes, flip += rowBytes) {
        VisitFormat(format, [&](auto constant) {
            using Pixel = Pixels<decltype(constant)::value>;
            for (std::int32_t x = 0; x < row; ++x) {
                const std::int32_t column = (x % width - prepared.lead % width + width) % width;
                const Mix mix = MakeMix(rop2, pixelAt(column, y), format);
                Pixel::Store(keep, x, mix.keep);
                Pixel::Store(flip, x, mix.flip);
                copies = copies && mix.IsCopy();
            }
        });
    }
    if (copies) prepared.tile.keep = nullptr;
}

/// The ink of a pattern of width x height pixels, each given by \p pixelAt; prepared anew only when the
/// context's last tile was made from something else.
template <class PixelAt>
Ink TileInk(Context& context, std::uint64_t serial, std::int32_t width, std::int32_t height, int rop2,
            PixelAt pixelAt) {
    PreparedTile& prepared = context.prepared;
    const int bits = BitsPerPixel(context.surface.format);
    const std::int32_t lead = bits < 8 ? context.brushOrigin.x & (8 / bits - 1) : 0;
    const std::uint32_t textColor = PlainColor(context, context.textColor);
    const std::uint32_t backgroundColor = PlainColor(context, context.backgroundColor);
    const bool usable = prepared.serial == serial && prepared.rop2 == rop2 && prepared.lead == lead &&
                        prepared.textColor == textColor && prepared.backgroundColor == backgroundColor;
    if (!usable) {
        prepared.serial = 0;
        prepared.lead = lead;
        PrepareTile(prepared, context.surface.format, width, height, rop2, pixelAt);
        prepared.serial = serial;
        prepared.rop2 = rop2;
        prepared.textColor = textColor;
        prepared.backgroundColor = backgroundColor;
    }
    prepared.tile.originX = context.brushOrigin.x;
    prepared.tile.originY = context.brushOrigin.y;
    return MakePatternInk(context.surface, prepared.tile);
}

/// A solid ink under the context's raster operation.
Ink InkOf(const Context& context, std::uint32_t pixel) {
    return MakeSolidInk(context.surface, MakeMix(context.rop2, pixel, context.surface.format));
}

}  // namespace

void Context::SetSurface(const Surface& target) {
    surface = target;
    stamp = TableOf(target).stamp;
    colorCache.Clear();
    prepared.serial = 0;
    blends.clear();
}

BlendTable& Context::BlendsOf(std::uint32_t color) const {
    const auto known = std::find_if(blends.begin(), blends.end(),
                                    [color](const BlendTable& table) { return table.color == color; });
    if (known != blends.end()) return *known;
    // The newest stands last: the oldest makes room.
    if (blends.size() == kBlendTables) {
        std::rotate(blends.begin(), blends.begin() + 1, blends.end());
    } else {
        blends.emplace_back();
    }
    BlendTable& table = blends.back();
    table.color = color;
    table.pixels.fill(-1);
    return table;
}

void Context::SetVisible(std::vector<Box> boxes) {
    visible = std::move(boxes);
    clip = {visible.data(), static_cast<std::int32_t>(visible.size()), {}};
    if (visible.empty()) return;
    Box& bounds = clip.bounds = visible.front();
    for (const Box& box : visible) {
        bounds = {std::min(bounds.left, box.left), bounds.top, std::max(bounds.right, box.right), box.bottom};
    }
}

Context* FindContext(HDC dc) {
    ContextObject* object = FindContextObject(dc);
    if (object == nullptr) return nullptr;
    object->state.NoticeNewColors();
    return &object->state;
}

COLORREF Palette::ColorAt(std::size_t index) const {
    if (entries.empty()) return 0;
    const PALETTEENTRY& entry = entries[index < entries.size() ? index : 0];
    return RGB(entry.peRed, entry.peGreen, entry.peBlue);
}

std::uint32_t PlainColor(const Context& context, COLORREF value) {
    const bool byNumber = (value >> 24 & 1u) != 0;
    return byNumber ? context.palette->ColorAt(value & 0xFFFFu) : value & 0xFFFFFFu;
}

std::uint32_t PixelFromColor(const Context& context, COLORREF color) {
    const std::uint32_t plain = PlainColor(context, color);
    const Surface& surface = context.surface;
    if (!IsIndexed(surface.format)) return PackColor(surface.format, plain);
    const std::uint32_t nearest = LookUp(context, plain);
    if (surface.format != Format::Mono || TableOf(surface).colors[nearest] == plain) return nearest;
    if (color == context.backgroundColor) return nearest;
    return LookUp(context, PlainColor(context, context.backgroundColor)) ^ 1u;
}

std::uint32_t NearestPixel(const Context& context, COLORREF color) {
    const std::uint32_t plain = PlainColor(context, color);
    if (!IsIndexed(context.surface.format)) return PackColor(context.surface.format, plain);
    return LookUp(context, plain);
}

COLORREF ColorFromPixel(const Context& context, std::uint32_t pixel) {
    return SurfaceColor(context.surface, pixel);
}

Ink PenInk(const Context& context) {
    return InkOf(context, PixelFromColor(context, context.pen->color));
}

Ink GapInk(const Context& context) {
    const COLORREF pen = context.pen->color, background = context.backgroundColor;
    if (context.surface.format != Format::Mono) return InkOf(context, PixelFromColor(context, background));
    return InkOf(context, PixelFromColor(context, pen) ^ (pen == background ? 0u : 1u));
}

Ink BrushInk(Context& context, const Brush& brush, int rop2) {
    if (brush.style == BS_PATTERN) {
        const Pattern& pattern = brush.pattern;
        return TileInk(context, pattern.serial, pattern.surface.width, pattern.surface.height, rop2,
                       [&](std::int32_t x, std::int32_t y) { return PatternPixel(context, pattern, x, y); });
    }
    const std::uint32_t color = PlainColor(context, brush.color);
    if (IsDeviceMono(context.surface) && color != 0 && color != 0xFFFFFFu) {
        return TileInk(context, kSolidSerial | color, 8, 8, rop2, [&](std::int32_t x, std::int32_t y) {
            return IsDitheredBright(color, x + kSolidDitherColumn, y) ? 1u : 0u;
        });
    }
    return MakeSolidInk(context.surface,
                        MakeMix(rop2, PixelFromColor(context, brush.color), context.surface.format));
}

}  // namespace device
